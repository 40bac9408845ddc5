// What fuzzers have found, kept.

#include <set>

#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

class FoundByFuzzersTest : public PluginTest {};

TEST_F(FoundByFuzzersTest, IDsThatDifferOnlyInCharactersThatXMLCannotCarryKeepTheirItems) {
  const std::vector<std::string> ids = {"a\x01", "a\x02", "a\xEF\xBF\xBD", "a\xEF\xBF\xBE", "a"};
  for (const std::string& id : ids) put(id, {{ZRLEPGDSTitleKey, "title of " + std::to_string(id.back())}});
  save();
  std::multiset<std::string> before;
  for (const std::string& id : ids) before.insert("title of " + std::to_string(id.back()));
  std::multiset<std::string> after;
  for (const auto& entry : storeFile()) after.emplace(*stringValue(*entry.second.asDictionary(), ZRLEPGDSTitleKey));
  EXPECT_EQ(before, after);
  EXPECT_EQ("title of " + std::to_string('a'), *stringValue(*storeFile().find("a")->asDictionary(), ZRLEPGDSTitleKey));
  EXPECT_TRUE(storeFile().find("a\xEF\xBF\xBD")) << "an ID that XML can carry keeps its item";
}

TEST_F(FoundByFuzzersTest, AStoreWithSuchIDsIsTheSameBytesAfterTheNextLoadAndSave) {
  for (const char* const id : {"\x07\x04"
                               "E2",
                               "E1", "~", "\x01", "\x02"})
    put(id, {{ZRLEPGDSTitleKey, "Title"}});
  save();
  const std::string first = contentOf(storePath());
  start();
  save();
  EXPECT_EQ(first, contentOf(storePath()));
}

}  // namespace
}  // namespace epg::test
