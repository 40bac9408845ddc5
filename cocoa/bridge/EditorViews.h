#pragma once

#import <AppKit/AppKit.h>

#include <optional>
#include <string>

#include "editor/EditorInterface.h"

// AppKit's views as the core's editor sees them. They hold no view; the interface file's objects own themselves.

namespace epg::cocoa {

class CocoaView : public View {
 public:
  NSView* view = nil;
};

class CocoaTableView : public TableView {
 public:
  NSTableView* tableView = nil;

  void reloadData() override;
};

class CocoaTextField : public TextField {
 public:
  NSTextField* textField = nil;

  std::string stringValue() const override;
  void setStringValue(const std::string& text) override;
  std::optional<std::string> placeholderString() const override;
  void setPlaceholderString(const std::optional<std::string>& placeholder) override;
};

}  // namespace epg::cocoa
