#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "benchmarks/WorkFolder.h"
#include "model/EPGEvent.h"
#include "platform/Environment.h"
#include "plugin/EPGDorvaSelinManagerPlugin.h"

namespace epg::benchmarks {

/// The real thing, but for the flush to disk, which can be left out, and for the day, which is always the same.
class BenchmarkEnvironment : public Environment {
 public:
  enum class Flush { Real, None };
  explicit BenchmarkEnvironment(Flush flush) : flush_(flush) {}

  int flushFile(int descriptor) override { return flush_ == Flush::Real ? Environment::flushFile(descriptor) : 0; }
  Instant now() override { return Instant::fromUnixTime(1330880400); }
  void fileReplaced(const std::string& path, int error) override;
  void detachThread(std::function<void()> body) override;

  /// How many saves and exports run, or are about to.
  int threads() const { return threads_; }

 private:
  Flush flush_;
  std::atomic<int> threads_{0};
};

/// The name of the store's file.
extern const char* const storeFileName;
/// The name of the day file of that day.
extern const char* const dayFileName;
/// The export configuration that a `PluginUser` writes.
extern const char* const configurationName;

/// Writes a store's file with so many items, and the export configuration, into the folder.
void writeSampleData(const WorkFolder& folder, std::size_t items);

/// A host: a plug-in over a folder with sample data, which is also where the day files go.
class PluginUser : private TelvarinManagerEPGPluginProtocol_Delegate {
 public:
  PluginUser(const std::string& folder, BenchmarkEnvironment& environment);
  PluginUser(const PluginUser&) = delete;
  PluginUser& operator=(const PluginUser&) = delete;
  ~PluginUser() override;

  EPGDorvaSelinManagerPlugin& plugin() { return *plugin_; }

  /// Chooses the configuration for exports on this thread.
  void prepareExport();
  /// The work of the export thread, on this one. Throws when it failed.
  void exportHere(std::vector<EPGEvent> events);
  std::string dayFile() const { return folder_ + "/" + dayFileName; }

 private:
  bool respondsToEPGExportEventCompleted() const override { return true; }
  void epgExportEventCompleted(bool succeeded, const EPGError* error) override;

  std::string folder_;
  BenchmarkEnvironment& environment_;
  std::shared_ptr<EPGDorvaSelinManagerPlugin> plugin_;
  std::atomic<bool> succeeded_{false};
};

}  // namespace epg::benchmarks
