// resources/Tags.plist, the catalogue that comes with the system.

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "platform/Environment.h"
#include "tests/support/Editor.h"

namespace epg::test {
namespace {

class DeliveredTagCatalogue : public ::testing::Test {
 protected:
  DeliveredTagCatalogue() {
    EditorViews views;
    views.catalogue = EPG_RESOURCE_FOLDER "/Tags.plist";
    EPGDorvaSelinViewController controller("EPGDorvaSelinEditor", &views, Environment::standard());
    controller.view();
    for (std::ptrdiff_t row = 0; row < controller.numberOfRowsInTableView(&views.table); ++row) {
      const auto cell = controller.tableViewObjectValue(&views.table, "name", row);
      const std::string* const name = std::get_if<std::string>(&cell);
      tags.push_back(name ? *name : "");
    }
  }

  std::ptrdiff_t place(const std::string& tag) const {
    const auto found = std::find(tags.begin(), tags.end(), tag);
    EXPECT_NE(found, tags.end()) << tag;
    return found - tags.begin();
  }

  Names tags;
};

TEST_F(DeliveredTagCatalogue, CanBeRead) { EXPECT_GE(tags.size(), 50u); }

TEST_F(DeliveredTagCatalogue, NamesEveryTagOnce) {
  EXPECT_EQ(std::set<std::string>(tags.begin(), tags.end()).size(), tags.size());
}

TEST_F(DeliveredTagCatalogue, HasNoNamesThatDifferInLetterCaseOnly) {
  std::set<std::string> lower;
  for (std::string tag : tags) {
    std::transform(tag.begin(), tag.end(), tag.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    EXPECT_TRUE(lower.insert(tag).second) << tag;
  }
}

TEST_F(DeliveredTagCatalogue, HasNoEmptyNamesAndNoBlanksAtTheirEnds) {
  for (const std::string& tag : tags) {
    ASSERT_FALSE(tag.empty());
    EXPECT_NE(tag.front(), ' ') << tag;
    EXPECT_NE(tag.back(), ' ') << tag;
    EXPECT_EQ(tag.find_first_of("\t\r\n"), std::string::npos) << tag;
  }
}

TEST_F(DeliveredTagCatalogue, HasWhatOperatorsMarkBeforeTheGenres) {
  for (const char* const mark : {"Live", "Premiere", "Repeat", "Subtitled"}) {
    for (const char* const genre : {"Movie", "News", "Sport", "Children", "Music", "Documentary"}) {
      EXPECT_LT(place(mark), place(genre));
    }
  }
}

}  // namespace
}  // namespace epg::test
