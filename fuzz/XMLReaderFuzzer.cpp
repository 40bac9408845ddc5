#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <pugixml.hpp>
#include <string>

#include "platform/XMLReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  std::string problem;
  const std::unique_ptr<epg::XMLReader> reader = epg::XMLReader::parse(bytes, &problem);
  if (!reader) {
    if (problem.empty()) {
      std::abort();
    }
    return 0;
  }

  const pugi::xml_node root = reader->root();
  static_cast<void>(reader->place(root));
  static_cast<void>(reader->text(root, &problem));
  for (const pugi::xml_node child : root.children()) {
    static_cast<void>(reader->place(child));
    if (child.type() == pugi::node_element) {
      static_cast<void>(reader->text(child, &problem));
      for (const pugi::xml_attribute attribute : child.attributes()) {
        static_cast<void>(reader->attribute(child, attribute.name(), &problem));
      }
    }
  }
  return 0;
}
