#pragma once

#import <AppKit/AppKit.h>

/// The tags table, whose checkboxes the space bar clicks in the selected rows.
@interface EPGDorvaSelinTagsTableView : NSTableView
@end
