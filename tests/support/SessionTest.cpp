#include "tests/support/SessionTest.h"

#include <variant>

#include "tests/support/Editor.h"

namespace epg::test {

SessionTest::SessionTest() {
  environment.setFlushesToDisk(false);
  writeFile(folder.makeFolder("bundle") + "/Tags.plist", catalogueFile({"x", "y", "z"}));
  startWithEditor();
}

SessionTest::~SessionTest() { stop(); }

void SessionTest::startWithEditor() {
  stop();
  views = std::make_shared<EditorViews>();
  views->catalogue = folder.file("bundle") + "/Tags.plist";
  plugin = EPGDorvaSelinManagerPlugin::initWithBundle(views, dataFolder, environment);
  plugin->setDelegate(&delegate);
}

void SessionTest::edit(const std::vector<std::string>& uniqueIDs) {
  plugin->editorView();
  plugin->setEditedEPGUniqueIDs(uniqueIDs);
}

void SessionTest::click(int row, int proposedState) {
  ASSERT_TRUE(views->owner) << "the editor view was never asked for";
  views->owner->tableViewSetObjectValue(&views->table, proposedState, "selected", row);
}

TagState SessionTest::stateInRow(int row) const {
  constexpr auto noState = static_cast<TagState>(-2);
  if (!views->owner) return noState;
  const auto cell = views->owner->tableViewObjectValue(&views->table, "selected", row);
  const TagState* const state = std::get_if<TagState>(&cell);
  return state ? *state : noState;
}

std::optional<Names> SessionTest::storedTags(const std::string& uniqueID) const {
  const Item item = stored(uniqueID);
  return item ? tagsOf(*item) : std::nullopt;
}

std::optional<std::string> SessionTest::storedTitle(const std::string& uniqueID) const {
  const Item item = stored(uniqueID);
  return item ? textOf(*item, ZRLEPGDSTitleKey) : std::nullopt;
}

std::optional<Names> SessionTest::tagsInFile(const std::string& uniqueID) const {
  const PropertyListDictionary file = storeFile();
  const PropertyList* const entry = file.find(uniqueID);
  if (!entry || !entry->asDictionary()) return std::nullopt;
  return tagsOf(MemoryItem(*entry->asDictionary()));
}

}  // namespace epg::test
