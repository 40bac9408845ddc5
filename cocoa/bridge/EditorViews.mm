#import "cocoa/bridge/EditorViews.h"

#import "cocoa/bridge/FoundationValues.h"

namespace epg::cocoa {

void CocoaTableView::reloadData() { [tableView reloadData]; }

std::string CocoaTextField::stringValue() const { return fromString([textField stringValue]); }

void CocoaTextField::setStringValue(const std::string& text) { [textField setStringValue:toString(text)]; }

std::optional<std::string> CocoaTextField::placeholderString() const {
  return optionalString([[textField cell] placeholderString]);
}

void CocoaTextField::setPlaceholderString(const std::optional<std::string>& placeholder) {
  [[textField cell] setPlaceholderString:toString(placeholder)];
  [textField setNeedsDisplay:YES];
}

}  // namespace epg::cocoa
