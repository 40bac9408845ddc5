#pragma once

#import <AppKit/AppKit.h>

/// What a view of any plug-in holds at this moment: the texts of its fields and the values of its tables. Two states
/// are equal when the user has changed nothing in between.
NSArray* editorState(NSView* view);
