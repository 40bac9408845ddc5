#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double fifthOfMarch = 1330905600;  // 2012, midnight UTC

class ExportDriverTest : public PluginTest {
 protected:
  ExportDriverTest() {
    put("E1", {{ZRLEPGDSTitleKey, "One"}});
    put("E2", {{ZRLEPGDSTitleKey, "Two"}});
  }
};

TEST_F(ExportDriverTest, OneCallGivesOneFileAndOneReport) {
  exportAndWait({eventAt("E1", fifthOfMarch), eventAt("E2", fifthOfMarch + hours)});
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES"));
  EXPECT_THAT(namesIn(exportFolder), ElementsAre("20120304.xml"));
  EXPECT_THAT(dayFile().titles(), ElementsAre("One", "Two"));
}

TEST_F(ExportDriverTest, EventsOfSeveralDaysLandInOneFileNamedAfterTheDayOfTheExport) {
  exportAndWait(
      {eventAt("E1", fifthOfMarch + 30 * days), eventAt("E2", fifthOfMarch - 400 * days), eventAt("E1", fifthOfMarch)});
  EXPECT_THAT(namesIn(exportFolder), ElementsAre("20120304.xml"));
  EXPECT_THAT(dayFile().starts(), ElementsAre("30.1.11 0:0", "5.3.12 0:0", "4.4.12 0:0"));
}

TEST_F(ExportDriverTest, EventsAreOrderedByTheirStart) {
  exportAndWait(
      {eventAt("E1", fifthOfMarch + 3 * hours), eventAt("E2", fifthOfMarch), eventAt("E1", fifthOfMarch + hours)});
  EXPECT_THAT(dayFile().starts(), ElementsAre("5.3.12 0:0", "5.3.12 1:0", "5.3.12 3:0"));
}

TEST_F(ExportDriverTest, DateToComesFromTheEventThatStartsLast) {
  exportAndWait({eventFromTo("E1", fifthOfMarch + hours, fifthOfMarch + 2 * hours),
                 eventFromTo("E2", fifthOfMarch, fifthOfMarch + 50 * hours)});
  EXPECT_EQ("05-03-2012", dayFile().dateFrom);
  EXPECT_EQ("05-03-2012", dayFile().dateTo);
}

TEST_F(ExportDriverTest, EqualStartsKeepTheOrderGiven) {
  exportAndWait({eventAt("E2", fifthOfMarch), eventAt("E1", fifthOfMarch), eventAt("E2", fifthOfMarch)});
  EXPECT_THAT(dayFile().titles(), ElementsAre("Two", "One", "Two"));
}

TEST_F(ExportDriverTest, EventsWithoutAStartComeLastWithEmptyElements) {
  exportAndWait({eventWithoutTimes("E2"), eventAt("E1", fifthOfMarch)});
  EXPECT_THAT(dayFile().titles(), ElementsAre("One", "Two"));
  EXPECT_THAT(dayFile().starts(), ElementsAre("5.3.12 0:0", ".. :"));
  EXPECT_EQ("05-03-2012", dayFile().dateFrom);
  EXPECT_EQ("", dayFile().dateTo);
}

TEST_F(ExportDriverTest, AnEmptyListGivesAFileWithoutProgrammes) {
  exportAndWait({});
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES"));
  EXPECT_EQ("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<programs dateFrom=\"\" dateTo=\"\"></programs>\n",
            contentOf(dayFilePath()));
}

TEST_F(ExportDriverTest, EventsWithoutAnItemAreLeftOutWithoutAnError) {
  EPGEvent nameless = eventAt("E1", fifthOfMarch + hours);
  nameless.eventEPGUniqueID.reset();
  exportAndWait({eventAt("unknown", fifthOfMarch), nameless, eventAt("E1", fifthOfMarch + 2 * hours)});
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES"));
  EXPECT_THAT(dayFile().titles(), ElementsAre("One"));
}

TEST_F(ExportDriverTest, AnItemWithoutAnyValueIsExported) {
  put("E3", {});
  exportAndWait({eventAt("E3", fifthOfMarch)});
  EXPECT_THAT(dayFile().titles(), ElementsAre(""));
}

