// The XML form of property lists, read.

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <locale>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/CivilDate.h"
#include "platform/PropertyListForms.h"
#include "platform/SharedText.h"
#include "platform/XMLReader.h"

namespace epg {

namespace {

std::string_view trimmed(std::string_view text) {
  const char* const white = " \t\r\n";
  const std::size_t start = text.find_first_not_of(white);
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(white) - start + 1);
}

std::optional<PropertyList> integerFromText(std::string_view text) {
  std::size_t at = 0;
  const bool negative = !text.empty() && text[0] == '-';
  if (!text.empty() && (text[0] == '-' || text[0] == '+')) ++at;
  const bool hexadecimal = text.size() > at + 2 && text[at] == '0' && (text[at + 1] == 'x' || text[at + 1] == 'X');
  if (hexadecimal) at += 2;
  if (at == text.size()) return std::nullopt;
  const std::uint64_t base = hexadecimal ? 16 : 10;
  std::uint64_t magnitude = 0;
  for (; at < text.size(); ++at) {
    const auto c = static_cast<unsigned char>(text[at]);
    std::uint64_t digit = 0;
    if (std::isdigit(c)) {
      digit = static_cast<std::uint64_t>(c - '0');
    } else if (hexadecimal && std::isxdigit(c)) {
      digit = 10 + static_cast<std::uint64_t>(std::tolower(c) - 'a');
    } else {
      return std::nullopt;
    }
    if (magnitude > (std::numeric_limits<std::uint64_t>::max() - digit) / base) return std::nullopt;
    magnitude = magnitude * base + digit;
  }
  constexpr std::uint64_t lowest = std::uint64_t{1} << 63;
  if (!negative) return PropertyList::fromUnsigned(magnitude);
  if (magnitude > lowest) return std::nullopt;
  return PropertyList::fromInteger(static_cast<std::int64_t>(0 - magnitude));
}

/// Whether the text is a number with a point or an exponent or neither; standard libraries differ in what they take
/// for one, and in how they say that it is too small.
bool isDecimalNumber(const std::string& text) {
  std::size_t at = 0;
  const auto skipSign = [&] {
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
  };
  const auto skipDigits = [&] {
    const std::size_t start = at;
    while (at < text.size() && std::isdigit(static_cast<unsigned char>(text[at]))) ++at;
    return at - start;
  };
  skipSign();
  std::size_t digits = skipDigits();
  if (at < text.size() && text[at] == '.') {
    ++at;
    digits += skipDigits();
  }
  if (digits == 0) return false;
  if (at < text.size() && text[at] == 'e') {
    ++at;
    skipSign();
    if (skipDigits() == 0) return false;
  }
  return at == text.size();
}

std::optional<PropertyList> realFromText(std::string_view text) {
  std::string lower;
  for (const char c : text) lower += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  const double infinity = std::numeric_limits<double>::infinity();
  if (lower == "nan") return PropertyList::fromReal(std::numeric_limits<double>::quiet_NaN());
  if (lower == "inf" || lower == "infinity" || lower == "+infinity" || lower == "+inf") {
    return PropertyList::fromReal(infinity);
  }
  if (lower == "-inf" || lower == "-infinity") return PropertyList::fromReal(-infinity);
  if (!isDecimalNumber(lower)) return std::nullopt;
  std::istringstream stream(lower);
  stream.imbue(std::locale::classic());
  double value = 0;
  stream >> value;
  // Too large or too small a number is one all the same: the nearest that there is.
  if (std::fabs(value) == std::numeric_limits<double>::max() && stream.fail()) value = std::copysign(infinity, value);
  return PropertyList::fromReal(value);
}

/// "2012-03-04T18:00:00Z", as the platform writes it.
std::optional<PropertyList> dateFromText(std::string_view text) {
  const char* const pattern = "dddd-dd-ddTdd:dd:ddZ";
  if (text.size() != std::strlen(pattern)) return std::nullopt;
  int fields[6] = {};
  int field = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (pattern[i] == 'd') {
      if (!std::isdigit(static_cast<unsigned char>(text[i]))) return std::nullopt;
      fields[field] = fields[field] * 10 + (text[i] - '0');
    } else {
      if (text[i] != pattern[i]) return std::nullopt;
      ++field;
    }
  }
  CivilDate date;
  date.year = fields[0];
  date.month = fields[1];
  date.day = fields[2];
  date.hour = fields[3];
  date.minute = fields[4];
  date.second = fields[5];
  if (!isValid(date)) return std::nullopt;
  return PropertyList::fromDate(Instant::fromUnixTime(static_cast<double>(secondsSince1970(date))));
}

