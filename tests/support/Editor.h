#pragma once

#include <memory>
#include <string>
#include <vector>

#include "editor/EPGDorvaSelinViewController.h"
#include "tests/support/EditorViews.h"
#include "tests/support/FilesInMemory.h"
#include "tests/support/Items.h"

namespace epg::test {

/// The bytes of a "Tags.plist" with these tags.
std::string catalogueFile(const Names& tags);

/// The editor's controller with a catalogue and views of its own.
class Editor {
 public:
  enum class ViewIs { Loaded, NotLoaded };

  explicit Editor(const Names& catalogue, ViewIs view = ViewIs::Loaded);

  FilesInMemory files;
  EditorViews views;

  EPGDorvaSelinViewController& controller() { return *controller_; }
  EPGDorvaSelinViewController* operator->() { return controller_.get(); }

  void show(const std::vector<Item>& items) { controller_->setItems(listOf(items)); }

  /// What the tags table shows in the row's cell.
  std::string nameInRow(int row) const;
  TagState stateInRow(int row) const;
  std::vector<TagState> statesInAllRows() const;

  /// The row's checkbox is clicked and proposes this state.
  void click(int row, int proposedState);

 private:
  std::unique_ptr<EPGDorvaSelinViewController> controller_;
};

}  // namespace epg::test
