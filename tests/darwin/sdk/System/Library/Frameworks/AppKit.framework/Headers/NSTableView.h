#pragma once

#import <AppKit/NSTextField.h>

@class NSTableView;

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSUserInterfaceItemIdentifier;

@interface NSTableHeaderCell : NSTextFieldCell
@end

@interface NSTableColumn : NSObject <NSCoding>
- (instancetype)initWithIdentifier:(NSUserInterfaceItemIdentifier)identifier EPG_DESIGNATED;
- (instancetype)initWithCoder:(NSCoder*)coder EPG_DESIGNATED;
@property (copy) NSUserInterfaceItemIdentifier identifier;
@property CGFloat width;
@property CGFloat minWidth;
@property CGFloat maxWidth;
@property (strong) __kindof NSTableHeaderCell* headerCell;
@property (strong) id dataCell;
@property (getter=isEditable) BOOL editable;
@end

@protocol NSTableViewDataSource <NSObject>
@optional
- (NSInteger)numberOfRowsInTableView:(NSTableView*)tableView;
- (nullable id)tableView:(NSTableView*)tableView
    objectValueForTableColumn:(nullable NSTableColumn*)column
                          row:(NSInteger)row;
- (void)tableView:(NSTableView*)tableView
    setObjectValue:(nullable id)object
    forTableColumn:(nullable NSTableColumn*)column
               row:(NSInteger)row;
@end

@protocol NSTableViewDelegate <NSObject>
@optional
- (void)tableViewSelectionDidChange:(NSNotification*)notification;
@end

typedef NS_ENUM(NSUInteger, NSTableViewColumnAutoresizingStyle) {
  NSTableViewNoColumnAutoresizing = 0,
  NSTableViewUniformColumnAutoresizingStyle
};
typedef NS_OPTIONS(NSUInteger, NSTableViewGridLineStyle) { NSTableViewGridNone = 0 };

@interface NSTableView : NSControl
- (instancetype)initWithFrame:(NSRect)frame EPG_DESIGNATED;
- (nullable instancetype)initWithCoder:(NSCoder*)coder EPG_DESIGNATED;
@property (nullable, assign) id<NSTableViewDataSource> dataSource;
@property (nullable, assign) id<NSTableViewDelegate> delegate;
@property BOOL allowsColumnReordering;
@property BOOL allowsMultipleSelection;
@property NSTableViewColumnAutoresizingStyle columnAutoresizingStyle;
@property NSTableViewGridLineStyle gridStyleMask;
@property (readonly, copy) NSArray<NSTableColumn*>* tableColumns;
@property (readonly) NSInteger numberOfRows;
- (void)addTableColumn:(NSTableColumn*)column;
- (nullable NSTableColumn*)tableColumnWithIdentifier:(NSUserInterfaceItemIdentifier)identifier;
- (void)sizeToFit;
- (void)scrollRowToVisible:(NSInteger)row;
- (void)reloadData;
- (void)selectRowIndexes:(NSIndexSet*)rows byExtendingSelection:(BOOL)extend EPG_SINCE(10.3);
@property (readonly, copy) NSIndexSet* selectedRowIndexes;
- (BOOL)isRowSelected:(NSInteger)row;
- (NSRect)frameOfCellAtColumn:(NSInteger)column row:(NSInteger)row;
@end

NS_ASSUME_NONNULL_END
