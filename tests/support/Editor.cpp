#include "tests/support/Editor.h"

#include <cstddef>
#include <utility>
#include <variant>

#include "tests/support/NaivePropertyListXML.h"

namespace epg::test {

namespace {

const char* const cataloguePath = "/bundle/Tags.plist";

}  // namespace

std::string catalogueFile(const Names& tags) {
  PropertyListDictionary catalogue;
  catalogue.set("tags", listOfNames(tags));
  // The writer of the plug-in takes a mebibyte for every file, which is much for the editors of a property.
  return naivePropertyListXML(PropertyList(std::move(catalogue))).value_or("");
}

Editor::Editor(const Names& catalogue, ViewIs view) {
  files.put(cataloguePath, catalogueFile(catalogue));
  views.catalogue = cataloguePath;
  controller_ = std::make_unique<EPGDorvaSelinViewController>("EPGDorvaSelinEditor", &views, files);
  if (view == ViewIs::Loaded) controller_->view();
}

std::string Editor::nameInRow(int row) const {
  const auto cell = controller_->tableViewObjectValue(&views.table, "name", row);
  const std::string* const name = std::get_if<std::string>(&cell);
  return name ? *name : "(no name)";
}

TagState Editor::stateInRow(int row) const {
  const auto cell = controller_->tableViewObjectValue(&views.table, "selected", row);
  const TagState* const state = std::get_if<TagState>(&cell);
  constexpr auto noState = static_cast<TagState>(-2);
  return state ? *state : noState;
}

std::vector<TagState> Editor::statesInAllRows() const {
  std::vector<TagState> states;
  const auto rows = static_cast<int>(controller_->numberOfRowsInTableView(&views.table));
  states.reserve(static_cast<std::size_t>(rows));
  for (int row = 0; row < rows; ++row) states.push_back(stateInRow(row));
  return states;
}

void Editor::click(int row, int proposedState) {
  controller_->tableViewSetObjectValue(&views.table, proposedState, "selected", row);
}

}  // namespace epg::test
