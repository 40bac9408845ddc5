// The old-style form of property lists, read: { key = value; … }, ( value, … ), <hexadecimal>, "text" and text.
//
// Taken is what either platform's reader takes, where the two agree on what it means: the form as OpenStep had it, with
// comments and with a dictionary that has no braces (the form of .strings files), and GNUstep's typed values.

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

#include <utf8.h>

#include "plist/PropertyListForms.h"
#include "plist/PropertyListScalars.h"
#include "plist/SharedText.h"
#include "xml/Surrogates.h"
#include "xml/UTF8.h"
#include "xml/XMLEncoding.h"
#include "xml/XMLText.h"

namespace epg {

namespace {

bool isWhite(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool isOctalDigit(char c) { return c >= '0' && c <= '7'; }
bool isHexadecimalDigit(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }

unsigned digitValue(char c) {
  const auto byte = static_cast<unsigned char>(c);
  if (std::isdigit(byte)) return static_cast<unsigned>(c - '0');
  return 10 + static_cast<unsigned>(std::tolower(byte) - 'a');
}

/// Whether a text may hold the character without quotes.
bool isBare(char c) {
  constexpr std::string_view others = "\"'(),;<=>\\`{}";
  return c > ' ' && c < '\x7F' && others.find(c) == std::string_view::npos;
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isWhite(text.front())) text.remove_prefix(1);
  while (!text.empty() && isWhite(text.back())) text.remove_suffix(1);
  return text;
}

/// The value of "<*I5>" without its brackets and asterisk; nothing when it is none.
std::optional<PropertyList> typedValue(std::string_view text) {
  if (text.empty()) return std::nullopt;
  const char type = text.front();
  text = trimmed(text.substr(1));
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"') text = text.substr(1, text.size() - 2);
  if (type == 'I') return propertyListFromText(PropertyListScalar::Integer, text);
  if (type == 'R') return propertyListFromText(PropertyListScalar::Real, text);
  if (type == 'D') return propertyListFromDescriptionOfDate(text);
  if (type == 'B' && (text == "Y" || text == "N")) return PropertyList::fromBoolean(text == "Y");
  return std::nullopt;
}

/// Text whose characters may be given by the numbers of their UTF-16 units.
class UnescapedText {
 public:
  void append(std::string_view utf8) {
    if (utf8.empty()) return;
    endCharacter();
    text_ += utf8;
  }
  void appendUnit(std::uint32_t unit) {
    if (high_ != 0 && isLowSurrogate(unit)) {
      utf8::append(characterOfSurrogates(std::exchange(high_, 0), unit), std::back_inserter(text_));
      return;
    }
    endCharacter();
    if (isHighSurrogate(unit)) {
      high_ = unit;
    } else if (isLowSurrogate(unit)) {
      text_ += replacementCharacter;
    } else {
      utf8::append(unit, std::back_inserter(text_));
    }
  }
  const std::string& finished() {
    endCharacter();
    return text_;
  }

 private:
  /// A store would be lost for one character that somebody's tool wrote by halves.
  void endCharacter() {
    if (std::exchange(high_, 0) != 0) text_ += replacementCharacter;
  }

  std::string text_;
  std::uint32_t high_ = 0;
};

/// Reads one value after another; the first problem ends the reading.
class OldStyleReader {
 public:
  OldStyleReader(std::string_view text, std::string* problem) : text_(text), problem_(problem) {}

  std::optional<PropertyList> document() {
    if (!skipSpace()) return std::nullopt;
    std::optional<PropertyList> read = isAtText() ? textOrDictionaryWithoutBraces() : value(1);
    if (!read || !skipSpace()) return std::nullopt;
    if (at_ < text_.size()) return failure(at_, "something after the end of the property list");
    return read;
  }

  [[gnu::noinline]] std::optional<PropertyList> failure(std::size_t at, const char* what) {
    if (problem_) *problem_ = placeOf(at) + ": " + what;
    return std::nullopt;
  }

 private:
  /// Space has been skipped.
  std::optional<PropertyList> value(int depth) {
    const std::size_t start = at_;
    const char first = current();
    if (first == '{' || first == '(') {
      // safeguard: the limit on depth of the old style
      if (depth > PropertyList::maximumDepth) return failure(start, "nested too deep");
      ++at_;
      return first == '{' ? dictionary(depth) : array(depth);
    }
    if (first == '<') return dataOrTypedValue();
    const std::optional<SharedText> read = text();
    return read ? std::optional(PropertyList(*read)) : std::nullopt;
  }

  /// Behind its brace.
  std::optional<PropertyList> dictionary(int depth) {
    std::vector<PropertyListDictionary::Entry> entries;
    for (;;) {
      if (!skipSpace()) return std::nullopt;
      if (takes('}')) return PropertyList(PropertyListDictionary(std::move(entries)));
      if (!entry(entries, depth)) return std::nullopt;
      if (!skipSpace()) return std::nullopt;
      if (!takes(';') && current() != '}') return failure(at_, "';' or '}' is missing");
    }
  }

