#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

#include "editor/EditorInterface.h"
#include "model/EPGItemList.h"

namespace epg {

class Environment;

/// The platform's checkbox states.
enum TagState : std::ptrdiff_t { TagStateMixed = -1, TagStateOff = 0, TagStateOn = 1 };

/// What an empty field shows where the items differ; also the only record that they do.
extern const char* const multipleValuesPlaceholder;

/// Edits the metadata of one item or of many at once: a table with one row for each tag of the catalogue (on, off
/// or mixed over the items) and three text fields.
///
/// Tag clicks change the items at once; texts reach them only through `applyChanges`. Host's thread only.
class EPGDorvaSelinViewController {
 public:
  /// Reads the tag catalogue from the bundle's "Tags.plist", once; without a readable one the catalogue is empty,
  /// silently. `bundle` may be null; it and `environment` must outlive the controller.
  EPGDorvaSelinViewController(std::string nibName, Bundle* bundle, Environment& environment);
  EPGDorvaSelinViewController(const EPGDorvaSelinViewController&) = delete;
  EPGDorvaSelinViewController& operator=(const EPGDorvaSelinViewController&) = delete;

  /// The object that made the controller. Not owned and never called.
  void* delegate() const { return delegate_; }
  void setDelegate(void* delegate) { delegate_ = delegate; }

  /// The view, loading the interface file on first use. Null when the face has none.
  View* view();
  void awakeFromNib() {}
  /// For a face whose platform connects the views itself, at its own time. The views must live until others are set.
  void setOutlets(const EditorOutlets& outlets) { outlets_ = outlets; }

  /// The very list last given; null before the first.
  std::shared_ptr<EPGItemList> items() const { return items_; }
  /// Keeps the list (no copy) and shows it. The same list may be given again to show what it holds now.
  void setItems(std::shared_ptr<EPGItemList> items);

  // The tags table's data source. Columns are known by their identifiers "name" and "selected".

  /// What a cell shows: nothing, a tag name or a tag state.
  using ObjectValue = std::variant<std::monostate, std::string, TagState>;

  std::ptrdiff_t numberOfRowsInTableView(const TableView* tableView) const;
  ObjectValue tableViewObjectValue(const TableView* tableView, const std::string& columnIdentifier,
                                   std::ptrdiff_t row) const;
  /// `proposedState` is the value that the cell proposes, as a 32-bit integer; mixed is taken as on.
  void tableViewSetObjectValue(const TableView* tableView, int proposedState, const std::string& columnIdentifier,
                               std::ptrdiff_t row);

  /// `index` counts the catalogue's tags from 0; there is nothing to see or change beyond them.
  TagState stateOfTagAtIndex(int index) const;
  /// Puts the tag into every item's list or takes it out; any state but on and off changes nothing. Lists are never
  /// changed in place: whoever holds an item's old list keeps it as it was.
  void setStateOfTag(std::ptrdiff_t state, int index);

  void updateTagsTableView();
  void updateImageURLTextField();
  void updateTitleTextField();
  void updateDescriptionTextField();
  void setMixedTextField(TextField* textField, bool mixed);
  void setMixedTableView(TableView* /*tableView*/, bool /*mixed*/) {}

  /// Writes the fields into the items: a field without a placeholder always, a mixed one only when it holds text.
  /// A field that does not exist has no text to write and is passed over.
  void applyChanges();

 private:
  /// Of the text value at this place of the list.
  void updateTextField(std::size_t index);
  bool isTagIndex(std::ptrdiff_t index) const;
  /// The states of all catalogue tags in one pass over the items.
  std::vector<TagState> tagStates() const;

  std::string nibName_;
  Bundle* bundle_;
  void* delegate_ = nullptr;
  std::shared_ptr<EPGItemList> items_;
  std::vector<std::string> tags_;
  /// By names that stand in `tags_`. Of a name that the catalogue lists twice, the first.
  std::unordered_map<std::string_view, std::size_t> tagIndexes_;
  // The table asks for every row after every change; the states are kept for as long as the list stands still.
  mutable std::vector<TagState> states_;
  mutable std::optional<std::size_t> statesChangeCount_;
  bool loaded_ = false;
  EditorOutlets outlets_;
};

}  // namespace epg
