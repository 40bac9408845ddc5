#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "tests/support/Editor.h"

namespace epg::test {
namespace {

TEST(EditorView, IsNotLoadedByMakingTheController) {
  const Editor editor({"x"}, Editor::ViewIs::NotLoaded);
  EXPECT_EQ(editor.views.interfacesLoaded, Names());
}

TEST(EditorView, IsLoadedFromTheNamedInterfaceFileOnFirstUse) {
  Editor editor({"x"}, Editor::ViewIs::NotLoaded);
  EXPECT_EQ(editor->view(), &editor.views.view);
  EXPECT_EQ(editor.views.interfacesLoaded, Names({"EPGDorvaSelinEditor"}));
  EXPECT_EQ(editor.views.owner, &editor.controller());
}

TEST(EditorView, IsLoadedOnlyOnce) {
  Editor editor({"x"}, Editor::ViewIs::NotLoaded);
  View* const first = editor->view();
  EXPECT_EQ(editor->view(), first);
  EXPECT_EQ(editor.views.interfacesLoaded.size(), 1u);
}

TEST(EditorView, IsNoneWhereTheInterfaceHasNone) {
  Editor editor({"x"}, Editor::ViewIs::NotLoaded);
  editor.views.connected = EditorOutlets();
  EXPECT_EQ(editor->view(), nullptr);
  EXPECT_EQ(editor->view(), nullptr);
  EXPECT_EQ(editor.views.interfacesLoaded.size(), 1u);
}

TEST(EditorView, IsNotLoadedByGivingItems) {
  Editor editor({"x"}, Editor::ViewIs::NotLoaded);
  editor.show({itemTitled("A")});
  EXPECT_EQ(editor.views.interfacesLoaded, Names());
  EXPECT_EQ(editor.views.journal, Journal());
}

TEST(EditorView, LoadedAfterTheItemsWereGivenShowsTheirTagsAtOnce) {
  Editor editor({"x", "y"}, Editor::ViewIs::NotLoaded);
  editor.show({itemWithTags({"x"}), itemWithTags({"x", "y"})});
  editor->view();
  EXPECT_EQ(editor.statesInAllRows(), (std::vector<TagState>{TagStateOn, TagStateMixed}));
}

TEST(EditorView, LoadedAfterTheItemsWereGivenKeepsTheTextsOfTheInterfaceFileUntilTheNextItems) {
  Editor editor({"x"}, Editor::ViewIs::NotLoaded);
  editor.views.title.type("from the interface file");
  const auto list = listOf({itemTitled("A")});
  editor->setItems(list);
  editor->view();
  EXPECT_EQ(editor.views.title.stringValue(), "from the interface file");
  EXPECT_EQ(editor.views.journal, Journal());
  editor->setItems(list);
  EXPECT_EQ(editor.views.title.stringValue(), "A");
}

TEST(EditorView, AwakingFromItsFileRefreshesNothing) {
  Editor editor({"x"});
  const auto list = listOf({itemTitled("A")});
  editor->setItems(list);
  editor.views.title.type("typed");
  editor.views.journal.clear();
  editor->awakeFromNib();
  EXPECT_EQ(editor.views.journal, Journal());
  EXPECT_EQ(editor.views.title.stringValue(), "typed");
}

TEST(EditorView, NotLoadedShowsAndAppliesNothing) {
  Editor editor({"x"}, Editor::ViewIs::NotLoaded);
  const Item item = itemTitled("A");
  editor.show({item});
  editor.views.title.type("typed");
  const PropertyListDictionary before = item->values();
  editor->updateTagsTableView();
  editor->updateImageURLTextField();
  editor->updateTitleTextField();
  editor->updateDescriptionTextField();
  editor->applyChanges();
  EXPECT_EQ(editor.views.journal, Journal());
  EXPECT_EQ(item->values(), before);
}

TEST(EditorView, NotLoadedStillTakesTagChanges) {
  Editor editor({"x"}, Editor::ViewIs::NotLoaded);
  const Item item = itemWithoutTags();
  editor.show({item});
  editor->setStateOfTag(TagStateOn, 0);
  EXPECT_EQ(tagsOf(*item), Names({"x"}));
  EXPECT_EQ(editor->stateOfTagAtIndex(0), TagStateOn);
}

TEST(EditorView, ConnectedByTheFaceItselfIsTheOneInUse) {
  Editor editor({"x"}, Editor::ViewIs::NotLoaded);
  editor->setOutlets(editor.views.connected);
  editor.show({itemTitled("A")});
  EXPECT_EQ(editor.views.title.stringValue(), "A");
  EXPECT_EQ(editor.views.interfacesLoaded, Names());
}

TEST(EditorItems, AreNoneAtFirst) {
  Editor editor({"x"});
  EXPECT_EQ(editor->items(), nullptr);
}

TEST(EditorItems, AreTheVeryListLastGiven) {
  Editor editor({"x"});
  const auto list = listOf({itemTitled("A")});
  const auto other = listOf({});
  editor->setItems(list);
  EXPECT_EQ(editor->items(), list);
  editor->setItems(other);
  EXPECT_EQ(editor->items(), other);
}

TEST(EditorItems, AreKeptAliveByTheEditor) {
  Editor editor({"x"});
  const std::weak_ptr<EPGItemList> list = [&editor] {
    const auto given = listOf({itemTitled("A")});
    editor->setItems(given);
    return given;
  }();
  EXPECT_FALSE(list.expired());
}

TEST(EditorItems, AreGivenUpWhenOthersAreGiven) {
  Editor editor({"x"});
  auto list = listOf({itemTitled("A")});
  const std::weak_ptr<EPGItemList> observed = list;
  editor->setItems(std::move(list));
  editor->setItems(listOf({}));
  EXPECT_TRUE(observed.expired());
}

TEST(EditorItems, GivenRefreshTheTableThenImageURLTitleAndDescription) {
  Editor editor({"x"});
  editor.show({itemWith({{"title", "T"}, {"description", "D"}, {"imageURL", "I"}})});
  EXPECT_EQ(editor.views.journal,
            Journal({"table reload", "imageURL placeholder none", "imageURL text I", "title placeholder none",
                     "title text T", "description placeholder none", "description text D"}));
}

TEST(EditorItems, GivenAgainAreShownAsTheyAreNow) {
  Editor editor({"x"});
  const Item item = itemTitled("A");
  const auto list = listOf({item});
  editor->setItems(list);
  item->set("title", "B");
  list->append(itemWith({{"title", "B"}, {"description", "D"}}));
  editor->setItems(list);
  EXPECT_EQ(editor.views.title.stringValue(), "B");
  EXPECT_EQ(editor.views.description.stringValue(), "D");
}

TEST(EditorTagsTable, UpdatedReloadsAllRows) {
  Editor editor({"x"});
  editor->updateTagsTableView();
  EXPECT_EQ(editor.views.journal, Journal({"table reload"}));
}

TEST(EditorDelegate, IsNoneAtFirst) {
  Editor editor({});
  EXPECT_EQ(editor->delegate(), nullptr);
}

TEST(EditorDelegate, IsWhateverWasSet) {
  Editor editor({});
  int anything = 0;
  editor->setDelegate(&anything);
  EXPECT_EQ(editor->delegate(), &anything);
  editor->setDelegate(nullptr);
  EXPECT_EQ(editor->delegate(), nullptr);
}

/// An interface file in which one outlet is not connected.
struct MissingOutlet {
  void showAndApply() {
    editor->view();
    editor.show({a});
    editor.views.journal.clear();
    editor.views.title.type("T");
    editor.views.description.type("D");
    editor.views.imageURL.type("I");
    editor->applyChanges();
  }

