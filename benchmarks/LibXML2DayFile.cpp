#include <libxml/xmlwriter.h>

#include "benchmarks/DayFilePeers.h"

namespace epg::benchmarks {

namespace {

const xmlChar* chars(const char* text) { return reinterpret_cast<const xmlChar*>(text); }

void start(xmlTextWriterPtr writer, const char* name) { xmlTextWriterStartElement(writer, chars(name)); }

void attribute(xmlTextWriterPtr writer, const char* name, const std::string& value) {
  xmlTextWriterWriteAttribute(writer, chars(name), chars(value.c_str()));
}

void element(xmlTextWriterPtr writer, const char* name, const std::string& text) {
  xmlTextWriterWriteElement(writer, chars(name), chars(text.c_str()));
}

void program(xmlTextWriterPtr writer, const EPGEvent& event, const SampleItem& item) {
  const ProgramTexts texts(event);
  start(writer, "program");
  attribute(writer, "id", texts.id);
  start(writer, "date");
  element(writer, "day", texts.day);
  element(writer, "month", texts.month);
  element(writer, "year", texts.year);
  xmlTextWriterEndElement(writer);
  start(writer, "time");
  element(writer, "hour", texts.hour);
  element(writer, "minute", texts.minute);
  xmlTextWriterEndElement(writer);
  element(writer, "title", item.title);
  element(writer, "description", item.description);
  element(writer, "imgUrl", item.imageURL);
  start(writer, "tags");
  for (const std::string& tag : item.tags) element(writer, "tag", tag);
  xmlTextWriterEndElement(writer);
  xmlTextWriterEndElement(writer);
}

extern "C" int writeToPeerFile(void* file, const char* bytes, int size) {
  static_cast<PeerFile*>(file)->write(bytes, static_cast<std::size_t>(size));
  return size;
}

extern "C" int closePeerFile(void* /*file*/) { return 0; }

}  // namespace

void exportByLibXML2(const PeerItems& items, const std::vector<EPGEvent>& events, const std::string& path) {
  PeerFile file(path);
  const std::vector<const EPGEvent*> sorted = sortedByStart(events);
  xmlTextWriterPtr writer = xmlNewTextWriter(xmlOutputBufferCreateIO(writeToPeerFile, closePeerFile, &file, nullptr));
  xmlTextWriterSetIndent(writer, 1);
  xmlTextWriterSetIndentString(writer, chars("    "));
  xmlTextWriterStartDocument(writer, nullptr, "UTF-8", nullptr);
  start(writer, "programs");
  attribute(writer, "dateFrom", rootDate(*sorted.front()->eventEPGStartDateTime));
  attribute(writer, "dateTo", rootDate(*sorted.back()->eventEPGEndDateTime));
  for (const EPGEvent* const event : sorted) program(writer, *event, items.find(*event->eventEPGUniqueID)->second);
  xmlTextWriterEndDocument(writer);
  xmlFreeTextWriter(writer);
  file.finish();
}

}  // namespace epg::benchmarks
