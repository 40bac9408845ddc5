#pragma once

#import <Foundation/NSObject.h>
#import <Foundation/NSRange.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_OPTIONS(NSUInteger, NSStringCompareOptions) { NSCaseInsensitiveSearch = 1, NSLiteralSearch = 2 };

typedef NSUInteger NSStringEncoding;
enum : NSStringEncoding { NSUTF8StringEncoding = 4 };

@interface NSString : NSObject <NSCopying, NSMutableCopying, NSSecureCoding>
@property (readonly) NSUInteger length;
- (unichar)characterAtIndex:(NSUInteger)index;
- (instancetype)init EPG_DESIGNATED;
- (nullable instancetype)initWithCoder:(NSCoder*)coder EPG_DESIGNATED;
- (void)getCharacters:(unichar*)buffer range:(NSRange)range;
- (BOOL)isEqualToString:(NSString*)other;
- (NSRange)rangeOfString:(NSString*)text options:(NSStringCompareOptions)options;
- (NSString*)stringByAppendingString:(NSString*)other;
@property (readonly) int intValue;
@property (readonly) NSInteger integerValue EPG_SINCE(10.5);
@property (nullable, readonly) const char* UTF8String NS_RETURNS_INNER_POINTER;
- (nullable instancetype)initWithBytes:(const void*)bytes length:(NSUInteger)length encoding:(NSStringEncoding)encoding;
+ (instancetype)stringWithString:(NSString*)other;
+ (instancetype)stringWithCharacters:(const unichar*)characters length:(NSUInteger)length;
+ (instancetype)stringWithFormat:(NSString*)format, ... NS_FORMAT_FUNCTION(1, 2);
@end

@interface NSMutableString : NSString
+ (NSMutableString*)stringWithCapacity:(NSUInteger)capacity;
- (void)appendFormat:(NSString*)format, ... NS_FORMAT_FUNCTION(1, 2);
@end

@interface NSSimpleCString : NSString {
 @package
  char* bytes;
  int numBytes;
#ifdef __LP64__
  int _unused;
#endif
}
@end

@interface NSConstantString : NSSimpleCString
@end

NS_ASSUME_NONNULL_END
