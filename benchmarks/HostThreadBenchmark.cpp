// How long the host's thread is away when it calls the plug-in, at rest and while a save and an export run.

#include <chrono>
#include <exception>
#include <functional>
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
constexpr std::size_t jobsAtWork = 10;

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
      std::vector<EPGEvent> given(events_);
      callAndWait("exportEvents", [&] { plugin().exportEvents(std::move(given), configurationName); });
    }
  }

  /// Saves and exports follow one another all the time, each started while the other one runs. The entries are changed
  /// while both do.
  void callAtWork() {
    std::vector<EPGEvent> given(events_);
    std::size_t number = 0;
    while (calls_["saveEPGItemsToFile"].count() < jobsAtWork || calls_["exportEvents"].count() < jobsAtWork) {
      if (!plugin().busyExporting()) {
        call("exportEvents", [&] { plugin().exportEvents(std::move(given), configurationName); });
        given = events_;
      }
      if (!plugin().busyWriting()) {
        const std::size_t before = environment_.storesWritten();
        call("saveEPGItemsToFile", [this] { plugin().saveEPGItemsToFile(); });
        // A save counts as running when its thread begins; until then, every call would start another one.
        waitFor([&] { return plugin().busyWriting() || environment_.storesWritten() > before; });
      }
      if (plugin().busyWriting() && plugin().busyExporting()) changeEntry(sampleID(number++ % count));
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    waitFor([this] { return !plugin().busyWriting() && !plugin().busyExporting(); });
  }

  /// Shows what was measured since the last time.
  void show(Table& table, const std::string& situation) {
    for (const auto& [operation, calls] : calls_) table.calls(operation + ", " + situation, calls, limit);
    calls_.clear();
  }

 private:
  EPGDorvaSelinManagerPlugin& plugin() { return user_->plugin(); }

  void changeEntry(const std::string& entry) {
    plugin().setEditedEPGUniqueIDs({entry});
    call("commitEditing", [this] { plugin().commitEditing(); });
    call("duplicateEPGItem", [&] { plugin().duplicateEPGItemWithUniqueID(entry, "copy"); });
    call("removeEPGItems", [this] { plugin().removeEPGItemsWithUniqueIDs({"copy"}); });
  }

  static void waitFor(const std::function<bool()>& condition) {
    while (!condition()) std::this_thread::sleep_for(std::chrono::microseconds(200));
  }

  void call(const std::string& operation, const std::function<void()>& work) { calls_[operation].measure(work); }

  void callAndWait(const std::string& operation, const std::function<void()>& work) {
    const std::size_t before = environment_.filesWritten();
    call(operation, work);
    waitFor(
        [&] { return environment_.filesWritten() > before && !plugin().busyWriting() && !plugin().busyExporting(); });
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