  bool entry(std::vector<PropertyListDictionary::Entry>& entries, int depth) {
    std::optional<SharedText> key = text();
    if (!key || !skipSpace()) return false;
    if (!takes('=')) {
      failure(at_, "'=' is missing");
      return false;
    }
    if (!skipSpace()) return false;
    std::optional<PropertyList> read = value(depth + 1);
    if (!read) return false;
    entries.emplace_back(std::move(*key), std::move(*read));
    return true;
  }

  /// Behind its parenthesis.
  std::optional<PropertyList> array(int depth) {
    PropertyList::Array elements;
    for (;;) {
      if (!skipSpace()) return std::nullopt;
      if (takes(')')) return PropertyList(std::move(elements));
      std::optional<PropertyList> read = value(depth + 1);
      if (!read) return std::nullopt;
      elements.push_back(std::move(*read));
      if (!skipSpace()) return std::nullopt;
      if (!takes(',') && current() != ')') return failure(at_, "',' or ')' is missing");
    }
  }

  /// The whole of a document that begins with a text.
  std::optional<PropertyList> textOrDictionaryWithoutBraces() {
    const std::size_t start = at_;
    const std::optional<SharedText> first = text();
    if (!first || !skipSpace()) return std::nullopt;
    if (at_ == text_.size()) return PropertyList(*first);
    at_ = start;
    std::vector<PropertyListDictionary::Entry> entries;
    while (at_ < text_.size()) {
      if (!entry(entries, 1) || !skipSpace()) return std::nullopt;
      if (!takes(';')) return failure(at_, "';' is missing");
      if (!skipSpace()) return std::nullopt;
    }
    return PropertyList(PropertyListDictionary(std::move(entries)));
  }

  bool isAtText() const { return current() == '"' || current() == '\'' || isBare(current()); }

  std::optional<SharedText> text() {
    if (current() == '"' || current() == '\'') return quotedText();
    const std::size_t start = at_;
    while (isBare(current())) ++at_;
    if (at_ > start) return texts_.shared(text_.substr(start, at_ - start));
    failure(at_, at_ == text_.size() ? "the file ends too early" : "neither a value nor a key begins here");
    return std::nullopt;
  }

  [[gnu::noinline]] std::optional<SharedText> quotedText() {
    const std::size_t start = at_;
    const char quote = text_[at_++];
    const char ends[] = {quote, '\\', '\0'};
    UnescapedText unescaped;
    for (;;) {
      const std::size_t end = text_.find_first_of(ends, at_);
      if (end == std::string_view::npos) {
        failure(start, "the text has no end");
        return std::nullopt;
      }
      unescaped.append(text_.substr(at_, end - at_));
      at_ = end + 1;
      if (text_[end] == quote) return texts_.shared(unescaped.finished());
      takeEscaped(unescaped);
    }
  }

  /// What stands behind a backslash. An escape that has no meaning is the character itself.
  void takeEscaped(UnescapedText& unescaped) {
    static constexpr char controls[] = {'a', '\a', 'b', '\b', 'f', '\f', 'n', '\n', 'r', '\r', 't', '\t', 'v', '\v'};
    if (at_ == text_.size()) return;
    if (isOctalDigit(current())) {
      unescaped.appendUnit(number(3, 8, isOctalDigit));
      return;
    }
    const bool isNumbered =
        (current() == 'U' || current() == 'u') && at_ + 1 < text_.size() && isHexadecimalDigit(text_[at_ + 1]);
    if (isNumbered) {
      ++at_;
      unescaped.appendUnit(number(4, 16, isHexadecimalDigit));
      return;
    }
    for (std::size_t i = 0; i < sizeof controls; i += 2) {
      if (controls[i] == current()) {
        ++at_;
        unescaped.appendUnit(static_cast<unsigned char>(controls[i + 1]));
        return;
      }
    }
    std::size_t length = 1;
    while (at_ + length < text_.size() && (static_cast<unsigned char>(text_[at_ + length]) & 0xC0) == 0x80) ++length;
    unescaped.append(text_.substr(at_, length));
    at_ += length;
  }

  /// Of as many digits as there are, up to a number of them.
  std::uint32_t number(std::size_t mostDigits, std::uint32_t base, bool (*isDigit)(char)) {
    std::uint32_t result = 0;
    for (std::size_t i = 0; i < mostDigits && isDigit(current()); ++i)
      result = result * base + digitValue(text_[at_++]);
    return result;
  }

