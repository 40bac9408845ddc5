#include <sys/stat.h>

#include "store/MemoryItem.h"
#include "store/ShardedItemStore.h"
#include "tests/support/PluginTest.h"
#include "tests/support/RandomText.h"

namespace epg::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SaveTest : public PluginTest {};

TEST_F(SaveTest, WritesTheWholeStoreInXML) {
  put("E2", {{ZRLEPGDSTitleKey, "Kids' Corner"}, {ZRLEPGDSDescriptionKey, ""}});
  put("E1", {{ZRLEPGDSTagsKey, PropertyList::Array{"Live", "Family"}}, {ZRLEPGDSImageURLKey, "a?b&c"}});
  save();
  EXPECT_EQ(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
      "<plist version=\"1.0\">\n"
      "<dict>\n"
      "\t<key>E1</key>\n"
      "\t<dict>\n"
      "\t\t<key>imageURL</key>\n"
      "\t\t<string>a?b&amp;c</string>\n"
      "\t\t<key>tags</key>\n"
      "\t\t<array>\n"
      "\t\t\t<string>Live</string>\n"
      "\t\t\t<string>Family</string>\n"
      "\t\t</array>\n"
      "\t</dict>\n"
      "\t<key>E2</key>\n"
      "\t<dict>\n"
      "\t\t<key>description</key>\n"
      "\t\t<string></string>\n"
      "\t\t<key>title</key>\n"
      "\t\t<string>Kids' Corner</string>\n"
      "\t</dict>\n"
      "</dict>\n"
      "</plist>\n",
      contentOf(storePath()));
}

TEST_F(SaveTest, AnEmptyStoreIsAnEmptyDictionary) {
  save();
  EXPECT_TRUE(storeFile().empty());
}

TEST_F(SaveTest, TwoSavesOfOneStoreAreTheSameBytes) {
  for (int i = 0; i < 100; ++i) put("entry " + std::to_string(i * 37 % 100), {{ZRLEPGDSTitleKey, "x"}, {"a", "y"}});
  save();
  const std::string first = contentOf(storePath());
  save();
  EXPECT_EQ(first, contentOf(storePath()));
  start();
  save();
  EXPECT_EQ(first, contentOf(storePath()));
}

TEST_F(SaveTest, TheOrderInWhichItemsCameDoesNotShow) {
  for (int i = 0; i < 50; ++i) put(std::to_string(i), {});
  save();
  const std::string first = contentOf(storePath());
  plugin->setEpgItems(std::make_shared<ShardedItemStore>());
  for (int i = 49; i >= 0; --i) put(std::to_string(i), {});
  save();
  EXPECT_EQ(first, contentOf(storePath()));
}

TEST_F(SaveTest, AnAbsentKeyAndAnEmptyStringAreKeptApart) {
  put("absent", {});
  put("empty", {{ZRLEPGDSTitleKey, ""}, {ZRLEPGDSTagsKey, PropertyList::Array{}}});
  save();
  start();
  EXPECT_TRUE(itemInStore("absent").empty());
  EXPECT_EQ(dictionaryOf({{ZRLEPGDSTitleKey, ""}, {ZRLEPGDSTagsKey, PropertyList::Array{}}}), itemInStore("empty"));
}

TEST_F(SaveTest, TextsComeBackAsTheyWereTyped) {
  std::mt19937 random(1);
  PropertyListDictionary expected;
  for (int i = 0; i < 300; ++i) {
    const std::string text = randomText(random, 60);
    put(std::to_string(i), {{ZRLEPGDSTitleKey, text}});
    expected.set(std::to_string(i), dictionaryOf({{ZRLEPGDSTitleKey, asXMLCarries(text)}}));
  }
  save();
  EXPECT_EQ(expected, storeFile());
}

TEST_F(SaveTest, WhiteSpaceAndLineEndsComeBack) {
  const PropertyListDictionary item =
      dictionaryOf({{ZRLEPGDSTitleKey, " \t\n "}, {ZRLEPGDSDescriptionKey, "\r\na\rb\r"}, {" key ", "\n"}});
  plugin->epgItems()->setItem(" E\n1 ", std::make_shared<MemoryItem>(item));
  save();
  start();
  EXPECT_EQ(item, itemInStore(" E\n1 "));
}

TEST_F(SaveTest, RunsOnAThreadOfItsOwn) {
  save();
  const std::size_t threads = environment.threadsStarted();
  save();
  EXPECT_EQ(threads + 1, environment.threadsStarted());
  for (const auto& replacement : environment.replacements()) {
    EXPECT_EQ(storePath(), replacement.path);
    EXPECT_EQ(0, replacement.error);
    EXPECT_NE(std::this_thread::get_id(), replacement.thread);
  }
}

TEST_F(SaveTest, TheStoreFileIsTheOnlyOneThatChanges) {
  writeFile(dataFolder + "/notes.txt", "kept");
  const std::string configuration = contentOf(dataFolder + "/Test.epgconf");
  put("E1", {});
  save();
  EXPECT_THAT(namesIn(dataFolder), ElementsAre("EPGItems.plist", "Test.epgconf", "notes.txt"));
  EXPECT_EQ("kept", contentOf(dataFolder + "/notes.txt"));
  EXPECT_EQ(configuration, contentOf(dataFolder + "/Test.epgconf"));
}

TEST_F(SaveTest, TheStoreIsNeverReloaded) {
  put("E1", {});
  save();
  writeStoreFile({{"E2", dictionaryOf({})}});
  EXPECT_THAT(plugin->epgItems()->uniqueIDs(), ElementsAre("E1"));
  save();
  EXPECT_THAT(storedIDs(), ElementsAre("E1"));
}

TEST_F(SaveTest, HandsOnThePermissionsOfTheFileThatItReplaces) {
  writeStoreFile({});
  ASSERT_EQ(0, ::chmod(storePath().c_str(), 0640));
  save();
  struct stat status {};
  ASSERT_EQ(0, ::stat(storePath().c_str(), &status));
  EXPECT_EQ(0640U, status.st_mode & 0777U);
}

TEST_F(SaveTest, IsSilentTowardsTheDelegateAndTheLog) {
  put("E1", {});
  save();
  EXPECT_THAT(delegate.reports(), IsEmpty());
  EXPECT_EQ(0U, delegate.timesAsked());
  EXPECT_THAT(environment.logged(), IsEmpty());
}

TEST_F(SaveTest, ClearsTheBusyMark) {
  save();
  EXPECT_FALSE(plugin->busyWriting());
}

}  // namespace
}  // namespace epg::test
