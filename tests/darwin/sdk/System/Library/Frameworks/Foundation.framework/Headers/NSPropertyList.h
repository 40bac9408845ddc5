#pragma once

#import <Foundation/NSObject.h>

@class NSData, NSError;

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSUInteger, NSPropertyListFormat) {
  NSPropertyListOpenStepFormat = 1,
  NSPropertyListXMLFormat_v1_0 = 100,
  NSPropertyListBinaryFormat_v1_0 = 200
};
typedef NSUInteger NSPropertyListWriteOptions;

@interface NSPropertyListSerialization : NSObject
+ (nullable NSData*)dataFromPropertyList:(id)list
                                  format:(NSPropertyListFormat)format
                        errorDescription:(out __strong NSString* _Nullable* _Nullable)error
    EPG_SINCE_UNTIL(10.0, 10.10, "Use dataWithPropertyList:format:options:error: instead.");
+ (nullable NSData*)dataWithPropertyList:(id)list
                                  format:(NSPropertyListFormat)format
                                 options:(NSPropertyListWriteOptions)options
                                   error:(out NSError* _Nullable* _Nullable)error EPG_SINCE(10.6);
@end

NS_ASSUME_NONNULL_END