  Editor editor{{"x"}, Editor::ViewIs::NotLoaded};
  const Item a = itemWith({{"title", "A"}, {"description", "A"}, {"imageURL", "A"}});
};

TEST(EditorWithoutAnOutlet, LeavesItsFieldAloneAndTheOthersAtWork) {
  const struct {
    const char* missing;
    std::function<void(EditorOutlets&)> disconnect;
    std::string title, description, imageURL;
  } rows[] = {
      {"table", [](EditorOutlets& outlets) { outlets.tagsTableView = nullptr; }, "T", "D", "I"},
      {"title", [](EditorOutlets& outlets) { outlets.textFields[epgItemTextAt("title")] = nullptr; }, "A", "D", "I"},
      {"description", [](EditorOutlets& outlets) { outlets.textFields[epgItemTextAt("description")] = nullptr; }, "T",
       "A", "I"},
      {"image URL", [](EditorOutlets& outlets) { outlets.textFields[epgItemTextAt("imageURL")] = nullptr; }, "T", "D",
       "A"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.missing);
    MissingOutlet shown;
    row.disconnect(shown.editor.views.connected);
    shown.showAndApply();
    shown.editor->updateTagsTableView();
    EXPECT_EQ(textOf(*shown.a, "title"), row.title);
    EXPECT_EQ(textOf(*shown.a, "description"), row.description);
    EXPECT_EQ(textOf(*shown.a, "imageURL"), row.imageURL);
    EXPECT_EQ(shown.editor.views.journal, row.missing == std::string("table") ? Journal() : Journal({"table reload"}));
  }
}

TEST(EditorWithoutAnOutlet, OfAnyViewChangesNothing) {
  MissingOutlet shown;
  shown.editor.views.connected = EditorOutlets();
  const PropertyListDictionary before = shown.a->values();
  shown.showAndApply();
  EXPECT_EQ(shown.a->values(), before);
  EXPECT_EQ(shown.editor.views.journal, Journal());
}

}  // namespace
}  // namespace epg::test