int base64Digit(char c) {
  if (c >= 'A' && c <= 'Z') return c - 'A';
  if (c >= 'a' && c <= 'z') return c - 'a' + 26;
  if (c >= '0' && c <= '9') return c - '0' + 52;
  if (c == '+') return 62;
  return c == '/' ? 63 : -1;
}

std::optional<PropertyList> dataFromText(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3);
  std::uint32_t group = 0;
  int digits = 0;
  int padding = 0;
  for (const char c : text) {
    if (c == ' ' || c == '\t' || c == '\r' || c == '\n') continue;
    if (c == '=') {
      ++padding;
      continue;
    }
    const int digit = base64Digit(c);
    if (digit < 0 || padding > 0) return std::nullopt;
    group = group << 6 | static_cast<std::uint32_t>(digit);
    if (++digits == 4) {
      bytes += static_cast<char>(group >> 16 & 0xFF);
      bytes += static_cast<char>(group >> 8 & 0xFF);
      bytes += static_cast<char>(group & 0xFF);
      group = 0;
      digits = 0;
    }
  }
  if (digits == 1 || padding > 2 || (padding > 0 && digits + padding != 4)) return std::nullopt;
  if (digits == 2) bytes += static_cast<char>(group >> 4 & 0xFF);
  if (digits == 3) {
    bytes += static_cast<char>(group >> 10 & 0xFF);
    bytes += static_cast<char>(group >> 2 & 0xFF);
  }
  return PropertyList::fromData(std::move(bytes));
}

enum class Kind { Unknown, String, Integer, Real, True, False, Date, Data, Array, Dictionary, Key };

Kind kindOf(pugi::xml_node element) {
  static const struct {
    const char* name;
    Kind kind;
  } kinds[] = {{"string", Kind::String},   {"key", Kind::Key},   {"dict", Kind::Dictionary}, {"array", Kind::Array},
               {"integer", Kind::Integer}, {"true", Kind::True}, {"false", Kind::False},     {"real", Kind::Real},
               {"date", Kind::Date},       {"data", Kind::Data}};
  for (const auto& each : kinds) {
    if (std::strcmp(element.name(), each.name) == 0) return each.kind;
  }
  return Kind::Unknown;
}

bool isElement(pugi::xml_node node) { return node.type() == pugi::node_element; }

/// Reads one value after another out of a parsed document; the first problem ends the reading.
class XMLValueReader {
 public:
  XMLValueReader(const XMLReader& document, std::string* problem) : document_(document), problem_(problem) {}

  std::optional<PropertyList> value(pugi::xml_node element, int depth) {
    const Kind kind = kindOf(element);
    if (kind == Kind::Array || kind == Kind::Dictionary) {
      if (depth > PropertyList::maximumDepth) return failure(element, "nested too deep");
      if (!XMLReader::holdsNoText(element)) return failure(element, "text between the values of a container");
      return kind == Kind::Array ? array(element, depth) : dictionary(element, depth);
    }
    const char* const name = element.name();
    if (kind == Kind::Unknown || kind == Kind::Key) {
      return failure(element, "<" + std::string(name) + "> is no property-list value");
    }
    const auto text = textOf(element);
    if (!text) return std::nullopt;
    std::optional<PropertyList> read = scalar(kind, *text);
    if (!read) {
      const bool isBoolean = kind == Kind::True || kind == Kind::False;
      return failure(element,
                     isBoolean ? "text inside <" + std::string(name) + ">" : "the content is no " + std::string(name));
    }
    return read;
  }

