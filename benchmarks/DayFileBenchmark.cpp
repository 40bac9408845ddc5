// The document of an export, from events and items to bytes.

#include <benchmark/benchmark.h>
#include <libxml/xmlwriter.h>
#include <time.h>

#include <cstddef>
#include <memory>
#include <pugixml.hpp>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

#include "benchmarks/Comparison.h"
#include "benchmarks/SampleData.h"
#include "benchmarks/Subjects.h"
#include "export/DayFile.h"
#include "model/EPGItem.h"
#include "model/KeyConstants.h"

namespace epg::benchmarks {

namespace {

struct Input {
  explicit Input(std::size_t count) : events(sampleEvents(count)) {
    for (std::size_t i = 0; i < count; ++i) {
      items[sampleID(i)] = sampleItem(i, 4, 200);
    }
  }

  std::vector<EPGEvent> events;
  std::unordered_map<std::string, PropertyListDictionary> items;
};

std::string ourDocument(const Input& input) {
  const auto lookUp = [&input](const std::string& uniqueID) -> std::optional<PropertyListDictionary> {
    const auto item = input.items.find(uniqueID);
    if (item == input.items.end()) return std::nullopt;
    return item->second;
  };
  return dayFileContent(LocalCalendar(), DateFormatter("dd-MM-yyyy"), lookUp, input.events).value_or("");
}

/// What the others need to know of one event, from the same event and item, by the shortest way that the C library has.
struct Program {
  Program(const Input& input, const EPGEvent& event)
      : item(input.items.find(*event.eventEPGUniqueID)->second),
        id(std::to_string(playbackIDHash(*event.eventEPGPlaybackUniqueID))) {
    const auto start = static_cast<time_t>(event.eventEPGStartDateTime->unixTime());
    struct tm local {};
    ::localtime_r(&start, &local);
    day = std::to_string(local.tm_mday);
    month = std::to_string(local.tm_mon + 1);
    year = std::to_string(local.tm_year - 100);
    hour = std::to_string(local.tm_hour);
    minute = std::to_string(local.tm_min);
  }

  std::string text(const char* key) const { return std::string(*stringValue(item, key)); }

  const PropertyListDictionary& item;
  std::string id, day, month, year, hour, minute;
};

const xmlChar* chars(const char* text) { return reinterpret_cast<const xmlChar*>(text); }

void start(xmlTextWriterPtr writer, const char* name) { xmlTextWriterStartElement(writer, chars(name)); }

void element(xmlTextWriterPtr writer, const char* name, const std::string& text) {
  xmlTextWriterWriteElement(writer, chars(name), chars(text.c_str()));
}

std::string documentByLibXML2(const Input& input) {
  xmlBufferPtr buffer = xmlBufferCreate();
  xmlTextWriterPtr writer = xmlNewTextWriterMemory(buffer, 0);
  xmlTextWriterSetIndent(writer, 1);
  xmlTextWriterSetIndentString(writer, chars("    "));
  xmlTextWriterStartDocument(writer, nullptr, "UTF-8", nullptr);
  start(writer, "programs");
  xmlTextWriterWriteAttribute(writer, chars("dateFrom"), chars("04-03-2012"));
  xmlTextWriterWriteAttribute(writer, chars("dateTo"), chars("04-03-2012"));
  for (const EPGEvent& event : input.events) {
    const Program program(input, event);
    start(writer, "program");
    xmlTextWriterWriteAttribute(writer, chars("id"), chars(program.id.c_str()));
    start(writer, "date");
    element(writer, "day", program.day);
    element(writer, "month", program.month);
    element(writer, "year", program.year);
    xmlTextWriterEndElement(writer);
    start(writer, "time");
    element(writer, "hour", program.hour);
    element(writer, "minute", program.minute);
    xmlTextWriterEndElement(writer);
    element(writer, "title", program.text(ZRLEPGDSTitleKey));
    element(writer, "description", program.text(ZRLEPGDSDescriptionKey));
    element(writer, "imgUrl", program.text(ZRLEPGDSImageURLKey));
    start(writer, "tags");
    for (const PropertyList& tag : *tagsValue(program.item)) element(writer, "tag", std::string(*tag.asString()));
    xmlTextWriterEndElement(writer);
    xmlTextWriterEndElement(writer);
  }
  xmlTextWriterEndDocument(writer);
  xmlFreeTextWriter(writer);
  std::string document(reinterpret_cast<const char*>(xmlBufferContent(buffer)),
                       static_cast<std::size_t>(xmlBufferLength(buffer)));
  xmlBufferFree(buffer);
  return document;
}

void appendElement(pugi::xml_node parent, const char* name, const std::string& text) {
  parent.append_child(name).text().set(text.c_str());
}

struct StringWriter : pugi::xml_writer {
  void write(const void* data, std::size_t size) override { text.append(static_cast<const char*>(data), size); }

  std::string text;
};

std::string documentByPugixml(const Input& input) {
  pugi::xml_document document;
  pugi::xml_node root = document.append_child("programs");
  root.append_attribute("dateFrom") = "04-03-2012";
  root.append_attribute("dateTo") = "04-03-2012";
  for (const EPGEvent& event : input.events) {
    const Program program(input, event);
    pugi::xml_node node = root.append_child("program");
    node.append_attribute("id") = program.id.c_str();
    const pugi::xml_node date = node.append_child("date");
    appendElement(date, "day", program.day);
    appendElement(date, "month", program.month);
    appendElement(date, "year", program.year);
    const pugi::xml_node time = node.append_child("time");
    appendElement(time, "hour", program.hour);
    appendElement(time, "minute", program.minute);
    appendElement(node, "title", program.text(ZRLEPGDSTitleKey));
    appendElement(node, "description", program.text(ZRLEPGDSDescriptionKey));
    appendElement(node, "imgUrl", program.text(ZRLEPGDSImageURLKey));
    const pugi::xml_node tags = node.append_child("tags");
    for (const PropertyList& tag : *tagsValue(program.item)) appendElement(tags, "tag", std::string(*tag.asString()));
  }
  StringWriter writer;
  document.save(writer, "    ", pugi::format_indent, pugi::encoding_utf8);
  return writer.text;
}

/// The others write apostrophes as they are, so their documents are a little shorter; not more than that.
void expectTheSameSize(const std::string& ours, const std::string& others) {
  if (others.size() * 100 < ours.size() * 97 || others.size() > ours.size() + 100) {
    throw std::runtime_error("not the same document: " + std::to_string(ours.size()) + " and " +
                             std::to_string(others.size()) + " bytes");
  }
}

using Writing = std::string (*)(const Input&);

void addFor(std::size_t count, const char* who, Writing document) {
  measure("export " + std::to_string(count) + " events, up to the bytes", who, Clock::Processor,
          [count, document]() -> Work {
            const auto input = std::make_shared<Input>(count);
            expectTheSameSize(ourDocument(*input), document(*input));
            return [input, document](std::size_t) { ::benchmark::DoNotOptimize(document(*input)); };
          });
}

}  // namespace

void addDayFileBenchmarks() {
  for (const std::size_t count : {std::size_t{10000}, std::size_t{100000}}) {
    addFor(count, "this project", ourDocument);
    addFor(count, "libxml2's text writer", documentByLibXML2);
    addFor(count, "pugixml's tree and serialiser", documentByPugixml);
  }
}

}  // namespace epg::benchmarks
