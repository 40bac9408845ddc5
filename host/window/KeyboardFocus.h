#pragma once

#import <AppKit/AppKit.h>

/// The view that has the keyboard, nil when none has: a field while it is edited, although the window's field editor
/// stands in for it then.
NSView* viewWithKeyboard(NSWindow* window);

/// Whether the view, or one inside of it, has the keyboard of its window.
BOOL isKeyboardInside(NSView* view);

/// The view after which the Tab key leaves the view: the last of the chain that the views inside of it form.
NSView* lastKeyView(NSView* view);