  std::optional<PropertyList> failure(pugi::xml_node node, const std::string& what) {
    if (problem_) *problem_ = document_.place(node) + ": " + what;
    return std::nullopt;
  }

 private:
  /// The text of an element that must hold nothing else. Lives until the next is asked for.
  std::optional<std::string_view> textOf(pugi::xml_node element) {
    if (element.find_child(isElement)) {
      failure(element, "an element inside <" + std::string(element.name()) + ">");
      return std::nullopt;
    }
    return document_.text(element, &buffer_, problem_);
  }

  std::optional<PropertyList> scalar(Kind kind, std::string_view text) {
    switch (kind) {
      case Kind::String:
        return PropertyList(texts_.shared(text));
      case Kind::True:
      case Kind::False:
        if (!trimmed(text).empty()) return std::nullopt;
        return PropertyList::fromBoolean(kind == Kind::True);
      case Kind::Integer:
        return integerFromText(trimmed(text));
      case Kind::Real:
        return realFromText(trimmed(text));
      case Kind::Date:
        return dateFromText(trimmed(text));
      default:
        return dataFromText(text);
    }
  }

  std::optional<PropertyList> array(pugi::xml_node element, int depth) {
    PropertyList::Array elements;
    for (const pugi::xml_node child : element.children()) {
      if (!isElement(child)) continue;
      std::optional<PropertyList> read = value(child, depth + 1);
      if (!read) return std::nullopt;
      elements.push_back(std::move(*read));
    }
    return PropertyList(std::move(elements));
  }

  std::optional<PropertyList> dictionary(pugi::xml_node element, int depth) {
    std::vector<PropertyListDictionary::Entry> entries;
    std::optional<SharedText> key;
    for (const pugi::xml_node child : element.children()) {
      if (!isElement(child)) continue;
      const bool isKey = kindOf(child) == Kind::Key;
      if (isKey != !key) return failure(child, isKey ? "a key without a value" : "a value without a key");
      if (isKey) {
        const auto text = textOf(child);
        if (!text) return std::nullopt;
        key = texts_.shared(*text);
        continue;
      }
      std::optional<PropertyList> read = value(child, depth + 1);
      if (!read) return std::nullopt;
      entries.emplace_back(std::move(*key), std::move(*read));
      key.reset();
    }
    if (key) return failure(element, "a key without a value");
    return PropertyList(PropertyListDictionary(std::move(entries)));
  }

  const XMLReader& document_;
  std::string* problem_;
  std::string buffer_;
  SharedTextPool texts_;
};

}  // namespace

std::optional<PropertyList> parseXMLPropertyList(std::string bytes, std::string* problem) {
  // A store would be lost for one character that somebody's tool wrote by halves.
  const std::unique_ptr<XMLReader> document = XMLReader::parse(std::move(bytes), problem, XMLReader::Halves::Replaced);
  if (!document) return std::nullopt;
  XMLValueReader reader(*document, problem);
  const pugi::xml_node root = document->root();
  if (std::strcmp(root.name(), "plist") != 0) return reader.value(root, 1);

  if (!XMLReader::holdsNoText(root)) return reader.failure(root, "text between the values of a container");
  pugi::xml_node top;
  for (const pugi::xml_node child : root.children()) {
    if (!isElement(child)) continue;
    if (top) return reader.failure(child, "a second value in <plist>");
    top = child;
  }
  if (!top) return reader.failure(root, "no value in <plist>");
  return reader.value(top, 1);
}

}  // namespace epg
