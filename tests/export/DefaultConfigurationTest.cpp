#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include "export/ExportConfiguration.h"
#include "model/KeyConstants.h"
#include "tests/support/Dictionary.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestEnvironment.h"

namespace epg::test {
namespace {

class DefaultConfigurationTest : public testing::Test {
 protected:
  DefaultConfigurationTest() { environment.setHomeFolder("/anna"); }

  PropertyListDictionary configuration(const std::string& name) {
    return exportConfiguration(environment, folder.path(), name);
  }
  PropertyListDictionary defaultFor(const std::string& home) const {
    return dictionaryOf({{ZRLEPGDSConfigSourceID, "0"}, {ZRLEPGDSConfigExportPath, home + "/Desktop"}});
  }

  TestEnvironment environment;
  TemporaryFolder folder;
};

TEST_F(DefaultConfigurationTest, HasExactlySourceIDZeroAndTheDesktop) {
  EXPECT_EQ(defaultFor("/anna"), configuration("none"));
}

TEST_F(DefaultConfigurationTest, AsksForTheHomeFolderEachTime) {
  configuration("none");
  environment.setHomeFolder("/bert");
  EXPECT_EQ(defaultFor("/bert"), configuration("none"));
}

TEST_F(DefaultConfigurationTest, StandsForAFileThatIsNoPropertyList) {
  for (const char* const content : {"", "exportPath = here", "<plist><dict>", "<html/>", "bplist00", "{"}) {
    writeFile(folder.file("Evening.epgconf"), content);
    EXPECT_EQ(defaultFor("/anna"), configuration("Evening")) << content;
  }
}

TEST_F(DefaultConfigurationTest, StandsForAPropertyListThatIsNoDictionary) {
  for (const char* const content : {"<plist><array/></plist>", "<plist><string>exportPath</string></plist>"}) {
    writeFile(folder.file("Evening.epgconf"), content);
    EXPECT_EQ(defaultFor("/anna"), configuration("Evening")) << content;
  }
}

TEST_F(DefaultConfigurationTest, StandsForAFileThatCannotBeRead) {
  writeFile(folder.file("Evening.epgconf"), "<plist><dict/></plist>");
  for (const auto call : {TestEnvironment::Call::Open, TestEnvironment::Call::Info, TestEnvironment::Call::Read}) {
    environment.failOn(call, "Evening.epgconf", EIO);
    EXPECT_EQ(defaultFor("/anna"), configuration("Evening"));
    environment.letAllCallsPass();
  }
}

TEST_F(DefaultConfigurationTest, DoesNotLendItsKeysToAFileThatLacksThem) {
  writeFile(folder.file("Evening.epgconf"), "<plist><dict/></plist>");
  EXPECT_EQ(PropertyListDictionary(), configuration("Evening"));
  writeFile(folder.file("Evening.epgconf"), "<plist><dict><key>SourceID</key><string>7</string></dict></plist>");
  EXPECT_EQ(dictionaryOf({{ZRLEPGDSConfigSourceID, "7"}}), configuration("Evening"));
}

TEST_F(DefaultConfigurationTest, AFileIsTakenWithAllItsKeys) {
  writeFile(folder.file("Evening.epgconf"),
            "<plist><dict><key>exportPath</key><string>~/EPG</string><key>SourceID</key><integer>3</integer>"
            "<key>note</key><true/></dict></plist>");
  EXPECT_EQ(dictionaryOf({{ZRLEPGDSConfigExportPath, "~/EPG"},
                          {ZRLEPGDSConfigSourceID, PropertyList::fromInteger(3)},
                          {"note", PropertyList::fromBoolean(true)}}),
            configuration("Evening"));
}

}  // namespace
}  // namespace epg::test
