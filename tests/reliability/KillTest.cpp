// A process that edits, saves and exports is killed at random moments. Whatever the moment, both files are whole
// files that were due, at most one temporary file of each is left, and the next run goes on from there.

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "model/EPGItem.h"
#include "model/KeyConstants.h"
#include "platform/Environment.h"
#include "plist/PropertyListFile.h"
#include "tests/support/TemporaryFolder.h"

namespace {

int numberFromEnvironment(const char* name, int otherwise) {
  const char* const text = std::getenv(name);
  return text ? std::atoi(text) : otherwise;
}

bool endsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

std::vector<std::string> temporaryFilesIn(const std::string& folder) {
  std::vector<std::string> found;
  for (const std::string& name : epg::test::namesIn(folder)) {
    if (endsWith(name, ".tmp")) found.push_back(name);
  }
  return found;
}

/// The one round that every title of a file tells of; 0 without a file, -1 for a file that mixes rounds.
int commonRound(const std::set<std::string>& titles) {
  if (titles.empty()) return 0;
  return titles.size() == 1 ? std::atoi(titles.begin()->c_str()) : -1;
}

int roundInStore(const std::string& folder) {
  const std::string path = folder + "/EPGItems.plist";
  if (::access(path.c_str(), F_OK) != 0) return 0;
  std::string problem;
  const auto store = epg::readPropertyListDictionary(epg::Environment::standard(), path, &problem);
  EXPECT_TRUE(store) << problem;
  if (!store) return -1;
  std::set<std::string> titles;
  for (const auto& entry : *store) {
    const auto* const item = entry.second.asDictionary();
    const auto title = item ? epg::stringValue(*item, epg::ZRLEPGDSTitleKey) : std::nullopt;
    const auto text = item ? epg::stringValue(*item, epg::ZRLEPGDSDescriptionKey) : std::nullopt;
    if (!title || !text) return -1;
    const std::string number(*title);
    if (text->size() != static_cast<std::size_t>(std::atoi(number.c_str())) % 997) return -1;
    titles.insert(number);
  }
  EXPECT_EQ(60U, store->size());
  return commonRound(titles);
}

void collectTitles(xmlNodePtr node, std::set<std::string>& titles, int& count) {
  for (xmlNodePtr child = node->children; child; child = child->next) {
    if (child->type != XML_ELEMENT_NODE) continue;
    if (xmlStrEqual(child->name, reinterpret_cast<const xmlChar*>("title"))) {
      xmlChar* const text = xmlNodeGetContent(child);
      titles.insert(reinterpret_cast<const char*>(text));
      xmlFree(text);
      ++count;
    }
    collectTitles(child, titles, count);
  }
}

/// The latest round in the day files; -1 when one of them is not whole. (Past midnight there are two.)
int roundInDayFiles(const std::string& folder) {
  int latest = 0;
  for (const std::string& name : epg::test::namesIn(folder)) {
    if (!endsWith(name, ".xml")) continue;
    const xmlDocPtr document = xmlReadFile((folder + "/" + name).c_str(), nullptr, XML_PARSE_NONET);
    EXPECT_TRUE(document) << name;
    if (!document) return -1;
    std::set<std::string> titles;
    int count = 0;
    collectTitles(xmlDocGetRootElement(document), titles, count);
    xmlFreeDoc(document);
    EXPECT_EQ(60, count) << name;
    const int round = commonRound(titles);
    if (round < 0) return -1;
    latest = std::max(latest, round);
  }
  return latest;
}

/// A running worker; what it says is read to the end after it is gone.
class Worker {
 public:
  Worker(const std::string& dataFolder, int first, int last) {
    int ends[2] = {-1, -1};
    EXPECT_EQ(0, ::pipe(ends));
    const std::string firstText = std::to_string(first);
    const std::string lastText = std::to_string(last);
    process_ = ::fork();
    if (process_ == 0) {
      ::dup2(ends[1], STDOUT_FILENO);
      ::close(ends[0]);
      ::close(ends[1]);
      ::execl(EPG_KILL_WORKER, EPG_KILL_WORKER, dataFolder.c_str(), firstText.c_str(), lastText.c_str(),
              static_cast<char*>(nullptr));
      ::_exit(127);
    }
    ::close(ends[1]);
    output_ = ::fdopen(ends[0], "r");
  }
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;
  ~Worker() { std::fclose(output_); }

