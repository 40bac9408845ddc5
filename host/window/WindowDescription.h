#pragma once

#import <AppKit/AppKit.h>

/// Keeps a file in step with what a window shows: an XML property list with every field, button and table, their
/// texts, values and places. For tests, which could otherwise see only pixels.
@interface WindowDescription : NSObject {
 @private
  NSWindow* _window;
  NSString* _path;
  NSDictionary* _written;
  NSTimer* _timer;
}

/// The window is not retained.
- (id)initWithWindow:(NSWindow*)window path:(NSString*)path;
/// Must be called before the window is released.
- (void)stop;

@end
