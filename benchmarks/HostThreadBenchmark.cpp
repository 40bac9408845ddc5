// How long the host's thread is away when it calls the plug-in, at rest and while a save and an export run.

#include <chrono>
#include <exception>
#include <functional>
#include <future>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "benchmarks/PluginUser.h"
#include "benchmarks/SampleData.h"
#include "benchmarks/Table.h"
#include "benchmarks/Timing.h"
#include "benchmarks/WorkFolder.h"

using namespace epg;
using namespace epg::benchmarks;

namespace {

constexpr std::size_t count = 100000;
constexpr double limit = 0.001;
constexpr int callsAtRest = 100;
// Of both, that many are started while the other one runs.
constexpr std::size_t jobsAtWork = 20;

class HostThread {
 public:
  HostThread() : events_(sampleEvents(count)) {
    writeSampleData(folder_, count);
    user_ = std::make_unique<PluginUser>(folder_.path(), environment_);
  }

  /// Every call starts its save or its export, and the next one waits until that is done.
  void callAtRest() {
    for (int i = 0; i < callsAtRest; ++i) {
      const std::vector<std::string> entry = {sampleID(static_cast<std::size_t>(i))};
      callAndWait("saveEPGItemsToFile", [this] { plugin().saveEPGItemsToFile(); });
      plugin().setEditedEPGUniqueIDs(entry);
      callAndWait("commitEditing", [this] { plugin().commitEditing(); });
      callAndWait("duplicateEPGItem", [&] { plugin().duplicateEPGItemWithUniqueID(entry[0], "copy"); });
      callAndWait("removeEPGItems", [&] { plugin().removeEPGItemsWithUniqueIDs({"copy"}); });
      std::vector<EPGEvent> given = listOfEvents();
      callAndWait("exportEvents", [&] { plugin().exportEvents(std::move(given), configurationName); });
    }
  }

  /// Saves and exports follow one another all the time, each started while the other one runs. The entries are changed
  /// while both do.
  void callAtWork() {
    std::vector<EPGEvent> given = listOfEvents();
    std::size_t number = 0;
    while (calls_["saveEPGItemsToFile"].count() < jobsAtWork || calls_["exportEvents"].count() < jobsAtWork) {
      const bool exports = plugin().busyExporting();
      const int saves = environment_.threads() - (exports ? 1 : 0);
      if (saves == 0) call("saveEPGItemsToFile", [this] { plugin().saveEPGItemsToFile(); });
      if (!exports) {
        call("exportEvents", [&] { plugin().exportEvents(std::move(given), configurationName); });
        given = listOfEvents();
      }
      // A save counts as running when its thread begins; until then, every change would start another one.
      if (exports && saves == 1 && plugin().busyWriting()) changeEntry(sampleID(number++ % count));
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    waitForThreads();
  }

  /// Shows what was measured since the last time.
  void show(Table& table, const std::string& situation) {
    for (const auto& [operation, calls] : calls_) table.calls(operation + ", " + situation, calls, limit);
    calls_.clear();
  }

 private:
  EPGDorvaSelinManagerPlugin& plugin() { return user_->plugin(); }

  /// Made on another thread, and so in another part of the heap. When the export lets go of its two hundred thousand
  /// texts, the C library puts them in order when that part is next asked for a large piece: milliseconds that would be
  /// counted for whichever call happens to come next, and are no work of the plug-in's.
  std::vector<EPGEvent> listOfEvents() const {
    return std::async(std::launch::async, [this] { return events_; }).get();
  }

  void changeEntry(const std::string& entry) {
    plugin().setEditedEPGUniqueIDs({entry});
    call("commitEditing", [this] { plugin().commitEditing(); });
    call("duplicateEPGItem", [&] { plugin().duplicateEPGItemWithUniqueID(entry, "copy"); });
    call("removeEPGItems", [this] { plugin().removeEPGItemsWithUniqueIDs({"copy"}); });
  }

  void waitForThreads() const {
    while (environment_.threads() > 0) std::this_thread::sleep_for(std::chrono::microseconds(200));
  }

  void call(const std::string& operation, const std::function<void()>& work) { calls_[operation].measure(work); }

  void callAndWait(const std::string& operation, const std::function<void()>& work) {
    call(operation, work);
    waitForThreads();
  }

  WorkFolder folder_;
  BenchmarkEnvironment environment_{BenchmarkEnvironment::Flush::None};
  std::vector<EPGEvent> events_;
  std::unique_ptr<PluginUser> user_;
  std::map<std::string, Calls> calls_;
};

}  // namespace

int main() {
  try {
    Table table;
    HostThread host;
    host.callAtRest();
    host.show(table, "at rest");
    host.callAtWork();
    host.show(table, "at work");
  } catch (const std::exception& exception) {
    std::cerr << "HostThreadBenchmark: " << exception.what() << '\n';
    return 1;
  }
  return 0;
}
