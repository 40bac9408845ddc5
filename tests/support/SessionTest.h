#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/Dictionary.h"
#include "tests/support/EditorViews.h"
#include "tests/support/PluginTest.h"

namespace epg::test {

/// A plug-in object whose bundle has an editor with the tags "x" (row 0), "y" (row 1) and "z" (row 2). Saves do not
/// wait for the disk.
class SessionTest : public PluginTest {
 protected:
  SessionTest();
  ~SessionTest() override;

  /// Makes the object anew over what the data folder holds, with a new editor.
  void startWithEditor();

  /// Names the entries under edit with the editor open.
  void edit(const std::vector<std::string>& uniqueIDs);
  void click(int row, int proposedState);
  TagState stateInRow(int row) const;
  void typeTitle(const std::string& text) { views->title.type(text); }

  Item edited(std::size_t index) const { return plugin->editedItems()->at(index); }
  Item stored(const std::string& uniqueID) const { return plugin->epgItems()->item(uniqueID); }
  std::optional<Names> storedTags(const std::string& uniqueID) const;
  std::optional<std::string> storedTitle(const std::string& uniqueID) const;
  /// The tags of the entry as the store's file holds them.
  std::optional<Names> tagsInFile(const std::string& uniqueID) const;

  std::shared_ptr<EditorViews> views;
};

}  // namespace epg::test
