#pragma once

#import <AppKit/AppKit.h>

/// A table in which Command (Control on other desktops) adds single lines to the selection and Shift a range, on every
/// platform.
@interface PlaylistTable : NSTableView
@end
