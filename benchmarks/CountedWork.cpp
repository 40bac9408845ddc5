// CountedWork export|read|write COUNT: does the work once, in a function that callgrind finds by its name.

#include <exception>
#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks/PluginUser.h"
#include "benchmarks/SampleData.h"
#include "benchmarks/StoreReading.h"
#include "benchmarks/WorkFolder.h"

using namespace epg;
using namespace epg::benchmarks;

// Instructions are counted from here to its return.
extern "C" __attribute__((noinline)) void countedWork(const std::function<void()>& work);
extern "C" __attribute__((noinline)) void countedWork(const std::function<void()>& work) { work(); }

namespace {

bool count(const std::string& work, std::size_t size) {
  const WorkFolder folder;
  writeSampleData(folder, size);
  const std::string file = folder.file(storeFileName);
  if (work == "export") {
    BenchmarkEnvironment environment(BenchmarkEnvironment::Flush::None);
    PluginUser user(folder.path(), environment);
    user.prepareExport();
    std::vector<EPGEvent> events = sampleEvents(size);
    countedWork([&] { user.exportHere(std::move(events)); });
  } else if (work == "read") {
    std::shared_ptr<EPGItemStore> store;
    countedWork([&] { store = readStore(file); });
  } else if (work == "write") {
    const auto store = readStore(file);
    std::string bytes;
    countedWork([&] { bytes = storeFileOf(*store); });
  } else {
    return false;
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  try {
    if (arguments.size() == 2 && count(arguments[0], std::stoul(arguments[1]))) return 0;
  } catch (const std::exception& exception) {
    std::cerr << "CountedWork: " << exception.what() << '\n';
    return 1;
  }
  std::cerr << "usage: CountedWork export|read|write COUNT\n";
  return 2;
}