  [[gnu::noinline]] std::optional<PropertyList> dataOrTypedValue() {
    const std::size_t start = at_;
    const std::size_t end = text_.find('>', at_);
    if (end == std::string_view::npos) return failure(start, "'>' is missing");
    const std::string_view content = text_.substr(start + 1, end - start - 1);
    at_ = end + 1;
    std::optional<PropertyList> read;
    if (!content.empty() && content.front() == '*') {
      read = typedValue(content.substr(1));
    } else if (content.size() >= 2 && content.front() == '[' && content.back() == ']') {
      read = propertyListFromText(PropertyListScalar::Data, content.substr(1, content.size() - 2));
    } else {
      read = dataFromHexadecimal(content);
    }
    return read ? read : failure(start, "no value between '<' and '>'");
  }

  static std::optional<PropertyList> dataFromHexadecimal(std::string_view digits) {
    std::string bytes;
    std::optional<unsigned> first;
    for (const char c : digits) {
      if (isWhite(c)) continue;
      if (!isHexadecimalDigit(c)) return std::nullopt;
      if (first) {
        bytes += static_cast<char>(*first << 4 | digitValue(c));
        first.reset();
      } else {
        first = digitValue(c);
      }
    }
    if (first) return std::nullopt;
    return PropertyList::fromData(bytes);
  }

  /// Behind white space and comments; false when a comment has no end.
  bool skipSpace() {
    for (;;) {
      while (isWhite(current())) ++at_;
      const std::string_view start = text_.substr(at_, 2);
      if (start == "//") {
        at_ = std::min(text_.find_first_of("\n\r", at_), text_.size());
      } else if (start == "/*") {
        const std::size_t end = text_.find("*/", at_ + 2);
        if (end == std::string_view::npos) {
          failure(at_, "the comment has no end");
          return false;
        }
        at_ = end + 2;
      } else {
        return true;
      }
    }
  }

  /// NUL, which stands nowhere but in texts, at the end.
  char current() const { return at_ < text_.size() ? text_[at_] : '\0'; }

  bool takes(char wanted) {
    if (current() != wanted) return false;
    ++at_;
    return true;
  }

  std::string placeOf(std::size_t at) const {
    const std::string_view before = text_.substr(0, at);
    const auto lines = std::count(before.begin(), before.end(), '\n');
    const std::string_view line = before.substr(before.find_last_of('\n') + 1);
    const auto characters =
        std::count_if(line.begin(), line.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
    return "line " + std::to_string(lines + 1) + ", column " + std::to_string(characters + 1);
  }

  std::string_view text_;
  std::string* problem_;
  std::size_t at_ = 0;
  SharedTextPool texts_;
};

/// In which units a text file is, by its mark or by the zeros that ASCII has in UTF-16.
struct TextUnits {
  std::size_t markLength;
  bool isUTF16;
  bool isBigEndian;
};

TextUnits unitsOf(std::string_view bytes) {
  const std::string_view two = bytes.substr(0, 2);
  if (two == "\xFE\xFF") return {2, true, true};
  if (two == "\xFF\xFE") return {2, true, false};
  if (bytes.substr(0, 3) == "\xEF\xBB\xBF") return {3, false, false};
  if (two.size() == 2 && (two[0] == '\0') != (two[1] == '\0')) return {0, true, two[0] == '\0'};
  return {0, false, false};
}

}  // namespace

bool isOldStylePropertyList(std::string_view bytes) {
  const TextUnits units = unitsOf(bytes);
  const std::size_t width = units.isUTF16 ? 2 : 1;
  std::array<char, 2> first{};
  std::size_t found = 0;
  for (std::size_t at = units.markLength + (units.isBigEndian ? 1 : 0); at < bytes.size() && found < 2; at += width) {
    if (found > 0 || !isWhite(bytes[at])) first[found++] = bytes[at];
  }
  if (found == 0) return false;
  // A document of XML may begin with any element. Data that begins with a letter is no dictionary anyway.
  if (first[0] == '<') return std::string_view("0123456789*[ >").find(first[1]) != std::string_view::npos;
  return first[0] == '{' || first[0] == '(' || first[0] == '"' || first[0] == '\'' || isBare(first[0]);
}

std::optional<PropertyList> parseOldStylePropertyList(const std::string& bytes, std::string* problem) {
  const TextUnits units = unitsOf(bytes);
  std::string converted;
  std::string_view text = std::string_view(bytes).substr(units.markLength);
  if (units.isUTF16) {
    std::string reason;
    std::optional<std::string> utf8 = utf8FromUTF16(bytes, units.markLength, units.isBigEndian, &reason);
    if (!utf8) {
      if (problem) *problem = reason;
      return std::nullopt;
    }
    converted = std::move(*utf8);
    text = converted;
  }
  OldStyleReader reader(text, problem);
  const std::size_t good = lengthOfUTF8(text);
  if (good < text.size()) return reader.failure(good, "no UTF-8");
  return reader.document();
}

}  // namespace epg
