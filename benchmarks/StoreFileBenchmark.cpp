// Saving and loading the store's file.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <libxml/parser.h>
#include <unistd.h>

#include <cstddef>
#include <memory>
#include <pugixml.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "benchmarks/Comparison.h"
#include "benchmarks/SampleData.h"
#include "benchmarks/Subjects.h"
#include "platform/Environment.h"
#include "platform/PropertyListFile.h"
#include "plugin/EPGDorvaSelinManagerPlugin.h"

namespace epg::benchmarks {

namespace {

constexpr std::size_t itemCount = 100000;
const char* const saving = "save 100000 items, up to the disk";
const char* const serialising = "save 100000 items, up to the bytes";
const char* const loading = "load 100000 items";

std::string storeFile() { return propertyListXML(PropertyList(sampleStore(itemCount))).value_or(""); }

/// A plug-in over a store file in a folder of its own.
struct Plugin {
  Plugin() {
    folder.write("EPGItems.plist", storeFile());
    plugin = EPGDorvaSelinManagerPlugin::initWithBundle(nullptr, folder.path());
  }

  WorkFolder folder;
  std::shared_ptr<EPGDorvaSelinManagerPlugin> plugin;
};

/// The least that any program does that wants these bytes on the disk: no temporary file, nothing to go back to.
void writeAndFlush(const std::string& path, const std::string& bytes) {
  const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  std::size_t done = 0;
  while (descriptor >= 0 && done < bytes.size()) {
    const ssize_t written = ::write(descriptor, bytes.data() + done, bytes.size() - done);
    if (written <= 0) break;
    done += static_cast<std::size_t>(written);
  }
  if (descriptor < 0 || done < bytes.size() || ::fsync(descriptor) != 0)
    throw std::runtime_error("cannot write " + path);
  ::close(descriptor);
}

struct StringWriter : pugi::xml_writer {
  void write(const void* data, std::size_t size) override { text.append(static_cast<const char*>(data), size); }

  std::string text;
};

/// The same document as a tree of pugixml's, made anew from the items in every round as a save does.
std::string storeByPugixml(const PropertyListDictionary& store) {
  pugi::xml_document document;
  pugi::xml_node root = document.append_child("plist");
  root.append_attribute("version") = "1.0";
  pugi::xml_node dictionary = root.append_child("dict");
  for (const auto& [id, item] : store) {
    dictionary.append_child("key").text().set(std::string(id).c_str());
    pugi::xml_node entries = dictionary.append_child("dict");
    for (const auto& [key, value] : *item.asDictionary()) {
      entries.append_child("key").text().set(std::string(key).c_str());
      if (const auto text = value.asString()) {
        entries.append_child("string").text().set(std::string(*text).c_str());
        continue;
      }
      pugi::xml_node list = entries.append_child("array");
      for (const PropertyList& tag : *value.asArray())
        list.append_child("string").text().set(std::string(*tag.asString()).c_str());
    }
  }
  StringWriter writer;
  document.save(writer, "\t", pugi::format_indent, pugi::encoding_utf8);
  return writer.text;
}

void addSaving() {
  measure(serialising, "this project", Clock::Processor, []() -> Work {
    return [store = std::make_shared<const EPGItemStore>(sampleStore(itemCount))](std::size_t) {
      std::string bytes;
      StringSink sink(bytes);
      writeStore(sink, store->snapshot());
      sink.flush();
      ::benchmark::DoNotOptimize(bytes.data());
    };
  });
  measure(serialising, "pugixml's tree and serialiser", Clock::Processor, []() -> Work {
    const auto store = std::make_shared<const PropertyListDictionary>(sampleStore(itemCount));
    return [store](std::size_t) { ::benchmark::DoNotOptimize(storeByPugixml(*store)); };
  });
  measure(serialising, "copying the same bytes in memory", Clock::Processor, []() -> Work {
    return [bytes = storeFile()](std::size_t) {
      std::string copy(bytes);
      ::benchmark::DoNotOptimize(copy.data());
      ::benchmark::ClobberMemory();
    };
  });

  measure(saving, "this project", Clock::Wall, []() -> Work {
    return [it = std::make_shared<Plugin>()](std::size_t) {
      it->plugin->saveEPGItemsToFileThread(it->plugin->epgItems()->snapshot());
    };
  });
  measure(saving, "writing and flushing the same bytes", Clock::Wall, []() -> Work {
    return [folder = std::make_shared<WorkFolder>(), bytes = storeFile()](std::size_t) {
      writeAndFlush(folder->file("EPGItems.plist"), bytes);
    };
  });
  measure("save 100000 items, on the host's thread", "this project", Clock::Processor, []() -> Work {
    return [it = std::make_shared<Plugin>()](std::size_t) {
      ::benchmark::DoNotOptimize(it->plugin->epgItems()->snapshot());
    };
  });
}

void addLoading() {
  measure(loading, "this project", Clock::Processor, []() -> Work {
    return [it = std::make_shared<Plugin>()](std::size_t) {
      ::benchmark::DoNotOptimize(EPGDorvaSelinManagerPlugin::initWithBundle(nullptr, it->folder.path()));
    };
  });
  measure(loading, "libxml2's parser, up to its tree", Clock::Processor, []() -> Work {
    return [bytes = storeFile()](std::size_t) {
      xmlDocPtr document = xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr,
                                         XML_PARSE_NONET | XML_PARSE_HUGE);
      if (!document) throw std::runtime_error("the store file cannot be read by libxml2");
      xmlFreeDoc(document);
    };
  });
  measure(loading, "pugixml's parser, up to its tree", Clock::Processor, []() -> Work {
    return [bytes = storeFile()](std::size_t) {
      pugi::xml_document document;
      if (!document.load_buffer(bytes.data(), bytes.size())) {
        throw std::runtime_error("the store file cannot be read by pugixml");
      }
    };
  });
}

}  // namespace

void addStoreFileBenchmarks() {
  addSaving();
  addLoading();
}

}  // namespace epg::benchmarks
