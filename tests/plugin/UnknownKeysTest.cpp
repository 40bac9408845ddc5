// An item keeps what nobody here knows: every property-list value under any key.

#include <cmath>

#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

/// A store file as a save writes it, with a value of every type under keys that nobody here knows.
const char* const everyType =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n"
    "<dict>\n"
    "\t<key>E1</key>\n"
    "\t<dict>\n"
    "\t\t<key></key>\n"
    "\t\t<string>under the empty key</string>\n"
    "\t\t<key>array</key>\n"
    "\t\t<array>\n"
    "\t\t\t<array/>\n"
    "\t\t\t<dict>\n"
    "\t\t\t\t<key>deep</key>\n"
    "\t\t\t\t<dict/>\n"
    "\t\t\t</dict>\n"
    "\t\t\t<string> kept </string>\n"
    "\t\t</array>\n"
    "\t\t<key>data</key>\n"
    "\t\t<data>\n"
    "\t\tAAEC/w==\n"
    "\t\t</data>\n"
    "\t\t<key>date</key>\n"
    "\t\t<date>2012-03-04T17:00:00Z</date>\n"
    "\t\t<key>false</key>\n"
    "\t\t<false/>\n"
    "\t\t<key>integer</key>\n"
    "\t\t<integer>-9223372036854775808</integer>\n"
    "\t\t<key>large integer</key>\n"
    "\t\t<integer>18446744073709551615</integer>\n"
    "\t\t<key>real</key>\n"
    "\t\t<real>0.1</real>\n"
    "\t\t<key>string</key>\n"
    "\t\t<string>&amp; 'quoted' &lt;text&gt;\n"
    "over lines&#13;</string>\n"
    "\t\t<key>title</key>\n"
    "\t\t<string>Morning Prayer</string>\n"
    "\t\t<key>true</key>\n"
    "\t\t<true/>\n"
    "\t\t<key>ключ &lt;&gt;</key>\n"
    "\t\t<string>😀</string>\n"
    "\t</dict>\n"
    "</dict>\n"
    "</plist>\n";

class UnknownKeysTest : public PluginTest {
 protected:
  UnknownKeysTest() {
    writeFile(storePath(), everyType);
    start();
  }
};

TEST_F(UnknownKeysTest, ValuesOfEveryTypeSurviveLoadAndSaveByteForByte) {
  save();
  EXPECT_EQ(everyType, contentOf(storePath()));
}

TEST_F(UnknownKeysTest, ValuesOfEveryTypeSurviveADuplication) {
  plugin->duplicateEPGItemWithUniqueID("E1", "E2");
  environment.waitForThreads();
  const PropertyListDictionary stored = storeFile();
  ASSERT_TRUE(stored.find("E1") && stored.find("E2"));
  EXPECT_EQ(12U, stored.find("E1")->asDictionary()->size());
  EXPECT_EQ(*stored.find("E1"), *stored.find("E2"));
  plugin->removeEPGItemsWithUniqueIDs({"E2"});
  environment.waitForThreads();
  EXPECT_EQ(everyType, contentOf(storePath()));
}

TEST_F(UnknownKeysTest, ValuesOfEveryTypeSurviveEditAndCommit) {
  plugin->setEditedEPGUniqueIDs({"E1"});
  plugin->editedItems()->at(0)->set(ZRLEPGDSTitleKey, "Evening Prayer");
  plugin->commitEditing();
  environment.waitForThreads();
  PropertyListDictionary expected = *parsePropertyList(everyType)->asDictionary()->find("E1")->asDictionary();
  expected.set(ZRLEPGDSTitleKey, "Evening Prayer");
  expected.set(ZRLEPGDSUniqueIDKey, "E1");
  EXPECT_EQ(dictionaryOf({{"E1", PropertyList(expected)}}), storeFile());
}

TEST_F(UnknownKeysTest, ValuesOfEveryTypeSurviveManyStartsAndSaves) {
  for (int round = 0; round < 5; ++round) {
    start();
    plugin->duplicateEPGItemWithUniqueID("E1", "E" + std::to_string(round + 2));
    environment.waitForThreads();
  }
  const PropertyListDictionary stored = storeFile();
  for (const auto& entry : stored) EXPECT_EQ(*parsePropertyList(everyType)->asDictionary()->find("E1"), entry.second);
  EXPECT_EQ(6U, stored.size());
}

TEST_F(UnknownKeysTest, RealsThatAreNoNumbersSurvive) {
  put("E2", {{"nan", PropertyList::fromReal(std::nan(""))},
             {"infinite", PropertyList::fromReal(HUGE_VAL)},
             {"least", PropertyList::fromReal(-HUGE_VAL)},
             {"small", PropertyList::fromReal(4.9406564584124654e-324)},
             {"zero", PropertyList::fromReal(-0.0)}});
  save();
  start();
  const PropertyListDictionary values = itemInStore("E2");
  EXPECT_TRUE(std::isnan(*values.find("nan")->asReal()));
  EXPECT_EQ(HUGE_VAL, *values.find("infinite")->asReal());
  EXPECT_EQ(-HUGE_VAL, *values.find("least")->asReal());
  EXPECT_EQ(4.9406564584124654e-324, *values.find("small")->asReal());
  EXPECT_TRUE(std::signbit(*values.find("zero")->asReal()));
}

TEST_F(UnknownKeysTest, OneAndOnePointZeroAndTrueStayThreeThings) {
  put("E2", {{"a", PropertyList::fromInteger(1)},
             {"b", PropertyList::fromReal(1)},
             {"c", PropertyList::fromBoolean(true)},
             {"d", "1"}});
  const PropertyListDictionary before = itemInStore("E2");
  save();
  start();
  EXPECT_EQ(before, itemInStore("E2"));
}

}  // namespace
}  // namespace epg::test
