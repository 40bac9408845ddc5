#include "tests/support/NaivePropertyListXML.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iomanip>
#include <limits>
#include <locale>
#include <map>
#include <set>
#include <sstream>
#include <string_view>

#include "platform/CivilDate.h"
#include "tests/support/NaiveXMLText.h"

namespace epg::test {

namespace {

class Writer {
 public:
  bool value(const PropertyList& list, int depth) {
    switch (list.type()) {
      case PropertyList::Type::String:
        return text("string", std::string(*list.asString()));
      case PropertyList::Type::Integer:
        return line((list.asInteger()->negative ? "<integer>-" : "<integer>") +
                    std::to_string(list.asInteger()->magnitude) + "</integer>");
      case PropertyList::Type::Real:
        return line("<real>" + real(*list.asReal()) + "</real>");
      case PropertyList::Type::Boolean:
        return line(*list.asBoolean() ? "<true/>" : "<false/>");
      case PropertyList::Type::Date:
        return date(*list.asDate());
      case PropertyList::Type::Data:
        return data(std::string(*list.asData()));
      case PropertyList::Type::Array:
        return array(list, depth);
      case PropertyList::Type::Dictionary:
        return dictionary(*list.asDictionary(), depth);
      case PropertyList::Type::Foreign:
        return false;
    }
    return false;
  }

  std::string document;

 private:
  bool line(const std::string& content) {
    document += std::string(static_cast<std::size_t>(level_), '\t') + content + "\n";
    return true;
  }

  bool text(const std::string& name, const std::string& content) {
    std::string escaped;
    appendNaiveXMLText(escaped, naivelyReplaced(content), XMLContext::Text);
    return line("<" + name + ">" + escaped + "</" + name + ">");
  }

  static std::string real(double value) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value < 0 ? "-infinity" : "+infinity";
    std::string written;
    for (int precision = 15; precision <= 17; ++precision) {
      std::ostringstream stream;
      stream.imbue(std::locale::classic());
      stream << std::setprecision(precision) << value;
      written = stream.str();
      std::istringstream back(written);
      back.imbue(std::locale::classic());
      double read = 0;
      if (back >> read && read == value) break;
    }
    return written;
  }

  bool date(Instant instant) {
    if (std::isnan(instant.secondsSinceReferenceDate)) return false;
    const double first = -62167219200.0;
    const double last = 253402300799.0;
    const double seconds = std::min(std::max(std::floor(instant.unixTime()), first), last);
    const CivilDate civil = civilDateFromSecondsSince1970(static_cast<std::int64_t>(seconds));
    std::ostringstream written;
    written.imbue(std::locale::classic());
    written << std::setfill('0') << std::setw(4) << civil.year << '-' << std::setw(2) << civil.month << '-'
            << std::setw(2) << civil.day << 'T' << std::setw(2) << civil.hour << ':' << std::setw(2) << civil.minute
            << ':' << std::setw(2) << civil.second << 'Z';
    return line("<date>" + written.str() + "</date>");
  }

  bool data(const std::string& bytes) {
    const std::string digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string encoded;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
      std::uint32_t group = 0;
      for (std::size_t j = i; j < i + 3; ++j) {
        group = group << 8 | (j < bytes.size() ? static_cast<unsigned char>(bytes[j]) : 0);
      }
      for (int shift = 18; shift >= 0; shift -= 6) encoded += digits[group >> shift & 0x3F];
    }
    const std::size_t missing = (3 - bytes.size() % 3) % 3;
    encoded.replace(encoded.size() - missing, missing, missing, '=');
    line("<data>");
    for (std::size_t i = 0; i < encoded.size(); i += 68) line(encoded.substr(i, 68));
    return line("</data>");
  }

  bool array(const PropertyList& list, int depth) {
    if (depth > PropertyList::maximumDepth) return false;
    const auto& elements = *list.asArray();
    if (elements.begin() == elements.end()) return line("<array/>");
    line("<array>");
    ++level_;
    for (const PropertyList& element : elements) {
      if (!value(element, depth + 1)) return false;
    }
    --level_;
    return line("</array>");
  }

  bool dictionary(const PropertyListDictionary& entries, int depth) {
    if (depth > PropertyList::maximumDepth) return false;
    std::set<std::string> taken;
    for (const auto& [key, entry] : entries) taken.insert(std::string(std::string_view(key)));
    std::map<std::string, PropertyList> carried;
    for (const auto& [key, entry] : entries) {
      const std::string given{std::string_view(key)};
      std::string name = carriedByXML(naivelyReplaced(given));
      while (name != given && taken.count(name) != 0) name += replacementCharacter;
      taken.insert(name);
      carried.emplace(name, entry);
    }
    if (carried.empty()) return line("<dict/>");
    line("<dict>");
    ++level_;
    for (const auto& [key, entry] : carried) {
      if (!text("key", key) || !value(entry, depth + 1)) return false;
    }
    --level_;
    return line("</dict>");
  }

  int level_ = 0;
};

}  // namespace

std::optional<std::string> naivePropertyListXML(const PropertyList& value) {
  Writer writer;
  if (!writer.value(value, 1)) return std::nullopt;
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
         "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
         "<plist version=\"1.0\">\n" +
         writer.document + "</plist>\n";
}

}  // namespace epg::test
