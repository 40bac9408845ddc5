#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ExportBusyTest : public PluginTest {
 protected:
  ExportBusyTest() {
    put("E1", {{ZRLEPGDSTitleKey, "One"}});
    put("E2", {{ZRLEPGDSTitleKey, "Two"}});
  }
  const std::vector<EPGEvent> first{eventAt("E1", 1330905600)};
  const std::vector<EPGEvent> second{eventAt("E2", 1330905600)};
};

TEST_F(ExportBusyTest, ASecondExportIsRefusedAtOnceOnTheCallersThread) {
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  plugin->exportEvents(first, "Test");
  plugin->exportEvents(second, "Test");
  ASSERT_THAT(delegate.outcomes(), ElementsAre(busyRefusal));
  EXPECT_EQ(std::this_thread::get_id(), delegate.reports()[0].thread);

  gate.open();
  environment.waitForThreads();
  EXPECT_THAT(delegate.outcomes(), ElementsAre(busyRefusal, "YES"));
  EXPECT_NE(std::this_thread::get_id(), delegate.reports()[1].thread);
  EXPECT_THAT(dayFile().titles(), ElementsAre("One"));
}

TEST_F(ExportBusyTest, EveryFurtherExportIsRefusedAndItsEventsAreNeverWritten) {
  Gate gate;
  environment.holdBefore(Call::Write, "20120304.xml", gate);
  plugin->exportEvents(first, "Test");
  gate.waitUntilHolding();
  const std::size_t threads = environment.threadsStarted();
  for (int i = 0; i < 3; ++i) plugin->exportEvents(second, "Test");
  EXPECT_EQ(threads, environment.threadsStarted());
  gate.open();
  environment.waitForThreads();
  EXPECT_THAT(delegate.outcomes(), ElementsAre(busyRefusal, busyRefusal, busyRefusal, "YES"));
  EXPECT_THAT(dayFile().titles(), ElementsAre("One"));
}

TEST_F(ExportBusyTest, ARefusedExportChangesNothing) {
  const std::string other = folder.makeFolder("other");
  configure("Other", {{ZRLEPGDSConfigExportPath, other}});
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  plugin->exportEvents(first, "Test");
  plugin->exportEvents(second, "Other");
  plugin->exportEvents(second, "Not there");
  EXPECT_EQ(exportFolder, plugin->exportPath());
  EXPECT_TRUE(plugin->busyExporting());
  gate.open();
  environment.waitForThreads();
  EXPECT_THAT(namesIn(other), IsEmpty());
  EXPECT_THAT(dayFile().titles(), ElementsAre("One"));
  EXPECT_EQ(exportFolder, plugin->exportPath());
}

TEST_F(ExportBusyTest, ARefusedExportDoesNotReadItsConfiguration) {
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  plugin->exportEvents(first, "Test");
  bool read = false;
  environment.before(Call::Open, ".epgconf", [&read] {
    read = true;
    return 0;
  });
  plugin->exportEvents(second, "Test");
  gate.open();
  environment.waitForThreads();
  EXPECT_FALSE(read);
}

TEST_F(ExportBusyTest, WithoutADelegateTheRefusalIsSilent) {
  plugin->setDelegate(nullptr);
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  plugin->exportEvents(first, "Test");
  plugin->exportEvents(second, "Test");
  gate.open();
  environment.waitForThreads();
  EXPECT_THAT(delegate.reports(), IsEmpty());
  EXPECT_THAT(environment.logged(), IsEmpty());
  EXPECT_THAT(dayFile().titles(), ElementsAre("One"));
}

TEST_F(ExportBusyTest, ADelegateThatDoesNotRespondIsToldOfNoRefusal) {
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  plugin->exportEvents(first, "Test");
  delegate.setResponds(false);
  plugin->exportEvents(second, "Test");
  EXPECT_EQ(1U, delegate.timesAsked());
  EXPECT_THAT(delegate.reports(), IsEmpty());
  delegate.setResponds(true);
  gate.open();
  environment.waitForThreads();
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES"));
}

TEST_F(ExportBusyTest, AnExportFromInsideTheReportIsRefused) {
  bool again = true;
  delegate.duringReport = [&] {
    if (!again) return;
    again = false;
    plugin->exportEvents(second, "Test");
  };
  exportAndWait(first);
  ASSERT_THAT(delegate.outcomes(), ElementsAre("YES", busyRefusal));
  EXPECT_EQ(delegate.reports()[0].thread, delegate.reports()[1].thread);
  EXPECT_THAT(dayFile().titles(), ElementsAre("One"));
  EXPECT_FALSE(plugin->busyExporting());
}

TEST_F(ExportBusyTest, AnExportFromInsideTheReportOfAFailureIsRefusedToo) {
  removeAll(exportFolder);
  bool again = true;
  delegate.duringReport = [&] {
    if (!again) return;
    again = false;
    plugin->exportEvents(second, "Test");
  };
  exportAndWait(first);
  EXPECT_THAT(delegate.outcomes(), ElementsAre(writeErrorReport, busyRefusal));
}

TEST_F(ExportBusyTest, AnExportFromInsideARefusalIsRefused) {
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  plugin->exportEvents(first, "Test");
  int rounds = 3;
  delegate.duringReport = [&] {
    if (rounds-- > 0) plugin->exportEvents(second, "Test");
  };
  plugin->exportEvents(second, "Test");
  EXPECT_THAT(delegate.outcomes(), ElementsAre(busyRefusal, busyRefusal, busyRefusal, busyRefusal));
  gate.open();
  environment.waitForThreads();
}

TEST_F(ExportBusyTest, TheNextExportIsAcceptedOnceTheThreadHasEnded) {
  exportAndWait(first);
  exportAndWait(second);
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES", "YES"));
  EXPECT_THAT(dayFile().titles(), ElementsAre("Two"));
}

TEST_F(ExportBusyTest, ASaveInBetweenIsNotRefused) {
  Gate gate;
  environment.holdBefore(Call::Write, "20120304.xml", gate);
  plugin->exportEvents(first, "Test");
  gate.waitUntilHolding();
  plugin->removeEPGItemsWithUniqueIDs({"E2"});
  environment.waitForReplacements(1);
  EXPECT_THAT(storedIDs(), ElementsAre("E1"));
}

}  // namespace
}  // namespace epg::test
