// A day file that cannot be written is reported, leaves what stood under its name, and nothing beside it.

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <csignal>
#include <new>
#include <stdexcept>

#include "tests/support/PluginTest.h"
#include "tests/support/UnprivilegedUser.h"

namespace epg::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ExportFailureTest : public PluginTest {
 protected:
  ExportFailureTest() {
    put("E1", {{ZRLEPGDSTitleKey, "yesterday"}});
    exportAndWait(events);
    old = contentOf(dayFilePath());
    put("E1", {{ZRLEPGDSTitleKey, "today"}});
  }

  void expectWriteErrorAndOldFile() {
    const std::size_t reports = delegate.reports().size();
    exportAndWait(events);
    ASSERT_EQ(reports + 1, delegate.reports().size());
    EXPECT_EQ(writeErrorReport, delegate.outcomes().back());
    EXPECT_NE(std::this_thread::get_id(), delegate.reports().back().thread);
    EXPECT_FALSE(plugin->busyExporting());
    EXPECT_EQ(old, contentOf(dayFilePath()));
    EXPECT_THAT(namesIn(exportFolder), ElementsAre("20120304.xml")) << "something was left behind";
    EXPECT_THAT(environment.logged(), IsEmpty());
    environment.letAllCallsPass();
  }
  void expectNextExportWorks() {
    exportAndWait(events);
    EXPECT_EQ("YES", delegate.outcomes().back());
    EXPECT_THAT(dayFile().titles(), ElementsAre("today"));
  }

  const std::vector<EPGEvent> events{eventAt("E1", 1330905600)};
  std::string old;
};

TEST_F(ExportFailureTest, AnErrorOfAnyFileCallIsReportedAndLeavesTheOldFile) {
  for (const Call call : {Call::Open, Call::Write, Call::Flush, Call::Exchange}) {
    for (const int error : {ENOSPC, EIO, EACCES, EROFS, EDQUOT}) {
      environment.failOn(call, "20120304.xml", error);
      expectWriteErrorAndOldFile();
    }
  }
  expectNextExportWorks();
}

TEST_F(ExportFailureTest, AFullDiskInTheMiddleOfTheFileIsReportedAndLeavesTheOldFile) {
  put("E1", {{ZRLEPGDSTitleKey, "today"}, {ZRLEPGDSDescriptionKey, std::string(1 << 20, 'x')}});
  ASSERT_NE(SIG_ERR, std::signal(SIGXFSZ, SIG_IGN));
  struct rlimit before {};
  ASSERT_EQ(0, ::getrlimit(RLIMIT_FSIZE, &before));
  struct rlimit small = before;
  small.rlim_cur = 4096;
  ASSERT_EQ(0, ::setrlimit(RLIMIT_FSIZE, &small));
  exportAndWait(events);
  ASSERT_EQ(0, ::setrlimit(RLIMIT_FSIZE, &before));
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES", writeErrorReport));
  EXPECT_EQ(old, contentOf(dayFilePath()));
  EXPECT_THAT(namesIn(exportFolder), ElementsAre("20120304.xml"));
  expectNextExportWorks();
}

TEST_F(ExportFailureTest, AMissingFolderIsReportedAndNotMade) {
  removeAll(exportFolder);
  exportAndWait(events);
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES", writeErrorReport));
  EXPECT_FALSE(exists(exportFolder));
  EXPECT_THAT(environment.logged(), IsEmpty());
  folder.makeFolder("export");
  expectNextExportWorks();
}

TEST_F(ExportFailureTest, AFolderThatMayNotBeWrittenIsReportedAndKeepsItsFile) {
  ASSERT_EQ(0, ::chmod(exportFolder.c_str(), 0555));
  {
    const UnprivilegedUser user;
    expectWriteErrorAndOldFile();
    EXPECT_EQ(EACCES, environment.replacements().back().error);
  }
  ASSERT_EQ(0, ::chmod(exportFolder.c_str(), 0755));
  expectNextExportWorks();
}

TEST_F(ExportFailureTest, AFolderThatMayNotBeEnteredIsReported) {
  ASSERT_EQ(0, ::chmod(exportFolder.c_str(), 0));
  {
    const UnprivilegedUser user;
    exportAndWait(events);
  }
  ASSERT_EQ(0, ::chmod(exportFolder.c_str(), 0755));
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES", writeErrorReport));
  EXPECT_EQ(old, contentOf(dayFilePath()));
}

