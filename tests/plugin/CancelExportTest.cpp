// Cancelling has no effect on any export.

#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CancelExportTest : public PluginTest {
 protected:
  CancelExportTest() { put("E1", {{ZRLEPGDSTitleKey, "One"}}); }
  const std::vector<EPGEvent> events{eventAt("E1", 1330905600), eventAt("E1", 1330909200)};
};

TEST_F(CancelExportTest, BeforeTheThreadHasBegunDoesNotStopIt) {
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  plugin->exportEvents(events, "Test");
  plugin->cancelExportEvents();
  EXPECT_TRUE(plugin->busyExporting());
  gate.open();
  environment.waitForThreads();
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES"));
  EXPECT_EQ(2U, dayFile().programs.size());
}

TEST_F(CancelExportTest, WhileTheFileIsBeingWrittenDoesNotStopIt) {
  Gate gate;
  environment.holdBefore(Call::Flush, "20120304.xml", gate);
  plugin->exportEvents(events, "Test");
  gate.waitUntilHolding();
  plugin->cancelExportEvents();
  plugin->cancelExportEvents();
  gate.open();
  environment.waitForThreads();
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES"));
  EXPECT_EQ(2U, dayFile().programs.size());
}

TEST_F(CancelExportTest, DoesNotChangeTheReportOfAFailure) {
  removeAll(exportFolder);
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  plugin->exportEvents(events, "Test");
  plugin->cancelExportEvents();
  gate.open();
  environment.waitForThreads();
  EXPECT_THAT(delegate.outcomes(), ElementsAre(writeErrorReport));
}

TEST_F(CancelExportTest, WithoutAnExportHasNoVisibleEffect) {
  plugin->cancelExportEvents();
  EXPECT_FALSE(plugin->busyExporting());
  EXPECT_THAT(delegate.reports(), IsEmpty());
  exportAndWait(events);
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES"));
  EXPECT_EQ(2U, dayFile().programs.size());
}

TEST_F(CancelExportTest, DoesNotMakeRoomForAnotherExport) {
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  plugin->exportEvents(events, "Test");
  plugin->cancelExportEvents();
  plugin->exportEvents({}, "Test");
  EXPECT_THAT(delegate.outcomes(), ElementsAre(busyRefusal));
  gate.open();
  environment.waitForThreads();
  EXPECT_EQ(2U, dayFile().programs.size());
}

TEST_F(CancelExportTest, FromInsideTheReportIsNoHarm) {
  delegate.duringReport = [&] { plugin->cancelExportEvents(); };
  exportAndWait(events);
  exportAndWait(events);
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES", "YES"));
}

}  // namespace
}  // namespace epg::test
