#import "cocoa/EPGDorvaSelinViewController.h"

#include <variant>

#import "cocoa/EPGDorvaSelinViewControllerParts.h"
#import "cocoa/bridge/CocoaEnvironment.h"
#import "cocoa/bridge/FoundationItemList.h"
#import "cocoa/bridge/FoundationValues.h"
#import "cocoa/bridge/HostException.h"

using epg::cocoa::calledByHost;

namespace epg::cocoa {

std::optional<std::string> CocoaBundle::pathForResource(const std::string& name, const std::string& type) const {
  return optionalString([bundle_ pathForResource:toString(name) ofType:toString(type)]);
}

EditorOutlets CocoaBundle::loadInterface(const std::string& /*nibName*/, EPGDorvaSelinViewController& /*owner*/) {
  [viewController_ view];
  return [viewController_ parts].outlets();
}

}  // namespace epg::cocoa

EPGDorvaSelinViewControllerParts::EPGDorvaSelinViewControllerParts(EPGDorvaSelinViewController* viewController,
                                                                   NSString* nibName, NSBundle* nibBundle)
    : bundle(viewController, nibBundle),
      controller(epg::cocoa::fromString(nibName), &bundle, epg::cocoa::CocoaEnvironment::shared()) {}

epg::EditorOutlets EPGDorvaSelinViewControllerParts::outlets() {
  epg::EditorOutlets outlets;
  outlets.view = view.view != nil ? &view : nullptr;
  outlets.tagsTableView = tagsTableView.tableView != nil ? &tagsTableView : nullptr;
  for (std::size_t i = 0; i < textFields.size(); ++i) {
    outlets.textFields[i] = textFields[i].textField != nil ? &textFields[i] : nullptr;
  }
  return outlets;
}

namespace {

/// Takes every table of the view off a data source that is about to go away.
void forgetDataSource(NSView* view, id dataSource) {
  if ([view isKindOfClass:[NSTableView class]]) {
    id object = view;
    NSTableView* table = object;
    if ([table dataSource] == dataSource) {
      [table setDataSource:nil];
    }
    if ([table delegate] == dataSource) {
      [table setDelegate:nil];
    }
  }
  NSArray* subviews = [view subviews];
  for (NSUInteger index = 0; index < [subviews count]; ++index) {
    forgetDataSource([subviews objectAtIndex:index], dataSource);
  }
}

}  // namespace

@interface EPGDorvaSelinViewController ()
- (const epg::TableView*)coreTableView:(NSTableView*)tableView;
- (void)setTextField:(NSTextField*)textField at:(std::size_t)index;
@end

@implementation EPGDorvaSelinViewController

- (id)initWithNibName:(NSString*)nibName bundle:(NSBundle*)bundle {
  self = [super initWithNibName:nibName bundle:bundle];
  if (self != nil) {
    EPGDorvaSelinViewController* const object = self;
    _parts = calledByHost([&] { return new EPGDorvaSelinViewControllerParts(object, nibName, bundle); });
  }
  return self;
}

- (void)awakeFromNib {
}

- (void)dealloc {
  // The host may go on showing the view.
  forgetDataSource(_loadedView, self);
  // Last, as what goes away with the inherited part may still reach this one.
  EPGDorvaSelinViewControllerParts* const parts = _parts;
  [super dealloc];
  delete parts;
}

- (EPGDorvaSelinViewControllerParts&)parts {
  return *_parts;
}

- (void)setDelegate:(id)object {
  delegate = object;
}

- (id)delegate {
  return delegate;
}

// The outlets. Setters of our own, because the platform's way without them retains the views.

- (void)setView:(NSView*)view {
  [super setView:view];
  _loadedView = view;
  _parts->view.view = view;
  _parts->controller.setOutlets(_parts->outlets());
}

- (void)setTagsTableView:(NSTableView*)tableView {
  tagsTableView = tableView;
  _parts->tagsTableView.tableView = tableView;
  _parts->controller.setOutlets(_parts->outlets());
}

- (void)setTextField:(NSTextField*)textField at:(std::size_t)index {
  _parts->textFields[index].textField = textField;
  _parts->controller.setOutlets(_parts->outlets());
}

