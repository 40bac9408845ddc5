#pragma once

#import <Foundation/Foundation.h>

#include <string>

/// Empty for bytes that are not UTF-8.
NSString* stringOf(const std::string& text);

/// "1 entry", "3 entries".
NSString* countText(NSUInteger count, const char* one, const char* many);
