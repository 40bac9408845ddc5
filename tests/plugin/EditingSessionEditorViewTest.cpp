#include <gtest/gtest.h>

#include <memory>

#include "tests/support/SessionTest.h"

namespace epg::test {
namespace {

class EditingSessionEditorView : public SessionTest {};

TEST_F(EditingSessionEditorView, IsTheViewOfTheInterfaceFileInTheBundle) {
  EXPECT_EQ(plugin->editorView(), &views->view);
  EXPECT_EQ(views->interfacesLoaded, Names({"EPGDorvaSelinEditor"}));
  EXPECT_EQ(views->resourcesAsked, Names({"Tags.plist"}));
}

TEST_F(EditingSessionEditorView, IsMadeOnTheFirstRequestOnly) {
  EXPECT_EQ(views->interfacesLoaded, Names());
  View* const first = plugin->editorView();
  const EPGDorvaSelinViewController* const controller = views->owner;
  EXPECT_EQ(plugin->editorView(), first);
  EXPECT_EQ(views->owner, controller);
  EXPECT_EQ(views->interfacesLoaded.size(), 1u);
  EXPECT_EQ(views->resourcesAsked.size(), 1u);
}

TEST_F(EditingSessionEditorView, IsMadeByNoOtherOperation) {
  plugin->setEditedEPGUniqueIDs({"A"});
  plugin->revertEditing();
  plugin->commitEditing();
  plugin->minimumEditorViewSize();
  plugin->maximumEditorViewSize();
  EXPECT_EQ(views->owner, nullptr);
  EXPECT_EQ(views->resourcesAsked, Names());
}

TEST_F(EditingSessionEditorView, HasThePluginObjectAsItsControllersDelegate) {
  plugin->editorView();
  EXPECT_EQ(views->owner->delegate(), plugin.get());
}

TEST_F(EditingSessionEditorView, OfAnObjectWithoutABundleIsNone) {
  start();
  EXPECT_EQ(plugin->editorView(), nullptr);
  put("A", {{"title", "T"}});
  plugin->setEditedEPGUniqueIDs({"A"});
  plugin->revertEditing();
  EXPECT_TRUE(plugin->commitEditing());
  EXPECT_EQ(itemInStore("A"), dictionaryOf({{"title", "T"}, {"uniqueID", "A"}}));
}

TEST_F(EditingSessionEditorView, OfABundleWithoutAnInterfaceIsNone) {
  views->connected = EditorOutlets();
  EXPECT_EQ(plugin->editorView(), nullptr);
  EXPECT_EQ(plugin->editorView(), nullptr);
}

TEST_F(EditingSessionEditorView, IsAtLeast300WideAnd200High) {
  EXPECT_EQ(plugin->minimumEditorViewSize().width, 300);
  EXPECT_EQ(plugin->minimumEditorViewSize().height, 200);
}

TEST_F(EditingSessionEditorView, IsAtMost5000WideAnd5000High) {
  EXPECT_EQ(plugin->maximumEditorViewSize().width, 5000);
  EXPECT_EQ(plugin->maximumEditorViewSize().height, 5000);
}

TEST_F(EditingSessionEditorView, HasTheSameSizeLimitsWhateverIsUnderEdit) {
  edit({"A", "B"});
  EXPECT_EQ(plugin->minimumEditorViewSize().width, 300);
  EXPECT_EQ(plugin->maximumEditorViewSize().height, 5000);
}

TEST_F(EditingSessionEditorView, AskedForAfterTheNamingShowsNoItems) {
  put("A", {{"title", "T"}, {"tags", listOfNames({"x"})}});
  plugin->setEditedEPGUniqueIDs({"A"});
  plugin->editorView();
  EXPECT_EQ(views->owner->items(), nullptr);
  EXPECT_EQ(stateInRow(0), TagStateOff);
  EXPECT_EQ(views->journal, Journal());
}

TEST_F(EditingSessionEditorView, AskedForAfterTheNamingChangesNoItem) {
  put("A", {{"title", "T"}});
  plugin->setEditedEPGUniqueIDs({"A"});
  plugin->editorView();
  click(0, 1);
  typeTitle("typed");
  plugin->commitEditing();
  EXPECT_EQ(itemInStore("A"), dictionaryOf({{"title", "T"}, {"uniqueID", "A"}}));
}

TEST_F(EditingSessionEditorView, AskedForAfterTheNamingShowsTheItemsOnceTheyAreNamedAgain) {
  put("A", {{"title", "T"}, {"tags", listOfNames({"x"})}});
  plugin->setEditedEPGUniqueIDs({"A"});
  plugin->editorView();
  plugin->setEditedEPGUniqueIDs({"A"});
  EXPECT_EQ(views->title.stringValue(), "T");
  EXPECT_EQ(stateInRow(0), TagStateOn);
}

TEST_F(EditingSessionEditorView, AskedForAfterTheNamingShowsTheItemsOnceTheHostReverts) {
  put("A", {{"title", "T"}, {"tags", listOfNames({"x"})}});
  plugin->setEditedEPGUniqueIDs({"A"});
  const auto list = plugin->editedItems();
  plugin->editorView();
  plugin->revertEditing();
  EXPECT_EQ(views->owner->items(), list);
  EXPECT_EQ(views->title.stringValue(), "T");
  EXPECT_EQ(stateInRow(0), TagStateOn);
}

TEST_F(EditingSessionEditorView, AskedForAgainRefreshesNothing) {
  put("A", {{"title", "T"}});
  edit({"A"});
  typeTitle("typed");
  views->journal.clear();
  plugin->editorView();
  EXPECT_EQ(views->journal, Journal());
  EXPECT_EQ(views->title.stringValue(), "typed");
}

TEST_F(EditingSessionEditorView, ShowsTheVeryListOfTheSession) {
  edit({"A"});
  EXPECT_EQ(views->owner->items(), plugin->editedItems());
}

TEST_F(EditingSessionEditorView, GoesWithThePluginObject) {
  edit({"A"});
  const std::weak_ptr<EPGItemList> list = plugin->editedItems();
  const std::weak_ptr<EditorViews> bundle = views;
  stop();
  EXPECT_TRUE(list.expired());
  views.reset();
  EXPECT_TRUE(bundle.expired());
}

}  // namespace
}  // namespace epg::test
