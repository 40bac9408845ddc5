// Any bytes as an export configuration, under any name: its own folder, none, or the default one.

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "export/ExportConfiguration.h"
#include "fuzz/Check.h"
#include "model/EPGItem.h"
#include "model/KeyConstants.h"
#include "platform/Environment.h"

namespace {

/// A data folder with one file in it, in memory.
class OneFileEnvironment : public epg::Environment {
 public:
  std::string name;
  std::string content;

  int openFile(const std::string& /*path*/, int /*flags*/, mode_t /*mode*/, int* descriptor) override {
    read_ = 0;
    *descriptor = 1000;
    return 0;
  }
  int fileInfo(int /*descriptor*/, FileInfo* info) override {
    info->kind = FileKind::Regular;
    return 0;
  }
  int readFile(int /*descriptor*/, char* buffer, std::size_t capacity, std::size_t* count) override {
    *count = std::min(capacity, content.size() - read_);
    std::memcpy(buffer, content.data() + read_, *count);
    read_ += *count;
    return 0;
  }
  int closeFile(int /*descriptor*/) override { return 0; }
  int listFolder(const std::string& /*path*/, std::vector<std::string>* names) override {
    *names = {name};
    return 0;
  }
  std::string homeFolder() override { return "/home/operator"; }
  std::optional<std::string> homeFolderOfUser(const std::string& /*user*/) override { return std::nullopt; }

 private:
  std::size_t read_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  OneFileEnvironment environment;
  environment.name = input.ConsumeRandomLengthString(40);
  environment.content = input.ConsumeRemainingBytesAsString();
  const std::vector<std::string> names = epg::exportConfigurationNames(environment, "/data");
  FUZZ_CHECK(names.size() == 1);
  const auto configuration = epg::exportConfiguration(environment, "/data", names.front());
  const auto path = epg::stringValue(configuration, epg::ZRLEPGDSConfigExportPath);
  const auto folder = epg::exportFolder(environment, configuration);
  FUZZ_CHECK(folder.has_value() == path.has_value());
  if (path && (path->empty() || path->front() != '~')) FUZZ_CHECK(*folder == *path);
  return 0;
}
