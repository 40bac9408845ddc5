#pragma once

#import <Foundation/NSString.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSString (NSStringPathExtensions)
@property (readonly, copy) NSString* lastPathComponent;
@property (readonly) const char* fileSystemRepresentation NS_RETURNS_INNER_POINTER;
@end

FOUNDATION_EXPORT NSString* NSHomeDirectory(void);
FOUNDATION_EXPORT NSString* _Nullable NSHomeDirectoryForUser(NSString* _Nullable user);

NS_ASSUME_NONNULL_END
