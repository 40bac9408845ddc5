#include <pugixml.hpp>

#include "benchmarks/DayFilePeers.h"

namespace epg::benchmarks {

namespace {

void append(pugi::xml_node parent, const char* name, const std::string& text) {
  parent.append_child(name).append_child(pugi::node_pcdata).set_value(text.c_str());
}

void appendProgram(pugi::xml_node root, const EPGEvent& event, const SampleItem& item) {
  const ProgramTexts texts(event);
  pugi::xml_node program = root.append_child("program");
  program.append_attribute("id") = texts.id.c_str();
  const pugi::xml_node date = program.append_child("date");
  append(date, "day", texts.day);
  append(date, "month", texts.month);
  append(date, "year", texts.year);
  const pugi::xml_node time = program.append_child("time");
  append(time, "hour", texts.hour);
  append(time, "minute", texts.minute);
  append(program, "title", item.title);
  append(program, "description", item.description);
  append(program, "imgUrl", item.imageURL);
  const pugi::xml_node tags = program.append_child("tags");
  for (const std::string& tag : item.tags) append(tags, "tag", tag);
}

class FileWriter : public pugi::xml_writer {
 public:
  explicit FileWriter(PeerFile& file) : file_(file) {}

  void write(const void* data, std::size_t size) override { file_.write(static_cast<const char*>(data), size); }

 private:
  PeerFile& file_;
};

}  // namespace

void exportByPugixml(const PeerItems& items, const std::vector<EPGEvent>& events, const std::string& path) {
  PeerFile file(path);
  const std::vector<const EPGEvent*> sorted = sortedByStart(events);
  pugi::xml_document document;
  pugi::xml_node declaration = document.append_child(pugi::node_declaration);
  declaration.append_attribute("version") = "1.0";
  declaration.append_attribute("encoding") = "UTF-8";
  pugi::xml_node root = document.append_child("programs");
  root.append_attribute("dateFrom") = rootDate(*sorted.front()->eventEPGStartDateTime).c_str();
  root.append_attribute("dateTo") = rootDate(*sorted.back()->eventEPGEndDateTime).c_str();
  for (const EPGEvent* const event : sorted) {
    appendProgram(root, *event, items.find(*event->eventEPGUniqueID)->second);
  }
  FileWriter writer(file);
  document.save(writer, "    ", pugi::format_indent, pugi::encoding_utf8);
  file.finish();
}

}  // namespace epg::benchmarks
