// The XML form of property lists, written.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <locale>
#include <sstream>
#include <unordered_set>
#include <utility>

#include "platform/CivilDate.h"
#include "plist/PropertyListFile.h"
#include "plist/PropertyListForms.h"
#include "xml/XMLText.h"

namespace epg {

const std::string_view xmlPropertyListHeader =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";

namespace {

/// The dictionary under the keys that XML can carry. Keys may become the same on the way; none of the entries may get
/// lost by that.
PropertyListDictionary withCarriedKeys(const PropertyListDictionary& entries) {
  std::vector<PropertyListDictionary::Entry> carried;
  std::unordered_set<std::string> newNames;
  for (const auto& [key, entry] : entries) {
    std::string name = carriedByXML(key);
    if (name != key) {
      while (entries.find(name) || newNames.count(name) != 0) name += replacementCharacter;
      newNames.insert(name);
    }
    carried.emplace_back(std::move(name), entry);
  }
  return PropertyListDictionary(std::move(carried));
}

class XMLWriter {
 public:
  explicit XMLWriter(ByteSink& document) : document_(document) {}

  void documentStart() { document_.append(xmlPropertyListHeader); }
  void documentEnd() { document_.append("</plist>\n"); }

  bool value(const PropertyList& list, int depth) {
    if (const SharedText* const text = list.sharedText()) {
      string(*text);
      return true;
    }
    const PropertyList::Elements* const elements = list.asArray();
    const PropertyListDictionary* const entries = list.asDictionary();
    if (!elements && !entries) return scalar(list);
    if (depth > PropertyList::maximumDepth) return false;
    return elements ? array(*elements, depth) : dictionary(*entries, depth);
  }

  /// Needs keys that XML can carry.
  bool dictionary(const std::vector<std::string_view>& keys, bool areLiteral, const PropertyListValues& valueOfKey,
                  int depth) {
    if (keys.empty()) {
      line("<dict/>\n");
      return true;
    }
    line("<dict>\n");
    ++level_;
    for (std::size_t i = 0; i < keys.size() && !document_.failed(); ++i) {
      if (!entry(keys[i], areLiteral, valueOfKey(i), depth)) return false;
    }
    --level_;
    line("</dict>\n");
    return true;
  }

 private:
  static constexpr std::string_view tabs = "\t\t\t\t\t\t\t\t";

  void indent() { appendIndented(tabs); }

  /// Appends a tag that stands behind all of `tabs`, with only as many of these as the level has.
  void appendIndented(std::string_view tabsAndTag) {
    auto missing = static_cast<std::size_t>(level_);
    for (; missing > tabs.size(); missing -= tabs.size()) document_.append(tabs);
    document_.append(tabsAndTag.substr(tabs.size() - missing));
  }

  /// By itself, so that what it needs is not on the stack once for each container around it.
  [[gnu::noinline]] bool scalar(const PropertyList& list) {
    switch (list.type()) {
      case PropertyList::Type::Integer:
        line("<integer>", (list.asInteger()->negative ? "-" : "") + std::to_string(list.asInteger()->magnitude),
             "</integer>\n");
        return true;
      case PropertyList::Type::Real:
        line("<real>", realText(*list.asReal()), "</real>\n");
        return true;
      case PropertyList::Type::Boolean:
        line(*list.asBoolean() ? "<true/>\n" : "<false/>\n");
        return true;
      case PropertyList::Type::Date:
        return date(*list.asDate());
      case PropertyList::Type::Data:
        data(*list.asData());
        return true;
      default:
        return false;  // Foreign.
    }
  }

  void line(std::string_view whole) {
    indent();
    document_.append(whole);
  }

  void line(std::string_view startTag, std::string_view content, std::string_view endTag) {
    line(startTag);
    document_.append(content);
    document_.append(endTag);
  }

  void string(std::string_view content) {
    appendIndented("\t\t\t\t\t\t\t\t<string>");
    text(content);
    document_.append("</string>\n");
  }

  /// What is no Unicode is replaced, as nothing else would ever be saved again for its sake.
  void text(std::string_view content) {
    appendXMLText(document_, content, XMLContext::Text, Apostrophes::AsTheyAre, Malformed::Replaced);
  }

  /// The shortest of the usual precisions that reads back as the same number.
  static std::string realText(double value) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value < 0 ? "-infinity" : "+infinity";
    std::string text;
    for (int precision = 15; precision <= 17; ++precision) {
      std::ostringstream stream;
      stream.imbue(std::locale::classic());
      stream.precision(precision);
      stream << value;
      text = stream.str();
      std::istringstream back(text);
      back.imbue(std::locale::classic());
      double read = 0;
      if (back >> read && read == value) break;  // The largest number, rounded up, is beyond what can be read.
    }
    return text;
  }

