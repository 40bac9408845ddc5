#pragma once

#import <AppKit/NSCell.h>

NS_ASSUME_NONNULL_BEGIN

FOUNDATION_EXPORT NSNotificationName const NSControlTextDidChangeNotification;

@interface NSControl : NSView
- (instancetype)initWithFrame:(NSRect)frame EPG_DESIGNATED;
- (nullable instancetype)initWithCoder:(NSCoder*)coder EPG_DESIGNATED;
@property (nullable, assign) id target;
@property (nullable) SEL action;
@property (getter=isEnabled) BOOL enabled;
@property (nullable, strong) NSFont* font;
@property (copy) NSString* stringValue;
@property (nullable, strong) __kindof NSCell* cell;
@end

NS_ASSUME_NONNULL_END
