#pragma once

#import <AppKit/AppKit.h>

/// What a view of any plug-in holds at this moment: the texts of its fields and the values of its tables.
NSArray* editorState(NSView* view);

/// The values of its tables alone.
NSArray* tableState(NSView* view);

/// Disables every control of the view that can be used now; the controls, to be enabled again.
NSArray* disabledControls(NSView* view);
