#pragma once

#import <AppKit/AppKit.h>

/// A checkbox that shows mixed as a dash, also where the platform's own draws it like on.
@interface EPGDorvaSelinCheckboxCell : NSButtonCell
@end
