#pragma once

#include <cstddef>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/Draw.h"
#include "xml/XMLReader.h"

namespace epg::test {

/// Characters that stand in libxml2's document for what it would not read there.
inline const char* const controlCharacter = "\uE001";
inline const char* const noText = "\uE002";

/// A piece of an element's content.
struct XMLPiece {
  enum Kind {
    Text,
    Between,  ///< Markup that no text reaches across, and no element.
    Element
  };
  Kind kind;
  const char* text;
};

inline const XMLPiece pieces[] = {{XMLPiece::Text, " "},
                                  {XMLPiece::Text, "\n"},
                                  {XMLPiece::Text, "\t "},
                                  {XMLPiece::Text, "\r\n"},
                                  {XMLPiece::Text, "x"},
                                  {XMLPiece::Text, "text with an é and 節"},
                                  {XMLPiece::Text, "&amp;"},
                                  {XMLPiece::Text, "&#233;"},
                                  {XMLPiece::Between, "<!-- c -->"},
                                  {XMLPiece::Between, "<!---->"},
                                  {XMLPiece::Between, "<![CDATA[]]>"},
                                  {XMLPiece::Between, "<![CDATA[ \r\n<b>&amp; ]]>"},
                                  {XMLPiece::Between, "<?title p?>"},
                                  {XMLPiece::Element, "<b/>"},
                                  {XMLPiece::Element, "<b  a='1'\n />"},
                                  {XMLPiece::Element, "<c a=\"x\ty\r\nz\" b='&lt;&quot;&#10;'/>"},
                                  {XMLPiece::Element, "<d> </d >"}};

/// A piece that the reader takes and libxml2 does not, with what libxml2 is given in its place.
struct LaxXMLPiece {
  XMLPiece piece;
  const char* strict;         ///< Where halves are replaced.
  const char* strictRefused;  ///< Where they are refused.
  const char* unresolved;     ///< The reference that stands for no character, in any case or where halves are refused.
};

inline const LaxXMLPiece laxPieces[] = {
    // Cannot be misunderstood, and a file that somebody's tool wrote so would else be lost.
    {{XMLPiece::Text, "]]>"}, "]]&gt;", "]]&gt;", nullptr},
    {{XMLPiece::Text, "\x01"}, controlCharacter, controlCharacter, nullptr},
    {{XMLPiece::Between, "<!-- -- -->"}, "<!---->", "<!---->", nullptr},
    {{XMLPiece::Between, "<?xml version='1.0'?>"}, "<?p?>", "<?p?>", nullptr},
    // Writers that count in UTF-16 make such references.
    {{XMLPiece::Text, "&#xD83D;&#xDE00;"}, "&#x1F600;", noText, "&#xD83D;"},
    {{XMLPiece::Text, "&#xD83D;"}, "&#xFFFD;", noText, "&#xD83D;"},
    // Matters only to who asks for this text: the others can still be read.
    {{XMLPiece::Text, "&unknown;"}, noText, noText, "&unknown;"},
    {{XMLPiece::Text, "& ;"}, noText, noText, "& ;"},
    {{XMLPiece::Element, "<d a='&unknown;'> </d>"}, "<d a='\uE002'> </d>", "<d a='\uE002'> </d>", nullptr}};

/// What begins a document and is read by both in the same way.
inline const char* const starts[] = {"",    "<?xml version=\"1.0\"?>\n", "<!-- c -->\r\n", "<?p?>", "<!DOCTYPE a>",
                                     "\n\n"};

/// "line 3, column 7" of a place in the document, counted from 1 in characters.
inline std::string placeIn(const std::string& document, std::size_t offset) {
  std::size_t line = 1;
  std::size_t column = 1;
  for (std::size_t i = 0; i < offset; ++i) {
    const auto byte = static_cast<unsigned char>(document[i]);
    if (byte == '\n') {
      ++line;
      column = 1;
    } else if ((byte & 0xC0) != 0x80) {
      ++column;
    }
  }
  return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

/// A random document, as the reader gets it and as libxml2 does, with what is known of it from its making.
class RandomXMLDocument {
 public:
  struct Element {
    std::size_t offset;
    std::optional<std::size_t> textWithFault;  ///< The offset of the first text with an unresolved reference.
    std::string unresolved;                    ///< That reference.
  };

  RandomXMLDocument(XMLReader::Halves halves, bool withLaxPieces) : halves_(halves) {
    add(starts[below(std::size(starts))]);
    open("<a>", "</a>");
    for (Times content(0, sizeOfCase()); content.next();) {
      const std::size_t kind = below(withLaxPieces ? 10 : 8);
      if (kind == 7) {
        openAny();
      } else if (kind == 6 && open_.size() > 1) {
        close();
      } else if (kind >= 8) {
        add(laxPieces[below(std::size(laxPieces))]);
      } else {
        add(pieces[below(std::size(pieces))]);
      }
    }
    while (!open_.empty()) close();
    rootEnd = text.size();
    add(oneTextOf({"", "\n", "<!-- c --> ", "<?p?>"}));
  }

  std::string text;
  std::string strict;             ///< What libxml2 gets.
  std::vector<Element> elements;  ///< In the document's order.
  std::size_t rootEnd = 0;

 private:
  struct Open {
    std::size_t element;
    std::string end;
  };

  void add(const std::string& both) { add(both, both); }
  void add(const std::string& here, const std::string& there) {
    text += here;
    strict += there;
  }

  void add(const XMLPiece& piece) { add(piece, piece.text); }
  void add(const XMLPiece& piece, const char* there) {
    if (piece.kind == XMLPiece::Element) elements.push_back({text.size(), std::nullopt, {}});
    add(piece.text, there);
    if (piece.kind != XMLPiece::Text) textStart_ = text.size();
  }

  void add(const LaxXMLPiece& lax) {
    const char* const there = halves_ == XMLReader::Halves::Refused ? lax.strictRefused : lax.strict;
    Element& around = elements[open_.back().element];
    if (lax.unresolved && there == noText && !around.textWithFault) {
      around.textWithFault = textStart_;
      around.unresolved = lax.unresolved;
    }
    add(lax.piece, there);
  }

  void openAny() {
    static const char* const tags[][2] = {
        {"<a>", "</a>"}, {"<b c='1' d='2'>", "</b>"}, {"<title>", "</title>"}, {"<b>", "</b>"}};
    const auto& tag = tags[below(std::size(tags))];
    open(tag[0], tag[1]);
  }

  void open(const char* tag, const char* end) {
    elements.push_back({text.size(), std::nullopt, {}});
    open_.push_back({elements.size() - 1, end});
    add(tag);
    textStart_ = text.size();
  }

  void close() {
    add(open_.back().end);
    open_.pop_back();
    textStart_ = text.size();
  }

  XMLReader::Halves halves_;
  std::vector<Open> open_;
  std::size_t textStart_ = 0;  ///< Where the text began that a piece of text added now belongs to.
};

}  // namespace epg::test
