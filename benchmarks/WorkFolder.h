#pragma once

#include <string>
#include <string_view>

namespace epg::benchmarks {

/// A new folder of this run's own, removed at its end with the files in it.
class WorkFolder {
 public:
  /// In the folder that TMPDIR names. ./bench names one in memory: what a disk does with the bytes later is no part of
  /// the work, and differs from one minute to the next.
  WorkFolder();
  /// In the folder that EPG_BENCHMARK_DISK names, which is to be on a disk; without it, in that of TMPDIR.
  static WorkFolder onDisk();
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;
  ~WorkFolder();

  const std::string& path() const { return path_; }
  std::string file(const std::string& name) const { return path_ + "/" + name; }
  void write(const std::string& name, const std::string& content) const;

 private:
  explicit WorkFolder(const char* parent);

  std::string path_;
};

/// Writes the bytes as the best of programs would: a temporary file, one call, and the name in the end. `flush` also
/// waits for the disk.
void writeFile(const std::string& path, std::string_view bytes, bool flush);

}  // namespace epg::benchmarks
