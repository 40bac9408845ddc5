#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

/// A store as Python's plistlib writes it in the binary form: the item "E1" (rating 7, tags Live and Family, title
/// Morning Prayer, uniqueID E1) and the text "no item" under "note".
const unsigned char binaryStore[] = {
    0x62, 0x70, 0x6C, 0x69, 0x73, 0x74, 0x30, 0x30, 0xD2, 0x01, 0x02, 0x03, 0x0D, 0x52, 0x45, 0x31, 0x54, 0x6E,
    0x6F, 0x74, 0x65, 0xD4, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09, 0x0C, 0x01, 0x56, 0x72, 0x61, 0x74, 0x69, 0x6E,
    0x67, 0x54, 0x74, 0x61, 0x67, 0x73, 0x55, 0x74, 0x69, 0x74, 0x6C, 0x65, 0x58, 0x75, 0x6E, 0x69, 0x71, 0x75,
    0x65, 0x49, 0x44, 0x10, 0x07, 0xA2, 0x0A, 0x0B, 0x54, 0x4C, 0x69, 0x76, 0x65, 0x56, 0x46, 0x61, 0x6D, 0x69,
    0x6C, 0x79, 0x5E, 0x4D, 0x6F, 0x72, 0x6E, 0x69, 0x6E, 0x67, 0x20, 0x50, 0x72, 0x61, 0x79, 0x65, 0x72, 0x57,
    0x6E, 0x6F, 0x20, 0x69, 0x74, 0x65, 0x6D, 0x08, 0x0D, 0x10, 0x15, 0x1E, 0x25, 0x2A, 0x30, 0x39, 0x3B, 0x3E,
    0x43, 0x4A, 0x59, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x01, 0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
    0x0E, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x61,
};

class BinaryStoreTest : public PluginTest {
 protected:
  BinaryStoreTest() {
    writeFile(storePath(), std::string(reinterpret_cast<const char*>(binaryStore), sizeof binaryStore));
    start();
  }
};

TEST_F(BinaryStoreTest, IsReadLikeTheXMLForm) {
  EXPECT_EQ(dictionaryOf({{"rating", PropertyList::fromInteger(7)},
                          {ZRLEPGDSTagsKey, PropertyList::Array{"Live", "Family"}},
                          {ZRLEPGDSTitleKey, "Morning Prayer"},
                          {ZRLEPGDSUniqueIDKey, "E1"}}),
            itemInStore("E1"));
}

TEST_F(BinaryStoreTest, IsWrittenBackInTheXMLForm) {
  save();
  EXPECT_EQ(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
      "<plist version=\"1.0\">\n"
      "<dict>\n"
      "\t<key>E1</key>\n"
      "\t<dict>\n"
      "\t\t<key>rating</key>\n"
      "\t\t<integer>7</integer>\n"
      "\t\t<key>tags</key>\n"
      "\t\t<array>\n"
      "\t\t\t<string>Live</string>\n"
      "\t\t\t<string>Family</string>\n"
      "\t\t</array>\n"
      "\t\t<key>title</key>\n"
      "\t\t<string>Morning Prayer</string>\n"
      "\t\t<key>uniqueID</key>\n"
      "\t\t<string>E1</string>\n"
      "\t</dict>\n"
      "\t<key>note</key>\n"
      "\t<string>no item</string>\n"
      "</dict>\n"
      "</plist>\n",
      contentOf(storePath()));
}

TEST_F(BinaryStoreTest, CutShortIsNoStore) {
  for (std::size_t length = 0; length < sizeof binaryStore; ++length) {
    writeFile(storePath(), std::string(reinterpret_cast<const char*>(binaryStore), length));
    start();
    EXPECT_EQ(0U, plugin->epgItems()->size()) << length;
  }
}

}  // namespace
}  // namespace epg::test