  /// Until the worker has said that a round is written.
  void waitForARound() { std::ungetc(std::fgetc(output_), output_); }

  void kill() { ::kill(process_, SIGKILL); }

  int waitForEnd() {
    int status = 0;
    ::waitpid(process_, &status, 0);
    return status;
  }

  /// The last round that the worker said was written, 0 for none.
  int lastRound() {
    int last = 0;
    int round = 0;
    while (std::fscanf(output_, "%d\n", &round) == 1) last = round;
    return last;
  }

 private:
  pid_t process_ = -1;
  std::FILE* output_ = nullptr;
};

class KillTest : public testing::Test {
 protected:
  void SetUp() override {
    epg::test::writeFile(data_ + "/Kill.epgconf",
                         "<plist><dict><key>exportPath</key><string>" + exports_ + "</string></dict></plist>");
  }

  const epg::test::TemporaryFolder folder_;
  const std::string data_ = folder_.makeFolder("data");
  const std::string exports_ = folder_.makeFolder("export");
};

TEST_F(KillTest, FilesAreWholeAndDueWheneverTheWriterIsKilled) {
  const int kills = numberFromEnvironment("EPG_KILLS", 50);
  const auto seed = static_cast<unsigned>(numberFromEnvironment("EPG_KILL_SEED", static_cast<int>(::getpid())));
  std::printf("seed %u\n", seed);
  std::mt19937 random(seed);
  std::uniform_int_distribution<useconds_t> moment(0, 60000);
  int stored = 0;
  int exported = 0;
  int killsAtWork = 0;
  std::size_t leftByEarlierKills = 0;
  for (int i = 0; i < kills; ++i) {
    const int first = std::max(stored, exported) + 1;
    Worker worker(data_, first, first + 1000000);
    // Most are to die at work, however slow the machine is, and some while they begin.
    if (i % 4 != 0) worker.waitForARound();
    ::usleep(moment(random));  // Not a wait for something: the moment itself is what varies.
    worker.kill();
    const int status = worker.waitForEnd();
    ASSERT_TRUE(WIFSIGNALED(status)) << "the worker ended by itself with " << WEXITSTATUS(status);
    const int said = worker.lastRound();
    if (said > 0) ++killsAtWork;

    const int storedNow = roundInStore(data_);
    const int exportedNow = roundInDayFiles(exports_);
    // What was written last, or what was being written when the end came.
    const int lastDue = std::max(said, first - 1) + 1;
    ASSERT_GE(storedNow, std::max(stored, said)) << "kill " << i;
    ASSERT_LE(storedNow, lastDue) << "kill " << i;
    ASSERT_GE(exportedNow, std::max(exported, said)) << "kill " << i;
    ASSERT_LE(exportedNow, lastDue) << "kill " << i;
    // A finished write has tidied up; only the writers killed since may have left one file each.
    if (said > 0) leftByEarlierKills = 0;
    ++leftByEarlierKills;
    ASSERT_LE(temporaryFilesIn(data_).size(), leftByEarlierKills) << "kill " << i;
    ASSERT_LE(temporaryFilesIn(exports_).size(), leftByEarlierKills) << "kill " << i;
    stored = storedNow;
    exported = exportedNow;
  }
  EXPECT_GE(killsAtWork, kills / 2) << "most kills came before the first round was written: little was tried";
  std::printf("%d kills, %d of them after a finished round, last round %d\n", kills, killsAtWork, stored);

  const int next = std::max(stored, exported) + 1;
  Worker worker(data_, next, next);
  EXPECT_EQ(0, worker.waitForEnd());
  EXPECT_EQ(next, roundInStore(data_));
  EXPECT_EQ(next, roundInDayFiles(exports_));
  EXPECT_TRUE(temporaryFilesIn(data_).empty());
  EXPECT_TRUE(temporaryFilesIn(exports_).empty());
}

}  // namespace
