#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSXMLNode : NSObject <NSCopying>
+ (id)elementWithName:(NSString*)name;
+ (id)textWithStringValue:(NSString*)text;
+ (id)attributeWithName:(NSString*)name stringValue:(NSString*)value;
@end

NS_ASSUME_NONNULL_END
