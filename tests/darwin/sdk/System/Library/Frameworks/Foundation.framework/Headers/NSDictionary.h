#pragma once

#import <Foundation/NSEnumerator.h>
#import <Foundation/NSObject.h>

@class NSArray<ObjectType>;

NS_ASSUME_NONNULL_BEGIN

@interface NSDictionary<__covariant KeyType, __covariant ObjectType>
    : NSObject <NSCopying, NSMutableCopying, NSSecureCoding, NSFastEnumeration>
@property (readonly) NSUInteger count;
- (nullable ObjectType)objectForKey:(KeyType)key;
- (NSEnumerator<KeyType>*)keyEnumerator;
- (instancetype)init EPG_DESIGNATED;
- (instancetype)initWithObjects:(const ObjectType _Nonnull[_Nullable])objects
                        forKeys:(const KeyType<NSCopying> _Nonnull[_Nullable])keys
                          count:(NSUInteger)count EPG_DESIGNATED;
- (nullable instancetype)initWithCoder:(NSCoder*)coder EPG_DESIGNATED;
@property (readonly, copy) NSArray<KeyType>* allKeys;
- (NSArray<KeyType>*)allKeysForObject:(ObjectType)object;
@property (readonly, copy) NSArray<ObjectType>* allValues;
@property (readonly, copy) NSString* description;
- (NSString*)descriptionWithLocale:(nullable id)locale;
- (NSString*)descriptionWithLocale:(nullable id)locale indent:(NSUInteger)level;
- (BOOL)isEqualToDictionary:(NSDictionary<KeyType, ObjectType>*)other;
- (NSEnumerator<ObjectType>*)objectEnumerator;
- (void)getObjects:(ObjectType _Nonnull __unsafe_unretained[_Nullable])objects
           andKeys:(KeyType _Nonnull __unsafe_unretained[_Nullable])keys
    EPG_SINCE_UNTIL(10.0, 10.13, "Use -getObjects:andKeys:count: instead");
- (void)getObjects:(ObjectType _Nonnull __unsafe_unretained[_Nullable])objects
           andKeys:(KeyType _Nonnull __unsafe_unretained[_Nullable])keys
             count:(NSUInteger)count EPG_SINCE(10.7);
- (void)enumerateKeysAndObjectsUsingBlock:(void (^)(KeyType key, ObjectType object, BOOL* stop))block EPG_SINCE(10.6);
- (void)enumerateKeysAndObjectsWithOptions:(NSEnumerationOptions)options
                                usingBlock:(void (^)(KeyType key, ObjectType object, BOOL* stop))block EPG_SINCE(10.6);
+ (instancetype)dictionary;
+ (instancetype)dictionaryWithObject:(ObjectType)object forKey:(KeyType<NSCopying>)key;
+ (instancetype)dictionaryWithObjects:(const ObjectType _Nonnull[_Nullable])objects
                              forKeys:(const KeyType<NSCopying> _Nonnull[_Nullable])keys
                                count:(NSUInteger)count;
+ (instancetype)dictionaryWithObjectsAndKeys:(id)first, ... NS_REQUIRES_NIL_TERMINATION;
+ (instancetype)dictionaryWithDictionary:(NSDictionary<KeyType, ObjectType>*)other;
- (instancetype)initWithDictionary:(NSDictionary<KeyType, ObjectType>*)other;
@end

@interface NSMutableDictionary<KeyType, ObjectType> : NSDictionary <KeyType, ObjectType>
- (void)removeObjectForKey:(KeyType)key;
- (void)setObject:(ObjectType)object forKey:(KeyType<NSCopying>)key;
- (instancetype)init EPG_DESIGNATED;
- (instancetype)initWithCapacity:(NSUInteger)capacity EPG_DESIGNATED;
- (nullable instancetype)initWithCoder:(NSCoder*)coder EPG_DESIGNATED;
- (void)addEntriesFromDictionary:(NSDictionary<KeyType, ObjectType>*)other;
@end

NS_ASSUME_NONNULL_END