TEST_F(ExportDriverTest, TheHostsListMayChangeAfterTheCall) {
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  std::vector<EPGEvent> events = {eventAt("E1", fifthOfMarch), eventAt("E2", fifthOfMarch + hours)};
  plugin->exportEvents(events, "Test");
  events[0].eventEPGUniqueID = "E2";
  events[0].eventEPGStartDateTime.reset();
  events.pop_back();
  events.emplace_back();
  gate.open();
  environment.waitForThreads();
  EXPECT_THAT(dayFile().titles(), ElementsAre("One", "Two"));
}

TEST_F(ExportDriverTest, TheHostNeverWaitsForTheDayFile) {
  Gate gate;
  environment.holdBefore(Call::Open, "20120304.xml", gate);
  plugin->exportEvents({eventAt("E1", fifthOfMarch)}, "Test");
  gate.waitUntilHolding();
  EXPECT_TRUE(plugin->busyExporting());
  EXPECT_FALSE(exists(dayFilePath()));
  EXPECT_THAT(delegate.reports(), IsEmpty());
  gate.open();
  environment.waitForThreads();
  EXPECT_TRUE(exists(dayFilePath()));
}

TEST_F(ExportDriverTest, IsBusyFromTheCallUntilTheReportWasTaken) {
  EXPECT_FALSE(plugin->busyExporting());
  bool busyDuringReport = false;
  delegate.duringReport = [&] { busyDuringReport = plugin->busyExporting(); };
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  plugin->exportEvents({}, "Test");
  EXPECT_TRUE(plugin->busyExporting());
  gate.open();
  environment.waitForThreads();
  EXPECT_TRUE(busyDuringReport);
  EXPECT_FALSE(plugin->busyExporting());
}

TEST_F(ExportDriverTest, ExportsFollowOneAnother) {
  for (int i = 1; i <= 5; ++i) {
    put("E1", {{ZRLEPGDSTitleKey, "round " + std::to_string(i)}});
    exportAndWait({eventAt("E1", fifthOfMarch)});
    EXPECT_THAT(dayFile().titles(), ElementsAre("round " + std::to_string(i)));
  }
  EXPECT_EQ(5U, delegate.reports().size());
}

TEST_F(ExportDriverTest, EachExportRunsOnAThreadOfItsOwn) {
  const std::size_t before = environment.threadsStarted();
  exportAndWait({});
  exportAndWait({});
  EXPECT_EQ(before + 2, environment.threadsStarted());
  for (const auto& report : delegate.reports()) EXPECT_NE(std::this_thread::get_id(), report.thread);
}

TEST_F(ExportDriverTest, ChangesNeitherStoreNorStoreFile) {
  save();
  const std::string store = contentOf(storePath());
  exportAndWait({eventAt("E1", fifthOfMarch), eventAt("unknown", 0)});
  EXPECT_EQ(store, contentOf(storePath()));
  EXPECT_THAT(plugin->epgItems()->uniqueIDs(), ElementsAre("E1", "E2"));
}

TEST_F(ExportDriverTest, WritesNothingToTheLog) {
  exportAndWait({eventAt("E1", fifthOfMarch)});
  removeAll(exportFolder);
  exportAndWait({eventAt("E1", fifthOfMarch)});
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES", writeErrorReport));
  EXPECT_THAT(environment.logged(), IsEmpty());
}

TEST_F(ExportDriverTest, TheThreadsWorkCanBeCalledDirectly) {
  plugin->exportEvents({}, "Test");
  environment.waitForThreads();
  plugin->exportEventsThread({eventAt("E2", fifthOfMarch + hours), eventAt("E1", fifthOfMarch)});
  EXPECT_THAT(dayFile().titles(), ElementsAre("One", "Two"));
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES", "YES"));
  EXPECT_EQ(std::this_thread::get_id(), delegate.reports().back().thread);
}

}  // namespace
}  // namespace epg::test
