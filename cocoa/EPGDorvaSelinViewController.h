#pragma once

#import <AppKit/AppKit.h>

struct EPGDorvaSelinViewControllerParts;

/// Edits the metadata of one EPG item or of many at once: a table of the catalogue's tags (on, off or mixed over the
/// items) and three text fields. Tag clicks change the items at once; texts reach them through `applyChanges`.
/// Main thread only.
@interface EPGDorvaSelinViewController : NSViewController <NSTableViewDataSource, NSTableViewDelegate> {
 @private
  id delegate;
  IBOutlet NSTableView* tagsTableView;
  IBOutlet NSTextField* imageURLTextField;
  IBOutlet NSTextField* titleTextField;
  IBOutlet NSTextField* descriptionTextField;
  NSView* _loadedView;
  struct EPGDorvaSelinViewControllerParts* _parts;
}

/// The object that made the controller, which never calls it.
@property (atomic, assign) id delegate;

/// The tag catalogue is read from the bundle's "Tags.plist", once; without a readable one it is empty, silently.
- (id)initWithNibName:(NSString*)nibName bundle:(NSBundle*)bundle;
- (void)awakeFromNib;

/// Keeps the list itself and shows it. The same list may be given again to show what it holds now.
- (void)setItems:(NSMutableArray*)items;
- (NSMutableArray*)items;

/// On 1, off 0, mixed -1. The index counts the catalogue's tags from 0.
- (NSInteger)stateOfTagAtIndex:(int)index;
/// Any state but on and off changes nothing. An item's list is replaced, never changed in place.
- (void)setStateOfTag:(NSInteger)state atIndex:(int)index;

- (void)updateTagsTableView;
- (void)updateImageURLTextField;
- (void)updateTitleTextField;
- (void)updateDescriptionTextField;
- (void)setMixedTextField:(NSTextField*)textField value:(BOOL)mixed;
/// Does nothing.
- (void)setMixedTableView:(NSTableView*)tableView value:(BOOL)mixed;

/// Writes the fields into the items: a field without a placeholder always, a mixed one only when it holds text.
- (void)applyChanges;

@end
