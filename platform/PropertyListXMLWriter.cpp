// The XML form of property lists, written.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <locale>
#include <set>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/CivilDate.h"
#include "platform/PropertyListFile.h"
#include "platform/XMLText.h"

namespace epg {

namespace {

const char* const header =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";

/// The dictionary under the keys that XML can carry. Keys may become the same on the way; none of the entries may get
/// lost by that.
PropertyListDictionary withCarriedKeys(const PropertyListDictionary& entries) {
  std::vector<PropertyListDictionary::Entry> carried;
  std::set<std::string> changed;
  for (const auto& [key, entry] : entries) {
    std::string name = carriedByXML(key);
    while (key != name && (entries.find(name) || changed.count(name) != 0)) name += replacementCharacter;
    if (key != name) changed.insert(name);
    carried.emplace_back(name, entry);
  }
  return PropertyListDictionary(std::move(carried));
}

class XMLWriter {
 public:
  bool value(const PropertyList& list, int depth) {
    switch (list.type()) {
      case PropertyList::Type::String:
        return textElement("string", *list.asString());
      case PropertyList::Type::Integer:
        line("<integer>" + std::string(list.asInteger()->negative ? "-" : "") +
             std::to_string(list.asInteger()->magnitude) + "</integer>");
        return true;
      case PropertyList::Type::Real:
        line("<real>" + realText(*list.asReal()) + "</real>");
        return true;
      case PropertyList::Type::Boolean:
        line(*list.asBoolean() ? "<true/>" : "<false/>");
        return true;
      case PropertyList::Type::Date:
        return date(*list.asDate());
      case PropertyList::Type::Data:
        data(*list.asData());
        return true;
      case PropertyList::Type::Array:
        return depth <= PropertyList::maximumDepth && array(*list.asArray(), depth);
      case PropertyList::Type::Dictionary:
        return depth <= PropertyList::maximumDepth && dictionary(*list.asDictionary(), depth);
      case PropertyList::Type::Foreign:
        return false;
    }
    return false;
  }

  std::string document;

 private:
  void indent() { document.append(static_cast<std::size_t>(level_), '\t'); }

  void line(const std::string& text) {
    indent();
    document += text;
    document += '\n';
  }

  bool textElement(const char* name, std::string_view text) {
    indent();
    document += '<';
    document += name;
    document += '>';
    if (!appendXMLText(document, text, XMLContext::Text)) return false;
    document += "</";
    document += name;
    document += ">\n";
    return true;
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
    line("<date>" + std::string(text) + "</date>");
    return true;
  }

  void data(std::string_view bytes) {
    static const char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    constexpr std::size_t bytesPerLine = 51;  // 68 digits, as the platform breaks its lines
    line("<data>");
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
      if (i % bytesPerLine == 0) indent();
      const std::size_t left = bytes.size() - i;
      std::uint32_t group = std::uint32_t{static_cast<unsigned char>(bytes[i])} << 16;
      if (left > 1) group |= std::uint32_t{static_cast<unsigned char>(bytes[i + 1])} << 8;
      if (left > 2) group |= static_cast<unsigned char>(bytes[i + 2]);
      document += digits[group >> 18];
      document += digits[group >> 12 & 0x3F];
      document += left > 1 ? digits[group >> 6 & 0x3F] : '=';
      document += left > 2 ? digits[group & 0x3F] : '=';
      if ((i + 3) % bytesPerLine == 0 || left <= 3) document += '\n';
    }
    line("</data>");
  }

  bool array(const PropertyList::Elements& elements, int depth) {
    if (elements.empty()) {
      line("<array/>");
      return true;
    }
    line("<array>");
    ++level_;
    for (const PropertyList& element : elements) {
      if (!value(element, depth + 1)) return false;
    }
    --level_;
    line("</array>");
    return true;
  }

  bool dictionary(const PropertyListDictionary& entries, int depth) {
    if (entries.empty()) {
      line("<dict/>");
      return true;
    }
    line("<dict>");
    ++level_;
    const bool plain =
        std::all_of(entries.begin(), entries.end(), [](const auto& entry) { return isCarriedByXML(entry.first); });
    if (!(plain ? contents(entries, depth) : contents(withCarriedKeys(entries), depth))) return false;
    --level_;
    line("</dict>");
    return true;
  }

  bool contents(const PropertyListDictionary& entries, int depth) {
    return std::all_of(entries.begin(), entries.end(), [&](const auto& entry) {
      return textElement("key", entry.first) && value(entry.second, depth + 1);
    });
  }

  int level_ = 0;
};

}  // namespace

std::optional<std::string> propertyListXML(const PropertyList& value) {
  XMLWriter writer;
  writer.document = header;
  if (!writer.value(value, 1)) return std::nullopt;
  writer.document += "</plist>\n";
  return std::move(writer.document);
}

}  // namespace epg
