#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "editor/EditorInterface.h"

namespace epg::test {

/// What was done to the views, in order: "table reload", "title text A", "title placeholder none".
using Journal = std::vector<std::string>;

/// A table that writes down when it is told to reload.
class JournalTable : public TableView {
 public:
  explicit JournalTable(Journal& journal) : journal_(journal) {}

  void reloadData() override { journal_.emplace_back("table reload"); }

 private:
  Journal& journal_;
};

/// A text field without a window. What the editor does to it goes into the journal; what the operator types does not.
class JournalField : public TextField {
 public:
  JournalField(std::string name, Journal& journal) : name_(std::move(name)), journal_(journal) {}

  /// The operator replaces the text. The placeholder stays, as a real field keeps it behind its text.
  void type(const std::string& text) { text_ = text; }

  std::string stringValue() const override { return text_; }
  void setStringValue(const std::string& text) override;
  std::optional<std::string> placeholderString() const override { return placeholder_; }
  void setPlaceholderString(const std::optional<std::string>& placeholder) override;

 private:
  std::string name_;
  Journal& journal_;
  std::string text_;
  std::optional<std::string> placeholder_;
};

/// A bundle whose interface file holds a table and three fields. One of these serves one editor.
class EditorViews : public Bundle {
 public:
  Journal journal;
  View view;
  JournalTable table{journal};
  JournalField imageURL{"imageURL", journal};
  JournalField title{"title", journal};
  JournalField description{"description", journal};

  /// What the interface file connects; take one away and the editor goes without it.
  EditorOutlets connected{&view, &table, {&title, &description, &imageURL}};
  /// The path that the bundle answers for its tag catalogue.
  std::optional<std::string> catalogue;

  /// Resources that were asked for ("Tags.plist") and interface files that were loaded.
  mutable std::vector<std::string> resourcesAsked;
  std::vector<std::string> interfacesLoaded;
  EPGDorvaSelinViewController* owner = nullptr;

  std::optional<std::string> pathForResource(const std::string& name, const std::string& type) const override;
  EditorOutlets loadInterface(const std::string& nibName, EPGDorvaSelinViewController& interfaceOwner) override;
};

}  // namespace epg::test
