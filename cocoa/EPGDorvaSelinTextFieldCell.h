#pragma once

#import <AppKit/AppKit.h>

@class EPGDorvaSelinPlaceholderView;

/// A text field's cell that shows its placeholder, greyed, while it is empty, with the keyboard or without it, also
/// where the platform's own does not.
@interface EPGDorvaSelinTextFieldCell : NSTextFieldCell {
 @private
  EPGDorvaSelinPlaceholderView* _placeholderView;  ///< While the field is edited. Not retained, the field's subview.
}
@end
