// Plain Objective-C, because GNU Objective-C++ cannot catch the platform's exceptions.
#import "cocoa/bridge/ExceptionGuard.h"

NSException *EPGDorvaSelinExceptionRaisedBy(void (*function)(void *context), void *context) {
  @try {
    function(context);
  } @catch (NSException *exception) {
    return [[exception retain] autorelease];
  }
  return nil;
}
