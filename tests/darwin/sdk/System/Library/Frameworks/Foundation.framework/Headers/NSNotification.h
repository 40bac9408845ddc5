#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSNotificationName;

@interface NSNotification : NSObject <NSCopying, NSCoding>
@property (nullable, readonly, retain) id object;
@end

@interface NSNotificationCenter : NSObject
@property (class, readonly, strong) NSNotificationCenter* defaultCenter;
- (void)addObserver:(id)observer
           selector:(SEL)selector
               name:(nullable NSNotificationName)name
             object:(nullable id)object;
- (void)removeObserver:(id)observer;
@end

NS_ASSUME_NONNULL_END
