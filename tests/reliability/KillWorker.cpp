// The process that the kill test kills: it edits, saves and exports in rounds, and each round leaves the same number
// in every item of the store and every programme of the day file. After a round whose files are both written it
// says the round's number on standard output.
//
// usage: kill-worker DATA-FOLDER FIRST-ROUND LAST-ROUND

#include <unistd.h>

#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <vector>

#include "model/KeyConstants.h"
#include "platform/Environment.h"
#include "plugin/EPGDorvaSelinManagerPlugin.h"

namespace {

constexpr int itemCount = 60;

/// Counts finished files, so that a round ends when both of its own have been written.
class CountingEnvironment : public epg::Environment {
 public:
  void fileReplaced(const std::string& /*path*/, int error) override {
    if (error != 0) std::_Exit(3);
    const std::lock_guard<std::mutex> lock(mutex_);
    ++replaced_;
    condition_.notify_all();
  }
  void log(const std::string& /*line*/) override { std::_Exit(4); }
  void waitForReplaced(int count) {
    std::unique_lock<std::mutex> lock(mutex_);
    condition_.wait(lock, [&] { return replaced_ >= count; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable condition_;
  int replaced_ = 0;
};

std::vector<std::string> allIDs() {
  std::vector<std::string> ids;
  for (int i = 0; i < itemCount; ++i) ids.push_back("entry " + std::to_string(i));
  return ids;
}

void edit(epg::EPGDorvaSelinManagerPlugin& plugin, const std::vector<std::string>& ids, int round) {
  plugin.setEditedEPGUniqueIDs(ids);
  const auto list = plugin.editedItems();
  for (std::size_t i = 0; i < list->size(); ++i) {
    // Lengths differ from round to round, so that a mix of two files could not pass for either.
    list->at(i)->setValues({{epg::ZRLEPGDSTitleKey, std::to_string(round)},
                            {epg::ZRLEPGDSDescriptionKey, std::string(static_cast<std::size_t>(round) % 997, 'x')}});
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  const int first = std::atoi(argv[2]);
  const int last = std::atoi(argv[3]);
  static CountingEnvironment environment;
  const auto plugin = epg::EPGDorvaSelinManagerPlugin::initWithBundle(nullptr, argv[1], environment);
  const std::vector<std::string> ids = allIDs();
  std::vector<epg::EPGEvent> events(ids.size());
  for (std::size_t i = 0; i < ids.size(); ++i) {
    events[i].eventEPGUniqueID = ids[i];
    events[i].eventEPGStartDateTime = epg::Instant{static_cast<double>(i) * 60};
    events[i].eventEPGEndDateTime = epg::Instant{static_cast<double>(i) * 60 + 60};
  }
  for (int round = first; round <= last; ++round) {
    edit(*plugin, ids, round);
    // The thread of the round before may still be about to clear its mark; a refused save or export would be lost.
    while (plugin->busyWriting() || plugin->busyExporting()) ::usleep(100);
    plugin->commitEditing();
    plugin->exportEvents(events, "Kill");
    environment.waitForReplaced(2 * (round - first + 1));
    std::printf("%d\n", round);
    std::fflush(stdout);
  }
  return 0;
}
