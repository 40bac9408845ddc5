#pragma once

#import <AppKit/AppKit.h>

/// A table in which, on every platform, a click with Command (Control outside of a Mac) adds a line to the selection
/// and one with Shift a range.
@interface PlaylistTable : NSTableView
@end
