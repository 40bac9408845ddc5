// StoreFileBenchmark              measures reading and writing a store of 100,000 items
// StoreFileBenchmark --memory FILE
//                                 reads the store and prints what it takes and how much text it holds

#include <plist/plist.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <iostream>
#include <memory>
#include <pugixml.hpp>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "benchmarks/ChildProcess.h"
#include "benchmarks/Memory.h"
#include "benchmarks/PluginUser.h"
#include "benchmarks/SampleData.h"
#include "benchmarks/StoreReading.h"
#include "benchmarks/Table.h"
#include "benchmarks/Timing.h"
#include "benchmarks/WorkFolder.h"

using namespace epg;
using namespace epg::benchmarks;

namespace {

constexpr std::size_t itemCount = 100000;

/// Frees what libplist made.
struct Deleter {
  void operator()(void* node) const { ::plist_free(node); }
  void operator()(char* text) const { ::plist_to_xml_free(text); }
};
using Plist = std::unique_ptr<void, Deleter>;

std::string bytesOf(const std::string& path) {
  std::string content;
  if (readWholeFile(Environment::standard(), path, &content) != 0) throw std::runtime_error("cannot read " + path);
  return content;
}

Plist readByLibplist(const std::string& path) {
  const std::string bytes = bytesOf(path);
  plist_t root = nullptr;
  ::plist_from_memory(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &root);
  if (!root) throw std::runtime_error("libplist cannot read " + path);
  return Plist(root);
}

void writeByLibplist(const Plist& root, const std::string& path) {
  char* bytes = nullptr;
  std::uint32_t size = 0;
  ::plist_to_xml(root.get(), &bytes, &size);
  const std::unique_ptr<char, Deleter> text(bytes);
  writeFile(path, std::string_view(text.get(), size), false);
}

std::unique_ptr<pugi::xml_document> readByPugixml(const std::string& path) {
  auto document = std::make_unique<pugi::xml_document>();
  if (!document->load_file(path.c_str())) throw std::runtime_error("pugixml cannot read " + path);
  return document;
}

struct StringWriter : pugi::xml_writer {
  void write(const void* data, std::size_t size) override { text.append(static_cast<const char*>(data), size); }

  std::string text;
};

void writeByPugixml(const pugi::xml_document& document, const std::string& path) {
  StringWriter writer;
  document.save(writer, "\t", pugi::format_indent, pugi::encoding_utf8);
  writeFile(path, writer.text, false);
}

/// Freeing what was made is not part of the work.
template <typename Work>
Round roundOf(Work work) {
  return [work] {
    const Stopwatch stopwatch(processorSeconds);
    const auto made = work();
    return stopwatch.seconds();
  };
}

void measureReading(Table& table, const std::string& folder, const std::string& file) {
  BenchmarkEnvironment environment(BenchmarkEnvironment::Flush::None);
  enum Contender : std::size_t { Creation, Libplist, Pugixml, Reading };
  const Rounds rounds =
      inTurns(7, {roundOf([&] { return EPGDorvaSelinManagerPlugin::initWithBundle(nullptr, folder, environment); }),
                  roundOf([&] { return readByLibplist(file); }), roundOf([&] { return readByPugixml(file); }),
                  roundOf([&] { return readStore(file); })});
  table.atLeastAsFast("read 100000 items", rounds, Libplist, "libplist", 3);
  table.atMost("read 100000 items", rounds, Pugixml, "pugixml parse", 2.5);
  table.atMost("create the plug-in object", rounds, Reading, "read the store", 1.1);
}

void measureWriting(Table& table, const WorkFolder& folder, const std::string& file) {
  BenchmarkEnvironment environment(BenchmarkEnvironment::Flush::None);
  PluginUser user(folder.path(), environment);
  const Plist plist = readByLibplist(file);
  const auto document = readByPugixml(file);
  const std::string bytes = bytesOf(file);
  // The sample's file is in the form in which it is written, so that nobody reads or writes anything else than the
  // rest.
  const auto save = [&] { user.plugin().saveEPGItemsToFileThread(*user.plugin().epgItems()->snapshot()); };
  const std::string others = folder.file("others.plist");
  save();
  if (bytesOf(file) != bytes) throw std::runtime_error("the store is written otherwise than the sample's file");
  writeByLibplist(plist, others);
  if (bytesOf(others) != bytes) throw std::runtime_error("libplist writes another file");

  const auto timed = [](auto work) {
    return [work] {
      const Stopwatch stopwatch(processorSeconds);
      work();
      return stopwatch.seconds();
    };
  };
  enum Contender : std::size_t { Ours, Libplist, Pugixml };
  const Rounds rounds = inTurns(7, {timed(save), timed([&] { writeByLibplist(plist, others); }),
                                    timed([&] { writeByPugixml(*document, others); })});
  table.atLeastAsFast("write 100000 items", rounds, Libplist, "libplist", 2.5);
  table.information("write 100000 items", rounds, Pugixml, "pugixml of a ready tree");
}

void measureFlushed(Table& table) {
  const WorkFolder folder = WorkFolder::onDisk();
  writeSampleData(folder, itemCount);
  BenchmarkEnvironment environment(BenchmarkEnvironment::Flush::Real);
  PluginUser user(folder.path(), environment);
  const std::string path = folder.file(storeFileName);
  const std::string bytes = bytesOf(path);
  const Rounds rounds = inTurns(5, {[&] {
                                      const Stopwatch stopwatch(wallSeconds);
                                      user.plugin().saveEPGItemsToFileThread(*user.plugin().epgItems()->snapshot());
                                      return stopwatch.seconds();
                                    },
                                    [&] {
                                      const Stopwatch stopwatch(wallSeconds);
                                      writeFile(path, bytes, true);
                                      return stopwatch.seconds();
                                    }});
  table.information("save 100000 items, with the flush to disk (wall)", rounds, 1, "write and flush its bytes");
}

void measureMemory(Table& table, const std::string& file) {
  std::istringstream output(runProgram({ownProgram(), "--memory", file}).output);
  double allocated = 0;
  double text = 0;
  if (!(output >> allocated >> text)) throw std::runtime_error("the memory was not measured");
  constexpr double megabyte = 1 << 20;
  const auto megabytes = [](double bytes) { return std::to_string(static_cast<long>(bytes / megabyte)) + " MiB"; };
  table.atMost("memory of a store of 100000 items", megabytes(allocated), "its text, " + megabytes(text),
               allocated / text, 2.5);
}

void printMemory(const std::string& file) {
  // What the first reading leaves behind for all others is none of the store's.
  readStore(file).reset();
  const std::size_t before = allocatedBytes();
  const auto store = readStore(file);
  const std::size_t after = allocatedBytes();
  std::cout << after - before << ' ' << textSize(*store) << '\n';
}

void measureAll() {
  const WorkFolder folder;
  writeSampleData(folder, itemCount);
  const std::string file = folder.file(storeFileName);
  Table table;
  measureReading(table, folder.path(), file);
  measureWriting(table, folder, file);
  measureMemory(table, file);
  measureFlushed(table);
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  try {
    if (arguments.size() == 2 && arguments[0] == "--memory") {
      printMemory(arguments[1]);
    } else {
      measureAll();
    }
  } catch (const std::exception& exception) {
    std::cerr << "StoreFileBenchmark: " << exception.what() << '\n';
    return 1;
  }
  return 0;
}
