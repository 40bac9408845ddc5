#include "plugin/KeyConstants.h"

#include <gtest/gtest.h>

namespace epg::test {
namespace {

TEST(KeyConstantsTest, OfItems) {
  EXPECT_STREQ("uniqueID", ZRLEPGDSUniqueIDKey);
  EXPECT_STREQ("imageURL", ZRLEPGDSImageURLKey);
  EXPECT_STREQ("tags", ZRLEPGDSTagsKey);
  EXPECT_STREQ("title", ZRLEPGDSTitleKey);
  EXPECT_STREQ("description", ZRLEPGDSDescriptionKey);
}

TEST(KeyConstantsTest, OfEvents) {
  EXPECT_STREQ("eventEPGUniqueID", ZRLEPGUniqueIDKey);
  EXPECT_STREQ("eventEPGPlaybackUniqueID", ZRLEPGEventUniqueIDKey);
  EXPECT_STREQ("eventEPGStartDateTime", ZRLEPGStartDateTimeKey);
  EXPECT_STREQ("eventEPGEndDateTime", ZRLEPGEndDateTimeKey);
}

TEST(KeyConstantsTest, OfExportConfigurations) {
  EXPECT_STREQ("SourceID", ZRLEPGDSConfigSourceID);
  EXPECT_STREQ("exportPath", ZRLEPGDSConfigExportPath);
}

}  // namespace
}  // namespace epg::test
