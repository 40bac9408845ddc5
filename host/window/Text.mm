#import "host/window/Text.h"

#include "host/terminal/LineText.h"

NSString* stringOf(const std::string& text) {
  NSString* string = [[[NSString alloc] initWithBytes:text.data() length:text.size()
                                             encoding:NSUTF8StringEncoding] autorelease];
  return string != nil ? string : @"";
}

NSString* countText(NSUInteger count, const char* one, const char* many) {
  return stringOf(epg::counted(count, one, many));
}