- (void)setImageURLTextField:(NSTextField*)textField {
  imageURLTextField = textField;
  [self setTextField:textField at:epg::epgItemTextAt("imageURL")];
}

- (void)setTitleTextField:(NSTextField*)textField {
  titleTextField = textField;
  [self setTextField:textField at:epg::epgItemTextAt("title")];
}

- (void)setDescriptionTextField:(NSTextField*)textField {
  descriptionTextField = textField;
  [self setTextField:textField at:epg::epgItemTextAt("description")];
}

- (void)setItems:(NSMutableArray*)items {
  auto& controller = _parts->controller;
  calledByHost(
      [&] { controller.setItems(items != nil ? std::make_shared<epg::cocoa::FoundationItemList>(items) : nullptr); });
}

- (NSMutableArray*)items {
  const std::shared_ptr<epg::EPGItemList> items = _parts->controller.items();
  return items != nullptr ? static_cast<epg::cocoa::FoundationItemList*>(items.get())->array() : nil;
}

// The tags table's data source.

- (NSInteger)numberOfRowsInTableView:(NSTableView*)tableView {
  return _parts->controller.numberOfRowsInTableView([self coreTableView:tableView]);
}

- (id)tableView:(NSTableView*)tableView objectValueForTableColumn:(NSTableColumn*)column row:(NSInteger)row {
  auto& controller = _parts->controller;
  const epg::TableView* const table = [self coreTableView:tableView];
  return calledByHost([&]() -> id {
    const epg::EPGDorvaSelinViewController::ObjectValue value =
        controller.tableViewObjectValue(table, epg::cocoa::optionalString([column identifier]).value_or(""), row);
    if (const std::string* name = std::get_if<std::string>(&value)) {
      return epg::cocoa::toString(*name);
    }
    if (const epg::TagState* state = std::get_if<epg::TagState>(&value)) {
      return [NSNumber numberWithInteger:*state];
    }
    return nil;
  });
}

- (void)tableView:(NSTableView*)tableView
    setObjectValue:(id)value
    forTableColumn:(NSTableColumn*)column
               row:(NSInteger)row {
  if (![value respondsToSelector:@selector(intValue)]) return;
  auto& controller = _parts->controller;
  const epg::TableView* const table = [self coreTableView:tableView];
  calledByHost([&] {
    controller.tableViewSetObjectValue(table, [value intValue],
                                       epg::cocoa::optionalString([column identifier]).value_or(""), row);
  });
}

/// The core's table for one of AppKit's, which may be any.
- (const epg::TableView*)coreTableView:(NSTableView*)tableView {
  static const epg::cocoa::CocoaTableView anotherTableView{};
  return tableView == tagsTableView ? _parts->outlets().tagsTableView : &anotherTableView;
}

- (NSInteger)stateOfTagAtIndex:(int)index {
  auto& controller = _parts->controller;
  return calledByHost([&] { return controller.stateOfTagAtIndex(index); });
}

- (void)setStateOfTag:(NSInteger)state atIndex:(int)index {
  auto& controller = _parts->controller;
  calledByHost([&] { controller.setStateOfTag(state, index); });
}

- (void)updateTagsTableView {
  auto& controller = _parts->controller;
  calledByHost([&] { controller.updateTagsTableView(); });
}

- (void)updateImageURLTextField {
  auto& controller = _parts->controller;
  calledByHost([&] { controller.updateImageURLTextField(); });
}

- (void)updateTitleTextField {
  auto& controller = _parts->controller;
  calledByHost([&] { controller.updateTitleTextField(); });
}

- (void)updateDescriptionTextField {
  auto& controller = _parts->controller;
  calledByHost([&] { controller.updateDescriptionTextField(); });
}

- (void)setMixedTextField:(NSTextField*)textField value:(BOOL)mixed {
  epg::cocoa::CocoaTextField field;
  field.textField = textField;
  auto& controller = _parts->controller;
  calledByHost([&] { controller.setMixedTextField(&field, mixed != NO); });
}

- (void)setMixedTableView:(NSTableView*)tableView value:(BOOL)mixed {
  (void)tableView;
  (void)mixed;
}

- (void)applyChanges {
  auto& controller = _parts->controller;
  calledByHost([&] { controller.applyChanges(); });
}

@end
