// The writing of texts held against the plainest way of doing it.

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>

#include "export/ApostrophePass.h"
#include "tests/support/HostileText.h"
#include "tests/support/NaiveXMLText.h"
#include "tests/support/Property.h"
#include "xml/XMLText.h"

namespace epg::test {
namespace {

std::optional<std::string> escaped(const std::string& text, XMLContext context, Apostrophes apostrophes) {
  // One sink for all texts: a sanitizer takes its time over each new piece of a mebibyte.
  static std::string document;
  static StringSink sink(document);
  const bool isCarried = appendXMLText(sink, text, context, apostrophes);
  sink.flush();
  std::string made;
  made.swap(document);
  return isCarried ? std::optional(made) : std::nullopt;
}

std::optional<std::string> naivelyEscaped(const std::string& text, XMLContext context, Apostrophes apostrophes) {
  std::string document;
  if (!appendNaiveXMLText(document, text, context)) return std::nullopt;
  return apostrophes == Apostrophes::AsReferences ? stringByEscapingSpecialCharacters(document) : document;
}

void expectTheSame(const std::string& text) {
  tell("text", text);
  for (const XMLContext context : {XMLContext::Text, XMLContext::Attribute}) {
    for (const Apostrophes apostrophes : {Apostrophes::AsTheyAre, Apostrophes::AsReferences}) {
      HOLDS(escaped(text, context, apostrophes) == naivelyEscaped(text, context, apostrophes));
    }
  }
  const auto carried = escaped(text, XMLContext::Text, Apostrophes::AsTheyAre);
  if (isLiteralInXML(text)) HOLDS(escaped(text, XMLContext::Attribute, Apostrophes::AsReferences) == text);
  HOLDS(isCarriedByXML(text) == (carried && carriedByXML(text) == text));
  HOLDS(carriedByXML(text) == carriedByXML(naivelyReplaced(text)));
  HOLDS(isCarriedByXML(carriedByXML(text)));
}

TEST(XMLTextProperties, HostileTextsAreEscapedAsInTheNaiveWay) {
  expectForCases(3000, [] { expectTheSame(mostlyUTF8(5)); });
}

TEST(XMLTextProperties, AnyBytesAreEscapedOrRefusedAsInTheNaiveWay) {
  expectForCases(3000, [] { expectTheSame(anyBytes(sizeOfCase())); });
}

TEST(XMLTextProperties, EveryByteIsFoundAtEveryPlaceAmongPlainOnes) {
  for (int byte = 0; byte < 256; ++byte) {
    for (std::size_t length = 1; length <= 36; ++length) {
      for (std::size_t at = 0; at < length; ++at) {
        std::string text(length, 'x');
        text[at] = static_cast<char>(byte);
        for (const XMLContext context : {XMLContext::Text, XMLContext::Attribute}) {
          for (const Apostrophes apostrophes : {Apostrophes::AsTheyAre, Apostrophes::AsReferences}) {
            ASSERT_EQ(escaped(text, context, apostrophes), naivelyEscaped(text, context, apostrophes))
                << byte << " at " << at << " of " << length;
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace epg::test
