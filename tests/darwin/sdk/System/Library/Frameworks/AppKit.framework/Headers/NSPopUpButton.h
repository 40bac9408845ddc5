#pragma once

#import <AppKit/NSButton.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSPopUpButton : NSButton
- (instancetype)initWithFrame:(NSRect)frame pullsDown:(BOOL)pullsDown EPG_DESIGNATED;
- (nullable instancetype)initWithCoder:(NSCoder*)coder EPG_DESIGNATED;
- (void)addItemsWithTitles:(NSArray<NSString*>*)titles;
@property (nullable, readonly, copy) NSString* titleOfSelectedItem;
@end

NS_ASSUME_NONNULL_END
