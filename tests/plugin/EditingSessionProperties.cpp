// Random sessions, held against a model of plain dictionaries that store and session share as they are told to.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "plugin/EPGDorvaSelinManagerPlugin.h"
#include "tests/support/Editor.h"
#include "tests/support/Property.h"
#include "tests/support/RandomItems.h"

namespace epg::test {
namespace {

/// No disk and no threads: saves are counted and never run.
class CountingSaves : public FilesInMemory {
 public:
  void detachThread(std::function<void()> /*body*/) override { ++saves; }

  std::size_t saves = 0;
};

const char* const cataloguePath = "/bundle/Tags.plist";
const Names catalogue = {"a", "b", "A"};
const char* const fieldKeys[] = {"title", "description", "imageURL"};
constexpr std::size_t fieldCount = 3;

std::string entryID() { return oneTextOf({"1", "2", "3", "4", ""}); }

/// The plug-in as it is told in one page.
struct Model {
  using Record = std::shared_ptr<NaiveItem>;

  std::map<std::string, Record> store;
  std::vector<Record> edited;
  bool hasEditor = false;
  bool editorHasItems = false;
  NaiveField fields[fieldCount];
  std::size_t saves = 0;

  NaiveItems shown() const {
    NaiveItems items;
    if (!editorHasItems) return items;
    for (const Record& record : edited) items.push_back(record.get());
    return items;
  }

  void show() {
    if (!hasEditor) return;
    editorHasItems = true;
    for (std::size_t i = 0; i < fieldCount; ++i) fields[i] = naiveField(shown(), fieldKeys[i]);
  }

  void name(const Names& ids) {
    edited.clear();
    for (const std::string& id : ids) {
      const auto record = store.find(id);
      edited.push_back(std::make_shared<NaiveItem>(record == store.end() ? NaiveItem() : *record->second));
      edited.back()->texts["uniqueID"] = id;
    }
    show();
  }

  void commit() {
    for (std::size_t i = 0; i < fieldCount; ++i) applyNaively(shown(), fieldKeys[i], fields[i]);
    for (const Record& record : edited) store[*record->texts["uniqueID"]] = record;
    ++saves;
  }

  void remove(const Names& ids) {
    for (const std::string& id : ids) store.erase(id);
    ++saves;
  }

  void duplicate(const std::string& source, const std::string& target) {
    const auto record = store.find(source);
    if (record == store.end()) return;
    store[target] = std::make_shared<NaiveItem>(*record->second);
    ++saves;
  }
};

class RandomSession {
 public:
  RandomSession() {
    files_.put(cataloguePath, catalogueFile(catalogue));
    views_->catalogue = cataloguePath;
    plugin_ = EPGDorvaSelinManagerPlugin::initWithBundle(views_, "/data", files_);
    for (Times entries(0, 3); entries.next();) {
      const std::string id = entryID();
      const NaiveItem item = naiveItemOfAnyKind();
      tell("store", std::make_pair(id, item));
      plugin_->epgItems()->setItem(id, itemWith(entriesOf(item)));
      model_.store[id] = std::make_shared<NaiveItem>(item);
    }
    if (!onceIn(4)) openEditor();
  }

  void doAnything() {
    switch (below(13)) {
      case 0:
      case 1:
      case 2: {
        const Names ids = upTo(4, entryID);
        tell("edit", ids);
        plugin_->setEditedEPGUniqueIDs(ids);
        model_.name(ids);
        break;
      }
      case 3:
      case 4:
      case 5:
        click();
        break;
      case 6:
      case 7:
        type();
        break;
      case 8:
      case 9:
        tell("commit", true);
        HOLDS(plugin_->commitEditing());
        model_.commit();
        break;
      case 10:
        tell("revert", true);
        plugin_->revertEditing();
        model_.show();
        break;
      case 11: {
        const Names ids = upTo(2, entryID);
        tell("remove", ids);
        plugin_->removeEPGItemsWithUniqueIDs(ids);
        model_.remove(ids);
        break;
      }
      default:
        if (onceIn(4)) {
          openEditor();
        } else {
          const std::string source = entryID();
          const std::string target = entryID();
          tell("duplicate", std::make_pair(source, target));
          plugin_->duplicateEPGItemWithUniqueID(source, target);
          model_.duplicate(source, target);
        }
    }
  }

  void expectTheSameAsTheModel() {
    const auto store = plugin_->epgItems();
    HOLDS(store->size() == model_.store.size());
    for (const auto& [id, record] : model_.store) {
      const Item item = store->item(id);
      HOLDS(item != nullptr);
      HOLDS(naiveItem(*item) == *record);
    }
    const auto edited = plugin_->editedItems();
    HOLDS(edited->size() == model_.edited.size());
    for (std::size_t i = 0; i < edited->size(); ++i) HOLDS(naiveItem(*edited->at(i)) == *model_.edited[i]);
    HOLDS(files_.saves == model_.saves);
    if (model_.hasEditor) expectTheSameEditor();
  }

 private:
  void openEditor() {
    tell("open the editor", true);
    plugin_->editorView();
    model_.hasEditor = true;
  }

  void click() {
    if (!model_.hasEditor) return;
    const std::size_t row = below(catalogue.size());
    const int proposed = oneOf({-1, 0, 1});
    tell("click", std::make_pair(row, proposed));
    views_->owner->tableViewSetObjectValue(&views_->table, proposed, "selected", static_cast<std::ptrdiff_t>(row));
    setNaively(model_.shown(), catalogue[row], proposed == -1 ? 1 : proposed);
  }

  void type() {
    if (!model_.hasEditor) return;
    const std::size_t place = below(fieldCount);
    const std::string text = fieldText();
    tell("type", std::make_pair(place, text));
    field(place).type(text);
    model_.fields[place].text = text;
  }

  JournalField& field(std::size_t place) {
    if (place == 0) return views_->title;
    return place == 1 ? views_->description : views_->imageURL;
  }

  void expectTheSameEditor() {
    for (std::size_t i = 0; i < fieldCount; ++i) {
      HOLDS(field(i).stringValue() == model_.fields[i].text);
      HOLDS(field(i).placeholderString().has_value() == model_.fields[i].mixed);
    }
    for (std::size_t row = 0; row < catalogue.size(); ++row) {
      const auto cell =
          views_->owner->tableViewObjectValue(&views_->table, "selected", static_cast<std::ptrdiff_t>(row));
      const TagState* const state = std::get_if<TagState>(&cell);
      HOLDS(state != nullptr);
      HOLDS(static_cast<int>(*state) == naiveState(model_.shown(), catalogue[row]));
    }
  }

  CountingSaves files_;
  std::shared_ptr<EditorViews> views_ = std::make_shared<EditorViews>();
  std::shared_ptr<EPGDorvaSelinManagerPlugin> plugin_;
  Model model_;
};

TEST(RandomEditingSession, EndsAsTheModelSays) {
  expectForCases(20000, [] {
    RandomSession session;
    for (Times steps(1, 19); steps.next();) {
      session.doAnything();
      session.expectTheSameAsTheModel();
    }
  });
}

}  // namespace
}  // namespace epg::test
