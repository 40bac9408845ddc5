#include "benchmarks/PluginUser.h"

#include <stdexcept>
#include <thread>
#include <utility>

#include "benchmarks/SampleData.h"

namespace epg::benchmarks {

const char* const storeFileName = "EPGItems.plist";
const char* const dayFileName = "20120304.xml";
const char* const configurationName = "Benchmark";

void BenchmarkEnvironment::fileReplaced(const std::string& path, int error) {
  // On a thread of the plug-in's nobody could be told; a run whose files cannot be written has measured nothing.
  if (error != 0) throw std::runtime_error("cannot write " + path);
}

void BenchmarkEnvironment::detachThread(std::function<void()> body) {
  ++threads_;
  Environment::detachThread([this, body = std::move(body)] {
    body();
    --threads_;
  });
}

void writeSampleData(const WorkFolder& folder, std::size_t items) {
  folder.write(storeFileName, sampleStoreFile(items));
  folder.write(
      std::string(configurationName) + ".epgconf",
      "<plist version=\"1.0\"><dict><key>exportPath</key><string>" + folder.path() + "</string></dict></plist>\n");
}

PluginUser::PluginUser(const std::string& folder, BenchmarkEnvironment& environment)
    : folder_(folder),
      environment_(environment),
      plugin_(EPGDorvaSelinManagerPlugin::initWithBundle(nullptr, folder, environment)) {
  plugin_->setDelegate(this);
}

PluginUser::~PluginUser() {
  const auto end = plugin_->end();
  plugin_.reset();
  end->wait();
}

void PluginUser::prepareExport() {
  plugin_->exportEvents({}, configurationName);
  while (environment_.threads() > 0) std::this_thread::yield();
}

void PluginUser::exportHere(std::vector<EPGEvent> events) {
  succeeded_ = false;
  plugin_->exportEventsThread(std::move(events));
  if (!succeeded_) throw std::runtime_error("the day file was not written");
}

void PluginUser::epgExportEventCompleted(bool succeeded, const EPGError* /*error*/) { succeeded_ = succeeded; }

}  // namespace epg::benchmarks
