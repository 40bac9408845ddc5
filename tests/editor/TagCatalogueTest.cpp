#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <memory>
#include <string>

#include "plist/PropertyListFile.h"
#include "tests/support/Editor.h"

namespace epg::test {
namespace {

class TagCatalogue : public ::testing::Test {
 protected:
  static constexpr const char* path = "/bundle/Tags.plist";

  /// The number of rows over a catalogue file with this content.
  std::ptrdiff_t rowsWithFile(const std::string& content) {
    files.put(path, content);
    views.catalogue = path;
    return rows();
  }

  std::ptrdiff_t rowsWithTopLevel(const PropertyList& topLevel) {
    return rowsWithFile(propertyListXML(topLevel).value_or("(not written)"));
  }

  std::ptrdiff_t rowsWithTags(const PropertyList& tags) {
    PropertyListDictionary catalogue;
    catalogue.set("tags", tags);
    return rowsWithTopLevel(PropertyList(catalogue));
  }

  /// The number of rows over the catalogue as it stands, which must be told in silence.
  std::ptrdiff_t rows() {
    EPGDorvaSelinViewController controller("EPGDorvaSelinEditor", &views, files);
    controller.view();
    controller.setItems(listOf({itemWithTags({"Drama"})}));
    EXPECT_TRUE(files.logged().empty());
    return controller.numberOfRowsInTableView(&views.table);
  }

