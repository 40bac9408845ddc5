#import "cocoa/NSString+HTML.h"

#import "cocoa/bridge/FoundationValues.h"
#import "cocoa/bridge/HostException.h"
#include "export/ApostrophePass.h"

@implementation NSString (HTML)

- (NSString*)stringByEscapingSpecialCharacters {
  NSString* const text = self;
  return epg::cocoa::calledByHost(
      [&] { return epg::cocoa::toString(epg::stringByEscapingSpecialCharacters(epg::cocoa::fromString(text))); });
}

@end
