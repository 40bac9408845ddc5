#pragma once

#import <AppKit/AppKit.h>

/// Keeps a file in step with what a window shows: an XML property list with every field, button and table, their
/// texts, values and places. For tests, which can read it where they could only look at pixels otherwise.
@interface WindowDescription : NSObject {
 @private
  NSWindow* _window;
  NSString* _path;
  NSDictionary* _written;
  NSTimer* _timer;
}

/// The window is not retained.
- (id)initWithWindow:(NSWindow*)window path:(NSString*)path;
/// Has to be called before the window goes.
- (void)stop;

@end
