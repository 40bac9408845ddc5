#pragma once

#import <Foundation/NSArray.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSObject (NSKeyValueCoding)
- (nullable id)valueForKey:(NSString*)key;
@end

@interface NSArray <ObjectType>(NSKeyValueCoding)
- (id)valueForKey:(NSString*)key;
@end

NS_ASSUME_NONNULL_END