TEST_F(ExportFailureTest, AFolderInTheFilesPlaceIsReportedAndStays) {
  removeAll(dayFilePath());
  folder.makeFolder("export/20120304.xml");
  writeFile(dayFilePath() + "/inside", "kept");
  exportAndWait(events);
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES", writeErrorReport));
  EXPECT_EQ("kept", contentOf(dayFilePath() + "/inside"));
  EXPECT_THAT(namesIn(exportFolder), ElementsAre("20120304.xml"));
}

TEST_F(ExportFailureTest, AFileInTheFoldersPlaceIsReportedAndStays) {
  removeAll(exportFolder);
  writeFile(exportFolder, "no folder");
  exportAndWait(events);
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES", writeErrorReport));
  EXPECT_EQ("no folder", contentOf(exportFolder));
}

TEST_F(ExportFailureTest, TextThatIsNotUTF8IsReportedAndNothingIsWritten) {
  for (const char* const key : {ZRLEPGDSTitleKey, ZRLEPGDSDescriptionKey, ZRLEPGDSImageURLKey}) {
    put("E1", {{key, "caf\xE9"}});
    expectWriteErrorAndOldFile();
    EXPECT_EQ(EILSEQ, environment.replacements().back().error);
  }
  put("E1", {{ZRLEPGDSTagsKey, PropertyList::Array{"good", "\xC3"}}});
  expectWriteErrorAndOldFile();
  EXPECT_EQ(EILSEQ, environment.replacements().back().error);
}

TEST_F(ExportFailureTest, TextThatIsNotUTF8InAnItemThatIsNotExportedDoesNoHarm) {
  put("bad", {{ZRLEPGDSTitleKey, "\xFF"}});
  expectNextExportWorks();
}

TEST_F(ExportFailureTest, RunningOutOfMemoryIsReportedLikeAnyOtherFailure) {
  environment.before(Call::Open, "20120304.xml", []() -> int { throw std::bad_alloc(); });
  expectWriteErrorAndOldFile();
  environment.before(Call::Write, "20120304.xml", []() -> int { throw std::runtime_error("the disk is on fire"); });
  expectWriteErrorAndOldFile();
  expectNextExportWorks();
}

TEST_F(ExportFailureTest, AClockThatShowsNoTimeIsReported) {
  environment.setNow(Instant{std::nan("")});
  expectWriteErrorAndOldFile();
}

TEST_F(ExportFailureTest, AnExportFolderWithAZeroByteInItsNameIsReported) {
  // Only the binary form can hold such a text.
  const std::string binary(
      "bplist00\xD1\x01\x02ZexportPathR~\0\x08\x0B\x16\0\0\0\0\0\0\x01\x01\0\0\0\0\0\0\0\x03\0\0\0\0\0\0\0\0\0\0\0\0\0"
      "\0\0\x19",
      60);
  writeFile(dataFolder + "/Test.epgconf", binary);
  exportAndWait(events);
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES", writeErrorReport));
  EXPECT_THAT(namesIn(homeFolder), ElementsAre("Desktop"));
}

TEST_F(ExportFailureTest, IsFollowedByANormalExport) {
  environment.failOn(Call::Write, "20120304.xml", ENOSPC);
  expectWriteErrorAndOldFile();
  expectNextExportWorks();
}

TEST_F(ExportFailureTest, OfTheWriterAloneIsNo) {
  EXPECT_TRUE(plugin->writeXMLFileWithEvents(events, Instant::fromUnixTime(1330880400)));
  removeAll(exportFolder);
  EXPECT_FALSE(plugin->writeXMLFileWithEvents(events, Instant::fromUnixTime(1330880400)));
  const std::size_t reports = delegate.reports().size();
  EXPECT_EQ(1U, reports) << "the writer itself reports to nobody";
}

TEST_F(ExportFailureTest, TheWriterBeforeAnyExportHasNoFolder) {
  start();
  EXPECT_FALSE(plugin->writeXMLFileWithEvents(events, Instant::fromUnixTime(1330880400)));
}

}  // namespace
}  // namespace epg::test
