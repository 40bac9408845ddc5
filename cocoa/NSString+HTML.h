#pragma once

#import <Foundation/Foundation.h>

@interface NSString (HTML)

/// A string with every apostrophe replaced by "&#39;", and nothing else touched.
- (NSString*)stringByEscapingSpecialCharacters;

@end
