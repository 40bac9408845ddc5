#pragma once

#import <Foundation/NSObjCRuntime.h>

typedef struct _NSZone NSZone;

@class NSCoder, NSEnumerator, NSMethodSignature, Protocol;

NS_ASSUME_NONNULL_BEGIN

@protocol NSObject
- (BOOL)isEqual:(nullable id)object;
@property (readonly) NSUInteger hash;
@property (readonly) Class superclass;
- (Class)class;
- (instancetype)self;
- (id)performSelector:(SEL)selector;
- (id)performSelector:(SEL)selector withObject:(nullable id)object;
- (BOOL)isKindOfClass:(Class)aClass;
- (BOOL)isMemberOfClass:(Class)aClass;
- (BOOL)conformsToProtocol:(Protocol*)protocol;
- (BOOL)respondsToSelector:(SEL)selector;
- (instancetype)retain;
- (oneway void)release;
- (instancetype)autorelease;
- (NSUInteger)retainCount;
@property (readonly, copy) NSString* description;
@end

@protocol NSCopying
- (id)copyWithZone:(nullable NSZone*)zone;
@end

@protocol NSMutableCopying
- (id)mutableCopyWithZone:(nullable NSZone*)zone;
@end

@protocol NSCoding
- (void)encodeWithCoder:(NSCoder*)coder;
- (nullable instancetype)initWithCoder:(NSCoder*)coder;
@end

@protocol NSSecureCoding <NSCoding>
@property (class, readonly) BOOL supportsSecureCoding;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject> {
  Class isa;
}
- (instancetype)init EPG_DESIGNATED;
+ (instancetype)new;
+ (instancetype)allocWithZone:(nullable NSZone*)zone;
+ (instancetype)alloc;
- (void)dealloc;
- (id)copy;
- (id)mutableCopy;
+ (Class)class;
+ (BOOL)conformsToProtocol:(Protocol*)protocol;
- (BOOL)allowsWeakReference __attribute__((unavailable));
- (BOOL)retainWeakReference __attribute__((unavailable));
@property (nullable, readonly) Class classForCoder;
@end

NS_ASSUME_NONNULL_END
