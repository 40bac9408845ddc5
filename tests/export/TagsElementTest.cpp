#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "export/DayFile.h"

namespace epg::test {
namespace {

std::vector<std::string> tagsIn(const XMLElement& element) {
  EXPECT_EQ("tags", element.name);
  EXPECT_TRUE(element.attributes.empty());
  EXPECT_TRUE(element.text.empty());
  std::vector<std::string> tags;
  for (const XMLElement& child : element.children) {
    EXPECT_EQ("tag", child.name);
    EXPECT_TRUE(child.attributes.empty() && child.children.empty());
    tags.push_back(child.text);
  }
  return tags;
}

TEST(TagsElementTest, HoldsOneTagForEachEntryInTheListsOrder) {
  const PropertyList tags = PropertyList::Array{"Live", "Family", "Arts", "Live"};
  EXPECT_EQ((std::vector<std::string>{"Live", "Family", "Arts", "Live"}),
            tagsIn(tagsXMLElementWithTags(tags.asArray())));
}

TEST(TagsElementTest, IsEmptyWithoutAList) { EXPECT_TRUE(tagsIn(tagsXMLElementWithTags(nullptr)).empty()); }

TEST(TagsElementTest, IsEmptyForAnEmptyList) {
  const PropertyList tags{PropertyList::Array()};
  EXPECT_TRUE(tagsIn(tagsXMLElementWithTags(tags.asArray())).empty());
}

TEST(TagsElementTest, AnEmptyNameIsAnEmptyTag) {
  const PropertyList tags = PropertyList::Array{"", "Live"};
  EXPECT_EQ((std::vector<std::string>{"", "Live"}), tagsIn(tagsXMLElementWithTags(tags.asArray())));
}

TEST(TagsElementTest, TakesNamesAsTheyStand) {
  const PropertyList tags = PropertyList::Array{" Live ", "live", "Kids' & <Family>"};
  EXPECT_EQ((std::vector<std::string>{" Live ", "live", "Kids' & <Family>"}),
            tagsIn(tagsXMLElementWithTags(tags.asArray())));
}

TEST(TagsElementTest, PassesOverEntriesThatAreNoStrings) {
  const PropertyList tags = PropertyList::Array{PropertyList::fromInteger(7), "Live", PropertyList::fromBoolean(true),
                                                PropertyList(PropertyList::Array{"Nested"}), "Family"};
  EXPECT_EQ((std::vector<std::string>{"Live", "Family"}), tagsIn(tagsXMLElementWithTags(tags.asArray())));
}

}  // namespace
}  // namespace epg::test
