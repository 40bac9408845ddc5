#pragma once

#import <AppKit/AppKit.h>

/// The current content of any plug-in's view: the texts of its fields and the values of its tables.
NSArray* editorState(NSView* view);

/// Only the values of its tables.
NSArray* tableState(NSView* view);

/// Disables every enabled control of the view, and returns them so that they can be enabled again.
NSArray* disabledControls(NSView* view);
