#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSEvent : NSObject <NSCopying, NSCoding>
@property (nullable, readonly, copy) NSString* characters;
@end

NS_ASSUME_NONNULL_END
