#pragma once

#import "tests/cocoa/BundleUser.h"

/// A list of these.
inline NSArray* list(NSString* first, NSString* second = nil, NSString* third = nil) {
  return [NSArray arrayWithObjects:first, second, third, nil];
}

/// The view itself or the first inside of it that is of the class.
inline NSView* viewInside(NSView* view, Class wanted) {
  if ([view isKindOfClass:wanted]) {
    return view;
  }
  for (NSUInteger index = 0; index < [[view subviews] count]; ++index) {
    if (NSView* found = viewInside([[view subviews] objectAtIndex:index], wanted)) {
      return found;
    }
  }
  return nil;
}

/// The controller of the plug-in's editor view, which is loaded if it has not been.
inline EPGDorvaSelinViewController* controllerOf(EPGDorvaSelinManagerPlugin* plugin) {
  id table = viewInside([plugin editorView], [NSTableView class]);
  return [table dataSource];
}
