#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DelegateTest : public PluginTest {
 protected:
  DelegateTest() { put("E1", {}); }
  const std::vector<EPGEvent> events{eventAt("E1", 1330905600)};
};

TEST_F(DelegateTest, IsTheOneThatWasSet) {
  RecordingDelegate another;
  EXPECT_EQ(&delegate, plugin->delegate());
  plugin->setDelegate(&another);
  EXPECT_EQ(&another, plugin->delegate());
  plugin->setDelegate(nullptr);
  EXPECT_EQ(nullptr, plugin->delegate());
}

TEST_F(DelegateTest, IsNotOwned) {
  auto passing = std::make_shared<RecordingDelegate>();
  const std::weak_ptr<RecordingDelegate> watched = passing;
  plugin->setDelegate(passing.get());
  EXPECT_EQ(1, passing.use_count());
  plugin->setDelegate(nullptr);
  passing.reset();
  EXPECT_TRUE(watched.expired());
}

TEST_F(DelegateTest, SuccessHasNoError) {
  bool errorWasNull = false;
  class Looking : public TelvarinManagerEPGPluginProtocol_Delegate {
   public:
    explicit Looking(bool& found) : found_(found) {}
    void epgExportEventCompleted(bool succeeded, const EPGError* error) override { found_ = succeeded && !error; }

   private:
    bool& found_;
  } looking(errorWasNull);
  plugin->setDelegate(&looking);
  exportAndWait(events);
  EXPECT_TRUE(errorWasNull);
}

TEST_F(DelegateTest, WithoutOneTheExportRunsAndTheNextIsAccepted) {
  plugin->setDelegate(nullptr);
  exportAndWait(events);
  EXPECT_EQ(1U, dayFile().programs.size());
  EXPECT_FALSE(plugin->busyExporting());
  exportAndWait({});
  EXPECT_THAT(dayFile().programs, IsEmpty());
  EXPECT_THAT(environment.logged(), IsEmpty());
}

TEST_F(DelegateTest, ThatDoesNotRespondIsNotToldAndTheExportRuns) {
  delegate.setResponds(false);
  exportAndWait(events);
  EXPECT_THAT(delegate.reports(), IsEmpty());
  EXPECT_EQ(1U, delegate.timesAsked());
  EXPECT_EQ(1U, dayFile().programs.size());
  removeAll(exportFolder);
  exportAndWait(events);
  EXPECT_THAT(delegate.reports(), IsEmpty());
  EXPECT_THAT(environment.logged(), IsEmpty());
  EXPECT_FALSE(plugin->busyExporting());
}

TEST_F(DelegateTest, IsAskedAfreshBeforeEveryReport) {
  delegate.setResponds(false);
  exportAndWait(events);
  delegate.setResponds(true);
  exportAndWait(events);
  delegate.setResponds(false);
  exportAndWait(events);
  EXPECT_EQ(3U, delegate.timesAsked());
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES"));
}

TEST_F(DelegateTest, IsAskedOnlyWhenThereIsSomethingToReport) {
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  plugin->exportEvents(events, "Test");
  EXPECT_EQ(0U, delegate.timesAsked());
  gate.open();
  environment.waitForThreads();
  EXPECT_EQ(1U, delegate.timesAsked());
}

TEST_F(DelegateTest, TheOneThatIsSetWhenTheExportEndsIsTold) {
  RecordingDelegate another;
  Gate gate;
  environment.holdBefore(Call::Write, "20120304.xml", gate);
  plugin->exportEvents(events, "Test");
  gate.waitUntilHolding();
  plugin->setDelegate(&another);
  gate.open();
  environment.waitForThreads();
  EXPECT_THAT(delegate.reports(), IsEmpty());
  EXPECT_EQ(0U, delegate.timesAsked());
  EXPECT_THAT(another.outcomes(), ElementsAre("YES"));
  plugin->setDelegate(nullptr);
}

TEST_F(DelegateTest, ThatWasClearedDuringTheExportIsNotTold) {
  Gate gate;
  environment.holdBefore(Call::Write, "20120304.xml", gate);
  plugin->exportEvents(events, "Test");
  gate.waitUntilHolding();
  plugin->setDelegate(nullptr);
  gate.open();
  environment.waitForThreads();
  EXPECT_EQ(0U, delegate.timesAsked());
  EXPECT_EQ(1U, dayFile().programs.size());
  EXPECT_FALSE(plugin->busyExporting());
}

TEST_F(DelegateTest, SetDuringTheExportIsTold) {
  plugin->setDelegate(nullptr);
  Gate gate;
  environment.holdBefore(Call::Write, "20120304.xml", gate);
  plugin->exportEvents(events, "Test");
  gate.waitUntilHolding();
  plugin->setDelegate(&delegate);
  gate.open();
  environment.waitForThreads();
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES"));
}

TEST_F(DelegateTest, IsToldOnTheExportThread) {
  exportAndWait(events);
  removeAll(exportFolder);
  exportAndWait(events);
  for (const auto& report : delegate.reports()) EXPECT_NE(std::this_thread::get_id(), report.thread);
}

TEST_F(DelegateTest, MayUseThePluginFromInsideItsReport) {
  delegate.duringReport = [&] {
    EXPECT_EQ(exportFolder, plugin->exportPath());
    EXPECT_THAT(plugin->configurationFilenames(), ElementsAre("Test"));
    EXPECT_EQ(1U, plugin->epgItems()->size());
    plugin->saveEPGItemsToFile();
  };
  exportAndWait(events);
  EXPECT_THAT(storedIDs(), ElementsAre("E1"));
}

TEST_F(DelegateTest, TheFileStandsWhenSuccessIsReported) {
  bool stood = false;
  delegate.duringReport = [&] { stood = exists(dayFilePath()); };
  exportAndWait(events);
  EXPECT_TRUE(stood);
}

}  // namespace
}  // namespace epg::test
