// The XML form of property lists, read where it stands as it was written.

#include <cstddef>
#include <cstring>
#include <utility>
#include <vector>

#include "plist/PropertyListForms.h"
#include "plist/PropertyListScalars.h"
#include "plist/SharedText.h"
#include "xml/UTF8.h"
#include "xml/XMLReferences.h"

namespace epg {

namespace {

/// Reads one value after another straight out of the text. The first thing that is not as expected ends the reading.
class FastReader {
 public:
  explicit FastReader(std::string_view text) : at_(text.data()), end_(text.data() + text.size()) {}

  std::optional<PropertyList> document() {
    if (!take(xmlPropertyListHeader)) return std::nullopt;
    std::optional<PropertyList> top = value(1);
    if (!top) return std::nullopt;
    skipWhiteSpace();
    if (!take("</plist>")) return std::nullopt;
    skipWhiteSpace();
    if (at_ != end_) return std::nullopt;
    return top;
  }

 private:
  // Room for what an entry of a store usually holds, so that it is asked for once.
  static constexpr std::size_t usualElements = 8;

  std::optional<PropertyList> value(int depth) {
    skipWhiteSpace();
    if (take("<string>")) {
      const auto text = textBefore("</string>");
      if (!text) return std::nullopt;
      return PropertyList(texts_.shared(*text));
    }
    if (depth > PropertyList::maximumDepth) return std::nullopt;
    if (take("<array>")) return array(depth);
    if (take("<dict>")) return dictionary(depth);
    return rareValue();
  }

  [[gnu::noinline]] std::optional<PropertyList> rareValue() {
    if (take("<array/>")) return PropertyList(PropertyList::Elements());
    if (take("<dict/>")) return PropertyList(PropertyListDictionary());
    if (take("<true/>")) return PropertyList::fromBoolean(true);
    if (take("<false/>")) return PropertyList::fromBoolean(false);
    static const struct {
      std::string_view start;
      std::string_view end;
      PropertyListScalar scalar;
    } scalars[] = {{"<integer>", "</integer>", PropertyListScalar::Integer},
                   {"<real>", "</real>", PropertyListScalar::Real},
                   {"<date>", "</date>", PropertyListScalar::Date},
                   {"<data>", "</data>", PropertyListScalar::Data}};
    for (const auto& each : scalars) {
      if (!take(each.start)) continue;
      const auto text = textBefore(each.end);
      return text ? propertyListFromText(each.scalar, *text) : std::nullopt;
    }
    return std::nullopt;
  }

  std::optional<PropertyList> array(int depth) {
    PropertyList::Array elements;
    elements.reserve(usualElements);
    for (;;) {
      skipWhiteSpace();
      if (take("</array>")) return PropertyList(std::move(elements));
      std::optional<PropertyList> element = value(depth + 1);
      if (!element) return std::nullopt;
      elements.push_back(std::move(*element));
    }
  }

  std::optional<PropertyList> dictionary(int depth) {
    std::vector<PropertyListDictionary::Entry> entries;
    entries.reserve(usualElements);
    for (;;) {
      skipWhiteSpace();
      if (take("</dict>")) return PropertyList(PropertyListDictionary(std::move(entries)));
      if (!take("<key>")) return std::nullopt;
      const auto name = textBefore("</key>");
      if (!name) return std::nullopt;
      SharedText key = texts_.shared(*name);
      std::optional<PropertyList> read = value(depth + 1);
      if (!read) return std::nullopt;
      entries.emplace_back(std::move(key), std::move(*read));
    }
  }

  bool take(std::string_view expected) {
    const bool stands = static_cast<std::size_t>(end_ - at_) >= expected.size() &&
                        std::memcmp(at_, expected.data(), expected.size()) == 0;
    if (stands) at_ += expected.size();
    return stands;
  }

  void skipWhiteSpace() {
    while (at_ != end_ && (*at_ == ' ' || *at_ == '\t' || *at_ == '\n')) ++at_;
  }

  /// The text from here to the tag, which has to be the next one. Lives until the next is asked for.
  std::optional<std::string_view> textBefore(std::string_view endTag) {
    const char* const start = at_;
    const void* const tag = std::memchr(at_, '<', static_cast<std::size_t>(end_ - at_));
    if (!tag) return std::nullopt;
    at_ = static_cast<const char*>(tag);
    const std::string_view raw(start, static_cast<std::size_t>(at_ - start));
    if (!take(endTag)) return std::nullopt;
    if (raw.find('&') == std::string_view::npos) return raw;
    resolved_.clear();
    if (!appendResolvedXML(resolved_, raw, XMLHalves::Replaced).empty()) return std::nullopt;
    return resolved_;
  }

  const char* at_;
  const char* end_;
  std::string resolved_;
  SharedTextPool texts_;
};

/// A carriage return may stand for a line feed, a zero byte for nothing that is allowed.
bool holdsOnlyWhatTheFastReaderTakes(std::string_view bytes) {
  return bytes.find('\r') == std::string_view::npos && bytes.find('\0') == std::string_view::npos &&
         lengthOfUTF8(bytes) == bytes.size();
}

}  // namespace

std::optional<PropertyList> parseFastXMLPropertyList(std::string_view bytes) {
  if (bytes.substr(0, xmlPropertyListHeader.size()) != xmlPropertyListHeader) return std::nullopt;
  if (!holdsOnlyWhatTheFastReaderTakes(bytes)) return std::nullopt;
  return FastReader(bytes).document();
}

}  // namespace epg
