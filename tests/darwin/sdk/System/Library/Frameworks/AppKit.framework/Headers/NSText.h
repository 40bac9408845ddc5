#pragma once

#import <AppKit/NSView.h>

NS_ASSUME_NONNULL_BEGIN

@protocol NSTextDelegate <NSObject>
@end

@interface NSText : NSView
@property (nullable, assign) id<NSTextDelegate> delegate;
@property (getter=isFieldEditor) BOOL fieldEditor;
@end

NS_ASSUME_NONNULL_END
