// A known key with a value of another type reads as absent and is written back as it was.

#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

class WrongTypesTest : public PluginTest {
 protected:
  const PropertyListDictionary wrong = dictionaryOf({
      {ZRLEPGDSUniqueIDKey, PropertyList::fromInteger(1)},
      {ZRLEPGDSTitleKey, PropertyList::fromInteger(7)},
      {ZRLEPGDSDescriptionKey, PropertyList::Array{"a", "b"}},
      {ZRLEPGDSImageURLKey, PropertyList::fromData("x")},
      {ZRLEPGDSTagsKey, "Live"},
  });
};

TEST_F(WrongTypesTest, AreWrittenBackAsTheyWere) {
  writeStoreFile({{"E1", PropertyList(wrong)}});
  const std::string before = contentOf(storePath());
  start();
  save();
  EXPECT_EQ(before, contentOf(storePath()));
}

TEST_F(WrongTypesTest, AreDuplicatedAsTheyWere) {
  writeStoreFile({{"E1", PropertyList(wrong)}});
  start();
  plugin->duplicateEPGItemWithUniqueID("E1", "E2");
  environment.waitForThreads();
  EXPECT_EQ(PropertyList(wrong), *storeFile().find("E2"));
}

TEST_F(WrongTypesTest, ReadAsAbsentInAnExport) {
  writeStoreFile({{"E1", PropertyList(wrong)}});
  start();
  exportAndWait({eventAt("E1", 1330905600)});
  const DayFile file = dayFile();
  ASSERT_EQ(1U, file.programs.size());
  EXPECT_EQ("", file.programs[0].title);
  EXPECT_EQ("", file.programs[0].description);
  EXPECT_EQ("", file.programs[0].imgUrl);
  EXPECT_TRUE(file.programs[0].tags.empty());
}

TEST_F(WrongTypesTest, OfTagNamesArePassedOverAndKeepTheirPlaces) {
  const PropertyList tags = PropertyList::Array{PropertyList::fromInteger(7), "Live", PropertyList::fromBoolean(true)};
  writeStoreFile({{"E1", dictionaryOf({{ZRLEPGDSTagsKey, tags}})}});
  start();
  exportAndWait({eventAt("E1", 1330905600)});
  EXPECT_EQ(std::vector<std::string>{"Live"}, dayFile().programs.at(0).tags);
  save();
  EXPECT_EQ(tags, *storeFile().find("E1")->asDictionary()->find(ZRLEPGDSTagsKey));
}

TEST_F(WrongTypesTest, GiveWayToARightValueThatIsSet) {
  writeStoreFile({{"E1", PropertyList(wrong)}});
  start();
  plugin->setEditedEPGUniqueIDs({"E1"});
  plugin->editedItems()->at(0)->set(ZRLEPGDSTitleKey, "A");
  plugin->commitEditing();
  environment.waitForThreads();
  PropertyListDictionary expected = wrong;
  expected.set(ZRLEPGDSTitleKey, "A");
  expected.set(ZRLEPGDSUniqueIDKey, "E1");
  EXPECT_EQ(PropertyList(expected), *storeFile().find("E1"));
}

}  // namespace
}  // namespace epg::test