  FilesInMemory files;
  EditorViews views;
};

TEST_F(TagCatalogue, IsTheListUnderTagsInItsOrder) {
  Editor editor({"Western", "Drama", "Arts"});
  EXPECT_EQ(editor->numberOfRowsInTableView(&editor.views.table), 3);
  EXPECT_EQ(editor.nameInRow(0), "Western");
  EXPECT_EQ(editor.nameInRow(1), "Drama");
  EXPECT_EQ(editor.nameInRow(2), "Arts");
}

TEST_F(TagCatalogue, NamesAreShownExactlyAsStored) {
  const Names names = {" Drama", "Drama ", "drama", "Café", "Cafe\xCC\x81", "", "<Multiple Values>", "a\nb"};
  Editor editor(names);
  for (int row = 0; row < 8; ++row) EXPECT_EQ(editor.nameInRow(row), names[static_cast<std::size_t>(row)]);
}

TEST_F(TagCatalogue, IsAskedForInTheGivenBundleAsTagsPlist) {
  rowsWithTags(listOfNames({"Drama"}));
  EXPECT_EQ(views.resourcesAsked, Names({"Tags.plist"}));
}

TEST_F(TagCatalogue, IsReadInTheBinaryFormToo) {
  // {"tags": ["Drama", "Live"]}
  const char binary[] =
      "bplist00\xD1\x01\x02Ttags\xA2\x03\x04"
      "UDramaTLive"
      "\x08\x0B\x10\x13\x19"
      "\0\0\0\0\0\0\x01\x01\0\0\0\0\0\0\0\x05\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x1E";
  EXPECT_EQ(rowsWithFile(std::string(binary, sizeof binary - 1)), 2);
}

TEST_F(TagCatalogue, IgnoresEveryOtherKey) {
  PropertyListDictionary catalogue;
  catalogue.set("Tags", listOfNames({"a"}));
  catalogue.set("name", "b");
  catalogue.set("selected", listOfNames({"c", "d"}));
  catalogue.set("tags", listOfNames({"Drama"}));
  EXPECT_EQ(rowsWithTopLevel(PropertyList(catalogue)), 1);
}

TEST_F(TagCatalogue, IsEmptyWithoutTheResource) {
  views.catalogue.reset();
  EXPECT_EQ(rows(), 0);
}

TEST_F(TagCatalogue, IsEmptyWhenTheResourcePathIsEmpty) {
  views.catalogue = "";
  files.put("", catalogueFile({"Drama"}));
  EXPECT_EQ(rows(), 0);
}

TEST_F(TagCatalogue, IsEmptyWithoutABundle) {
  EPGDorvaSelinViewController controller("EPGDorvaSelinEditor", nullptr, files);
  EXPECT_EQ(controller.view(), nullptr);
  controller.setItems(listOf({itemWithTags({"Drama"})}));
  EXPECT_EQ(controller.numberOfRowsInTableView(nullptr), 0);
}

TEST_F(TagCatalogue, IsEmptyWhenTheFileIsGone) {
  views.catalogue = path;
  EXPECT_EQ(rows(), 0);
}

TEST_F(TagCatalogue, IsEmptyWhenTheFileMayNotBeRead) {
  files.put(path, catalogueFile({"Drama"}));
  files.refuse(path, EACCES);
  views.catalogue = path;
  EXPECT_EQ(rows(), 0);
}

TEST_F(TagCatalogue, IsEmptyWhenTheFileHoldsNoListUnderTags) {
  const auto file = [](const PropertyList& list) { return propertyListXML(list).value_or("(not written)"); };
  const auto under = [&](const char* key, const PropertyList& tags) {
    return file(PropertyList(PropertyListDictionary({{key, tags}})));
  };
  const PropertyList emptyDictionary{PropertyListDictionary()};
  const struct {
    const char* behaviour;
    std::string content;
  } contents[] = {{"nothing", ""},
                  {"no property list", "tags = (Drama;"},
                  {"a page", "<html><body>tags</body></html>"},
                  {"an array", file(listOfNames({"Drama", "Live"}))},
                  {"a string", file("tags")},
                  {"an empty dictionary", file(emptyDictionary)},
                  {"another key", under("Tags", listOfNames({"Drama"}))},
                  {"an empty list", under("tags", listOfNames({}))},
                  {"a string under tags", under("tags", "Drama")},
                  {"a number under tags", under("tags", PropertyList::fromInteger(3))},
                  {"a dictionary under tags", under("tags", emptyDictionary)}};
  for (const auto& row : contents) EXPECT_EQ(rowsWithFile(row.content), 0) << row.behaviour;
}

TEST_F(TagCatalogue, IsEmptyWhenTheFileIsCutShort) {
  const std::string whole = catalogueFile({"Drama", "Live"});
  for (std::size_t length = 0; length + 9 < whole.size(); length += 7) {
    EXPECT_EQ(rowsWithFile(whole.substr(0, length)), 0) << length << " bytes";
  }
}

TEST_F(TagCatalogue, PassesOverElementsThatAreNoStrings) {
  EXPECT_EQ(rowsWithTags(PropertyList(PropertyList::Array{PropertyList::fromInteger(7), "Drama", listOfNames({"Live"}),
                                                          PropertyList::fromBoolean(true), "Live"})),
            2);
}

TEST_F(TagCatalogue, WithoutTagsStillShowsAndAppliesTheTexts) {
  Editor editor({});
  const Item item = itemTitled("A");
  editor.show({item});
  EXPECT_EQ(editor.views.title.stringValue(), "A");
  editor.views.title.type("B");
  editor->applyChanges();
  EXPECT_EQ(textOf(*item, "title"), "B");
}

TEST_F(TagCatalogue, IsReadOnceForEachController) {
  Editor editor({"Drama"});
  const std::string file = *editor.views.catalogue;
  editor.files.put(file, catalogueFile({"Live", "Sport"}));
  editor.show({itemWithTags({"Live"})});
  editor->updateTagsTableView();
  EXPECT_EQ(editor.nameInRow(0), "Drama");
  EXPECT_EQ(editor->numberOfRowsInTableView(&editor.views.table), 1);
  EXPECT_EQ(editor.files.timesOpened(file), 1u);
}

TEST_F(TagCatalogue, OfANewControllerIsTheFileAsItIsThen) {
  EXPECT_EQ(rowsWithTags(listOfNames({"Drama"})), 1);
  EXPECT_EQ(rowsWithTags(listOfNames({"Live", "Sport"})), 2);
}

TEST_F(TagCatalogue, IsThereBeforeTheViewIsLoaded) {
  Editor editor({"Drama"}, Editor::ViewIs::NotLoaded);
  EXPECT_EQ(editor->numberOfRowsInTableView(nullptr), 1);
  EXPECT_TRUE(editor.views.interfacesLoaded.empty());
}

}  // namespace
}  // namespace epg::test
