// The plug-in as a host knows it: by its protocols alone.

#include <type_traits>

#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

using testing::ElementsAre;

static_assert(std::is_base_of_v<TelvarinManagerEPGPluginProtocol, EPGDorvaSelinManagerPlugin>);
static_assert(std::is_abstract_v<TelvarinManagerEPGPluginProtocol>);
static_assert(std::has_virtual_destructor_v<TelvarinManagerEPGPluginProtocol>);
static_assert(std::has_virtual_destructor_v<TelvarinManagerEPGPluginProtocol_Delegate>);
static_assert(!std::is_copy_constructible_v<EPGDorvaSelinManagerPlugin>);

class ProtocolTest : public PluginTest {
 protected:
  TelvarinManagerEPGPluginProtocol& protocol() { return *plugin; }
};

TEST_F(ProtocolTest, PluginNameIsTheDisplayName) {
  EXPECT_EQ("EPG DorvaSelin", EPGDorvaSelinManagerPlugin::pluginName());
}

TEST_F(ProtocolTest, StringValueIsNothing) {
  EXPECT_EQ(std::nullopt, plugin->stringValue());
  put("E1", {{ZRLEPGDSTitleKey, "Title"}});
  exportAndWait({eventAt("E1", 0)});
  EXPECT_EQ(std::nullopt, plugin->stringValue());
}

TEST_F(ProtocolTest, AHostDrivesEverythingThroughIt) {
  RecordingDelegate another;
  protocol().setDelegate(&another);
  EXPECT_EQ(&another, protocol().delegate());
  EXPECT_THAT(protocol().configurationFilenames(), ElementsAre("Test"));

  protocol().setEditedEPGUniqueIDs({"E1"});
  protocol().revertEditing();
  EXPECT_EQ(nullptr, protocol().editorView());
  EXPECT_LT(protocol().minimumEditorViewSize().width, protocol().maximumEditorViewSize().width);
  EXPECT_TRUE(protocol().commitEditing());
  environment.waitForThreads();
  protocol().duplicateEPGItemWithUniqueID("E1", "E2");
  environment.waitForThreads();
  protocol().removeEPGItemsWithUniqueIDs({"E1"});
  environment.waitForThreads();
  EXPECT_THAT(storedIDs(), ElementsAre("E2"));

  EXPECT_EQ(std::nullopt, protocol().exportPath());
  protocol().exportEvents({eventAt("E2", 1330905600)}, "Test");
  protocol().cancelExportEvents();
  another.waitForReports(1);
  EXPECT_EQ(exportFolder, protocol().exportPath());
  EXPECT_EQ(1U, dayFile().programs.size());
  environment.waitForThreads();
  protocol().setDelegate(nullptr);
  EXPECT_EQ(nullptr, protocol().delegate());
}

TEST_F(ProtocolTest, ADelegateThatOverridesNothingIsAskedAndToldWithoutHarm) {
  TelvarinManagerEPGPluginProtocol_Delegate plain;
  plugin->setDelegate(&plain);
  EXPECT_TRUE(plain.respondsToEPGExportEventCompleted());
  exportAndWait({});
  EXPECT_TRUE(exists(dayFilePath()));
}

}  // namespace
}  // namespace epg::test