  bool date(Instant instant) {
    if (std::isnan(instant.secondsSinceReferenceDate)) return false;
    // The form has four digits for the year. The platform's distant past lies in the year 0 and is written as such.
    constexpr double firstSecond = -62167219200.0;  // 1 January of the year 0
    constexpr double lastSecond = 253402300799.0;   // 31 December of the year 9999
    const double seconds = std::min(std::max(std::floor(instant.unixTime()), firstSecond), lastSecond);
    const CivilDate civil = civilDateFromSecondsSince1970(static_cast<std::int64_t>(seconds));
    char text[40];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02dZ", static_cast<int>(civil.year), civil.month,
                  civil.day, civil.hour, civil.minute, civil.second);
    line("<date>", text, "</date>\n");
    return true;
  }

  void data(std::string_view bytes) {
    static const char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    constexpr std::size_t bytesPerLine = 51;  // 68 digits, as the platform breaks its lines
    line("<data>\n");
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
      if (i % bytesPerLine == 0) indent();
      const std::size_t left = bytes.size() - i;
      std::uint32_t group = std::uint32_t{static_cast<unsigned char>(bytes[i])} << 16;
      if (left > 1) group |= std::uint32_t{static_cast<unsigned char>(bytes[i + 1])} << 8;
      if (left > 2) group |= static_cast<unsigned char>(bytes[i + 2]);
      const char four[] = {digits[group >> 18], digits[group >> 12 & 0x3F], left > 1 ? digits[group >> 6 & 0x3F] : '=',
                           left > 2 ? digits[group & 0x3F] : '='};
      document_.append(std::string_view(four, sizeof four));
      if ((i + 3) % bytesPerLine == 0 || left <= 3) document_.append("\n");
    }
    line("</data>\n");
  }

  bool array(const PropertyList::Elements& elements, int depth) {
    if (elements.empty()) {
      line("<array/>\n");
      return true;
    }
    line("<array>\n");
    ++level_;
    for (const PropertyList& element : elements) {
      if (!value(element, depth + 1)) return false;
    }
    --level_;
    line("</array>\n");
    return true;
  }

  bool dictionary(const PropertyListDictionary& entries, int depth) {
    if (entries.empty()) {
      line("<dict/>\n");
      return true;
    }
    line("<dict>\n");
    ++level_;
    const auto allKeys = [&](bool (*are)(std::string_view)) {
      return std::all_of(entries.begin(), entries.end(), [are](const auto& one) { return are(one.first); });
    };
    const bool areLiteral = allKeys(isLiteralInXML);
    const bool areCarried = areLiteral || allKeys(isCarriedByXML);
    const PropertyListDictionary carried = areCarried ? entries : withCarriedKeys(entries);
    for (const auto& [key, content] : carried) {
      if (!entry(key, areLiteral, content, depth)) return false;
    }
    --level_;
    line("</dict>\n");
    return true;
  }

  bool entry(std::string_view key, bool isLiteral, const PropertyList& content, int depth) {
    appendIndented("\t\t\t\t\t\t\t\t<key>");
    if (isLiteral) {
      document_.append(key);
    } else {
      text(key);
    }
    document_.append("</key>\n");
    return value(content, depth + 1);
  }

  ByteSink& document_;
  int level_ = 0;
};

}  // namespace

bool writePropertyListXML(ByteSink& document, const PropertyList& value) {
  XMLWriter writer(document);
  writer.documentStart();
  if (!writer.value(value, 1)) return false;
  writer.documentEnd();
  return true;
}

bool writePropertyListXML(ByteSink& document, const std::vector<std::string_view>& keys,
                          const PropertyListValues& valueOfKey) {
  const bool areLiteral = std::all_of(keys.begin(), keys.end(), isLiteralInXML);
  if (!areLiteral && !std::all_of(keys.begin(), keys.end(), isCarriedByXML)) {
    // What becomes of such a key depends on all the others, and so may its place.
    std::vector<PropertyListDictionary::Entry> entries;
    entries.reserve(keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i) entries.emplace_back(keys[i], valueOfKey(i));
    return writePropertyListXML(document, PropertyList(PropertyListDictionary(std::move(entries))));
  }
  XMLWriter writer(document);
  writer.documentStart();
  if (!writer.dictionary(keys, areLiteral, valueOfKey, 1)) return false;
  writer.documentEnd();
  return true;
}

std::optional<std::string> propertyListXML(const PropertyList& value) {
  std::string text;
  StringSink sink(text);
  if (!writePropertyListXML(sink, value)) return std::nullopt;
  sink.flush();
  return text;
}

}  // namespace epg
