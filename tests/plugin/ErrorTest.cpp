#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

class ErrorTest : public PluginTest {};

TEST_F(ErrorTest, WithMessageHasTheLongDomainTheCodeMinusOneAndTheMessage) {
  for (const char* const message : {"Something", "", "Überlänge & 'mehr'\n", "%@ %s %n"}) {
    const EPGError error = plugin->errorWithMessage(message);
    EXPECT_EQ("tv.dorvaselin.TelvarinManager.EPG", error.domain);
    EXPECT_EQ(-1, error.code);
    EXPECT_EQ(message, error.localizedDescription);
  }
}

TEST_F(ErrorTest, BelongsToTheCallerAlone) {
  EPGError error;
  {
    std::string message = "Something";
    error = plugin->errorWithMessage(message);
    message = "else";
  }
  stop();
  EXPECT_EQ("Something", error.localizedDescription);
}

TEST_F(ErrorTest, IsReportedToNobody) {
  plugin->errorWithMessage("Something");
  EXPECT_TRUE(delegate.reports().empty());
  EXPECT_TRUE(environment.logged().empty());
}

TEST_F(ErrorTest, TheLongDomainIsTheShortOneWithTheHostsNameAndEPG) {
  EXPECT_STREQ("tv.dorvaselin", shortErrorDomain);
  EXPECT_EQ(std::string(shortErrorDomain) + ".TelvarinManager.EPG", longErrorDomain);
}

}  // namespace
}  // namespace epg::test
