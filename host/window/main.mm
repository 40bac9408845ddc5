#import <AppKit/AppKit.h>

#import "host/window/WindowHost.h"

int main() {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
#ifndef __APPLE__
  // The menu belongs to the window here, and its keys go with Control as everywhere else on these desktops.
  NSDictionary* looks =
      [NSDictionary dictionaryWithObjectsAndKeys:@"NSWindows95InterfaceStyle", @"NSMenuInterfaceStyle", @"Control_L",
                                                 @"GSFirstCommandKey", @"Control_R", @"GSSecondCommandKey", @"Alt_L",
                                                 @"GSFirstAlternateKey", @"Super_L", @"GSFirstControlKey", @"YES",
                                                 @"GSSuppressAppIcon", nil];
  [[NSUserDefaults standardUserDefaults] registerDefaults:looks];
#endif
  [NSApplication sharedApplication];
  WindowHost* windowHost = [[WindowHost alloc] init];
  [NSApp setDelegate:windowHost];
  [NSApp run];
  [windowHost release];
  [pool drain];
  return 0;
}
