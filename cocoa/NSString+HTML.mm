#import "cocoa/NSString+HTML.h"

#import "cocoa/bridge/FoundationValues.h"
#include "export/ApostrophePass.h"

@implementation NSString (HTML)

- (NSString*)stringByEscapingSpecialCharacters {
  return epg::cocoa::toString(epg::stringByEscapingSpecialCharacters(epg::cocoa::fromString(self)));
}

@end
