#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include "xml/XMLReader.h"

namespace epg::test {

/// What the reader of XML documents does, done without any thought of time: every piece of text and white space a node
/// of the tree, every byte looked at by itself. Documents in UTF-8 only.
class NaiveXMLReader {
 public:
  static std::unique_ptr<NaiveXMLReader> parse(const std::string& bytes, std::string* problem,
                                               XMLReader::Halves halves);

  pugi::xml_node root() const;
  std::string place(pugi::xml_node node) const;
  std::optional<std::string> text(pugi::xml_node element, std::string* problem) const;
  std::optional<std::string> attribute(pugi::xml_node element, const char* name, std::string* problem) const;
  static bool holdsNoText(pugi::xml_node element);
  static std::string asItStands(pugi::xml_node element);

 private:
  NaiveXMLReader() = default;
  std::string placeOfOffset(std::size_t offset) const;

  struct Place {
    std::size_t offset = 0;
    std::size_t line = 1;  ///< Counted from 1, as the column is.
    std::size_t column = 1;
  };

  std::string text_;  ///< The document in UTF-8, as places are counted in it.
  pugi::xml_document document_;
  XMLReader::Halves halves_ = XMLReader::Halves::Refused;
  mutable std::vector<std::size_t> lineStarts_;  ///< Offsets; found when the first place is asked for.
  mutable Place counted_;                        ///< The last one: asking for places near each other takes little time.
};

}  // namespace epg::test
