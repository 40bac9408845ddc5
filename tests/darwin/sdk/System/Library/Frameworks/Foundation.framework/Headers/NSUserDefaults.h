#pragma once

#import <Foundation/NSDictionary.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSUserDefaults : NSObject
@property (class, readonly, strong) NSUserDefaults* standardUserDefaults;
- (nullable NSString*)stringForKey:(NSString*)name;
@end

NS_ASSUME_NONNULL_END
