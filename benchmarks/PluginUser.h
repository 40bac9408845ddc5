#pragma once

#include <atomic>
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

  /// How many files have been written so far.
  std::size_t filesWritten() const { return filesWritten_; }
  /// And how many of them hold a store.
  std::size_t storesWritten() const { return storesWritten_; }

 private:
  Flush flush_;
  std::atomic<std::size_t> filesWritten_{0};
  std::atomic<std::size_t> storesWritten_{0};
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

  /// How many exports have reported.
  std::size_t reports() const { return reports_; }

 private:
  bool respondsToEPGExportEventCompleted() const override { return true; }
  void epgExportEventCompleted(bool succeeded, const EPGError* error) override;

  std::string folder_;
  std::shared_ptr<EPGDorvaSelinManagerPlugin> plugin_;
  std::atomic<std::size_t> reports_{0};
  std::atomic<bool> succeeded_{false};
};

}  // namespace epg::benchmarks
