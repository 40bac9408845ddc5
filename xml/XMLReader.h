#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "xml/XMLReferences.h"

namespace epg {

/// A parsed XML document that knows where its parts stood in the file.
///
/// Stricter than the parser underneath: exactly one root element, nothing but white space and comments around it, no
/// attribute twice in a tag, no "<" in one, and no references besides the five named ones and characters by number.
/// Entities that a document declares for itself are not expanded but refused where they are used, so none can explode.
/// As lax as the parser where nothing can be misunderstood: control characters in texts, "--" in comments, "]]>" in
/// texts. A store that somebody's tool wrote so would else be lost.
/// Encodings: UTF-8, UTF-16, ISO-8859-1 and Windows-1252, as the byte-order mark or the declaration says.
///
/// The nodes are for walking from element to element. Text is to be asked of the reader: the nodes keep the start of it
/// in the element itself and no white space next to tags, because a node for each line end of an indented document
/// would cost more than all the rest. Comments and processing instructions are among an element's children.
/// One thread at a time.
class XMLReader {
 public:
  using Halves = XMLHalves;

  /// Null when the bytes are no such document; `problem` then says "line 3, column 7: …" and why. Throws
  /// std::bad_alloc when the document does not fit into memory.
  static std::unique_ptr<XMLReader> parse(std::string bytes, std::string* problem, Halves halves = Halves::Refused);

  /// Whether the bytes are a document in UTF-8, as the byte-order mark or the declaration says; not whether they keep
  /// to it.
  static bool isInUTF8(const std::string& bytes);

  pugi::xml_node root() const;

  /// "line 3, column 7" of the node's start, counted from 1 in characters.
  std::string place(pugi::xml_node node) const;

  /// The element's own text, comments left out and references resolved; text inside child elements does not count.
  /// Nothing when a reference cannot be resolved; `problem` then names it and its place.
  std::optional<std::string> text(pugi::xml_node element, std::string* problem) const;
  /// The attribute's value; nothing when it is missing (no problem) or a reference cannot be resolved (a problem).
  std::optional<std::string> attribute(pugi::xml_node element, const char* name, std::string* problem) const;

  /// The same without a copy of what can be used as it stands: the text is then the reader's and lives as long as it.
  /// Any other is made in `buffer`, whose former content is lost, and lives until that changes.
  std::optional<std::string_view> text(pugi::xml_node element, std::string* buffer, std::string* problem) const;
  std::optional<std::string_view> attribute(pugi::xml_node element, const char* name, std::string* buffer,
                                            std::string* problem) const;

  /// Whether the element holds no text of its own besides white space.
  static bool holdsNoText(pugi::xml_node element);

  /// The element with all that is in it as XML, references left as they stand and comments left out.
  std::string asItStands(pugi::xml_node element) const;

 private:
  XMLReader() = default;
  bool parseText(std::string* problem);
  std::size_t offsetOf(pugi::xml_node node) const;
  std::size_t parseAgain(pugi::xml_node element, pugi::xml_document* piece) const;
  std::string placeOfOffset(std::size_t offset) const;

  struct Place {
    std::size_t offset = 0;
    std::size_t line = 1;  ///< Counted from 1, as the column is.
    std::size_t column = 1;
  };

  std::string text_;  ///< The document in UTF-8, as places are counted in it.
  pugi::xml_document document_;
  Halves halves_ = Halves::Refused;
  mutable std::vector<std::size_t> lineStarts_;  ///< Offsets; found when the first place is asked for.
  mutable Place counted_;                        ///< The last one: asking for places near each other takes little time.
};

}  // namespace epg
