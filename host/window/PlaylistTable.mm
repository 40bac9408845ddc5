#import "host/window/PlaylistTable.h"

@implementation PlaylistTable

#ifndef __APPLE__

// In GNUstep's own table Shift adds a line and Control a range.
- (void)mouseDown:(NSEvent*)event {
  const NSUInteger given = [event modifierFlags];
  NSUInteger flags = given & ~static_cast<NSUInteger>(NSCommandKeyMask | NSShiftKeyMask | NSControlKeyMask);
  if ((given & NSShiftKeyMask) != 0) {
    flags |= NSControlKeyMask;
  } else if ((given & (NSCommandKeyMask | NSControlKeyMask)) != 0) {
    flags |= NSShiftKeyMask;
  }
  [super mouseDown:[NSEvent mouseEventWithType:[event type]
                                      location:[event locationInWindow]
                                 modifierFlags:flags
                                     timestamp:[event timestamp]
                                  windowNumber:[event windowNumber]
                                       context:[event context]
                                   eventNumber:[event eventNumber]
                                    clickCount:[event clickCount]
                                      pressure:[event pressure]]];
}

#endif

@end
