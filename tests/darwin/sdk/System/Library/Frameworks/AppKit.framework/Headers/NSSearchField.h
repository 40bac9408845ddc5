#pragma once

#import <AppKit/NSTextField.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSSearchFieldCell : NSTextFieldCell
@property BOOL sendsWholeSearchString;
@end

@interface NSSearchField : NSTextField
@end

NS_ASSUME_NONNULL_END
