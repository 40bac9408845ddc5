#pragma once

#import <AppKit/NSControl.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSTextFieldCell : NSActionCell
- (instancetype)initTextCell:(NSString*)text EPG_DESIGNATED;
- (instancetype)initWithCoder:(NSCoder*)coder EPG_DESIGNATED;
@property (nullable, copy) NSString* placeholderString;
@end

@interface NSTextField : NSControl
@property BOOL drawsBackground;
@property (getter=isBordered) BOOL bordered;
@property (getter=isBezeled) BOOL bezeled;
@property (getter=isEditable) BOOL editable;
@end

NS_ASSUME_NONNULL_END
