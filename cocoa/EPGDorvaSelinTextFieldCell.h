#pragma once

#import <AppKit/AppKit.h>

/// A text field's cell that shows its placeholder, greyed, while it is empty, also where the platform's own does not.
@interface EPGDorvaSelinTextFieldCell : NSTextFieldCell
@end
