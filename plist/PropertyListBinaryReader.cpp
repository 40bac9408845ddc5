// The binary form of property lists ("bplist00"), read. The format: a header, objects, a table of the objects'
// offsets, and a trailer of 32 bytes that says where the table lies and how wide its numbers are. Every number that
// the file gives is checked before it is used.

#include <utf8.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "plist/PropertyListForms.h"
#include "xml/Surrogates.h"
#include "xml/XMLText.h"

namespace epg {

namespace {

constexpr std::size_t headerSize = 8;
constexpr std::size_t trailerSize = 32;

/// Objects may be shared, so a small file can stand for a huge value. What would be written back, counted in
/// values and bytes of text, must stay below this: far more than writers share, and no more than memory holds.
std::uint64_t largestExpandedSize(std::size_t fileSize) {
  constexpr std::uint64_t ofAnyFile = std::uint64_t{1} << 24;
  constexpr std::uint64_t ofEachByte = 256;
  constexpr std::uint64_t ever = std::uint64_t{1} << 30;
  // safeguard: the limit on shared containers
  return std::min(ever, ofAnyFile + ofEachByte * fileSize);
}

class BinaryReader {
 public:
  BinaryReader(const std::string& bytes, std::string* problem)
      : bytes_(bytes), problem_(problem), maximumExpandedSize_(largestExpandedSize(bytes.size())) {}

  std::optional<PropertyList> read() {
    if (bytes_.size() < headerSize + trailerSize) {
      fail(bytes_.size(), "the file is cut off");
      return std::nullopt;
    }
    const std::size_t trailer = bytes_.size() - trailerSize;
    offsetWidth_ = byteAt(trailer + 6);
    referenceWidth_ = byteAt(trailer + 7);
    const std::uint64_t count = number(trailer + 8, 8);
    const std::uint64_t top = number(trailer + 16, 8);
    const std::uint64_t table = number(trailer + 24, 8);
    if (offsetWidth_ < 1 || offsetWidth_ > 8 || referenceWidth_ < 1 || referenceWidth_ > 8) {
      fail(trailer + 6, "the numbers have an impossible width");
      return std::nullopt;
    }
    if (table < headerSize + 1 || table > trailer || count == 0 || count != (trailer - table) / offsetWidth_ ||
        count * offsetWidth_ != trailer - table || top >= count) {
      fail(trailer + 8, "the table of objects does not fit the file");
      return std::nullopt;
    }
    tableOffset_ = static_cast<std::size_t>(table);
    unclaimed_ = tableOffset_;
    objects_.resize(static_cast<std::size_t>(count));
    const Object* object = objectAt(static_cast<std::size_t>(top), 1);
    if (!object) return std::nullopt;
    return object->value;
  }

 private:
  enum class State { Unread, BeingRead, Read };
  struct Object {
    State state = State::Unread;
    PropertyList value;
    std::uint64_t expandedSize = 0;
    int height = 1;  ///< Of containers below and including this one.
  };
  struct Span {
    std::size_t start = 0;
    std::size_t count = 0;
  };

  static bool isContainer(const Object& object) { return object.value.asArray() || object.value.asDictionary(); }

  bool fail(std::size_t offset, const char* what) {
    if (problem_ && problem_->empty()) *problem_ = "byte " + std::to_string(offset + 1) + ": " + what;
    return false;
  }

  unsigned byteAt(std::size_t offset) const { return static_cast<unsigned char>(bytes_[offset]); }

  /// A big-endian number; the bytes must lie within the file.
  std::uint64_t number(std::size_t offset, std::size_t width) const {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < width; ++i) value = value << 8 | byteAt(offset + i);
    return value;
  }

  /// Whether `count` things of `width` bytes lie between `start` and the table of objects.
  bool fits(std::size_t start, std::uint64_t count, std::size_t width) const {
    // safeguard: bounds of objects in binary lists
    return start <= tableOffset_ && count <= (tableOffset_ - start) / width;
  }

  const Object* objectAt(std::size_t index, int depth) {
    Object& object = objects_[index];
    if (object.state == State::Read) {
      // Found again at a greater depth, a container may reach too deep now.
      if (isContainer(object) && depth + object.height - 1 > PropertyList::maximumDepth) {
        fail(tableOffset_, "nested too deep");
        return nullptr;
      }
      return &object;
    }
    // safeguard: containers that hold themselves
    if (object.state == State::BeingRead) {
      fail(tableOffset_, "a container that holds itself");
      return nullptr;
    }
    object.state = State::BeingRead;
    const std::uint64_t offset = number(tableOffset_ + index * offsetWidth_, offsetWidth_);
    if (offset < headerSize || offset >= tableOffset_) {
      fail(tableOffset_ + index * offsetWidth_, "an object lies outside the file");
      return nullptr;
    }
    if (!readObject(static_cast<std::size_t>(offset), object, depth)) return nullptr;
    if (object.expandedSize > maximumExpandedSize_) {
      fail(static_cast<std::size_t>(offset), "the value is larger than any that can be meant");
      return nullptr;
    }
    object.state = State::Read;
    return &object;
  }

  bool readObject(std::size_t offset, Object& object, int depth) {
    const unsigned marker = byteAt(offset);
    object.expandedSize = 1;
    switch (marker >> 4) {
      case 0x0:
        if (marker != 0x08 && marker != 0x09) return fail(offset, "an object of no known type");
        object.value = PropertyList::fromBoolean(marker == 0x09);
        return true;
      case 0x1:
        return readInteger(offset, marker & 0xF, object);
      case 0x2:
        return readReal(offset, marker & 0xF, object);
      case 0x3:
        if (marker != 0x33) return fail(offset, "an object of no known type");
        if (!fits(offset + 1, 8, 1)) return fail(offset, "an object is cut off");
        if (std::isnan(doubleAt(offset + 1))) return fail(offset, "a date that is not a number");
        object.value = PropertyList::fromDate(Instant{doubleAt(offset + 1)});
        return true;
      case 0x4:
      case 0x5:
      case 0x6:
      case 0x7:
        return readText(offset, marker >> 4, object);
      case 0x8:
        if (depth > PropertyList::maximumDepth) return fail(offset, "nested too deep");
        return readUID(offset, (marker & 0xF) + 1, object);
      case 0xA:
      case 0xD:
        if (depth > PropertyList::maximumDepth) return fail(offset, "nested too deep");
        return marker >> 4 == 0xA ? readArray(offset, object, depth) : readDictionary(offset, object, depth);
      default:
        return fail(offset, "an object of no known type");
    }
  }

  bool readInteger(std::size_t offset, unsigned exponent, Object& object) {
    const std::size_t width = std::size_t{1} << exponent;
    if (exponent > 4) return fail(offset, "an integer of an impossible width");
    if (!fits(offset + 1, width, 1)) return fail(offset, "an object is cut off");
    // Narrow integers are unsigned; eight bytes are signed; sixteen hold what is too large for that.
    const std::uint64_t low = number(offset + 1 + (width > 8 ? 8 : 0), width > 8 ? 8 : width);
    if (width < 8) {
      object.value = PropertyList::fromUnsigned(low);
      return true;
    }
    const std::uint64_t high = width == 16 ? number(offset + 1, 8) : low >> 63 ? ~std::uint64_t{0} : 0;
    const bool negative = high == ~std::uint64_t{0} && low >> 63 != 0;
    if (high != 0 && !negative) return fail(offset, "an integer beyond 64 bits");
    object.value =
        negative ? PropertyList::fromInteger(static_cast<std::int64_t>(low)) : PropertyList::fromUnsigned(low);
    return true;
  }

  double doubleAt(std::size_t offset) const {
    const std::uint64_t bits = number(offset, 8);
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
  }

  bool readReal(std::size_t offset, unsigned exponent, Object& object) {
    if (exponent != 2 && exponent != 3) return fail(offset, "a real of an impossible width");
    if (!fits(offset + 1, std::uint64_t{1} << exponent, 1)) return fail(offset, "an object is cut off");
    if (exponent == 3) {
      object.value = PropertyList::fromReal(doubleAt(offset + 1));
      return true;
    }
    const auto bits = static_cast<std::uint32_t>(number(offset + 1, 4));
    float value = 0;
    std::memcpy(&value, &bits, sizeof value);
    object.value = PropertyList::fromReal(static_cast<double>(value));
    return true;
  }

  bool readUID(std::size_t offset, std::size_t width, Object& object) {
    if (!fits(offset + 1, width, 1)) return fail(offset, "an object is cut off");
    for (std::size_t i = 0; i + 8 < width; ++i) {
      if (byteAt(offset + 1 + i) != 0) return fail(offset, "a UID beyond 64 bits");
    }
    const std::size_t used = width < 8 ? width : 8;
    PropertyListDictionary dictionary;
    dictionary.set("CF$UID", PropertyList::fromUnsigned(number(offset + 1 + width - used, used)));
    object.value = PropertyList(std::move(dictionary));
    return true;
  }

  /// The count in the marker, or the integer that follows it.
  bool readCount(std::size_t offset, std::size_t width, Span* span) {
    std::uint64_t count = byteAt(offset) & 0xF;
    std::size_t start = offset + 1;
    if (count == 0xF) {
      if (!fits(start, 1, 1) || byteAt(start) >> 4 != 0x1 || (byteAt(start) & 0xF) > 3) {
        return fail(offset, "an object without its length");
      }
      const std::size_t countWidth = std::size_t{1} << (byteAt(start) & 0xF);
      if (!fits(start + 1, countWidth, 1)) return fail(offset, "an object is cut off");
      count = number(start + 1, countWidth);
      start += 1 + countWidth;
    }
    if (!fits(start, count, width)) return fail(offset, "an object is cut off");
    span->start = start;
    span->count = static_cast<std::size_t>(count);
    // Each object has bytes of its own. Could they share them, a small file would fill the memory.
    if (span->count * width > unclaimed_) return fail(offset, "objects that overlap");
    unclaimed_ -= span->count * width;
    return true;
  }

  bool readText(std::size_t offset, unsigned kind, Object& object) {
    Span span;
    if (!readCount(offset, kind == 0x6 ? 2 : 1, &span)) return false;
    if (kind == 0x6) {
      readUTF16(span, object);
      return true;
    }
    std::string text = bytes_.substr(span.start, span.count);
    object.expandedSize += text.size();
    if (kind == 0x4) {
      object.value = PropertyList::fromData(text);
      return true;
    }
    const bool isASCII = std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
    if (kind == 0x5 ? !isASCII : !isUTF8(text)) return fail(offset, kind == 0x5 ? "not ASCII" : "not UTF-8");
    object.value = PropertyList(text);
    return true;
  }

  void readUTF16(Span span, Object& object) {
    const auto unit = [&](std::size_t i) { return static_cast<std::uint32_t>(number(span.start + 2 * i, 2)); };
    std::string text;
    for (std::size_t i = 0; i < span.count; ++i) {
      const std::uint32_t first = unit(i);
      const std::uint32_t second = i + 1 < span.count ? unit(i + 1) : 0;
      if (!isHighSurrogate(first) && !isLowSurrogate(first)) {
        utf8::append(first, std::back_inserter(text));
      } else if (isHighSurrogate(first) && isLowSurrogate(second)) {
        utf8::append(characterOfSurrogates(first, second), std::back_inserter(text));
        ++i;
      } else {
        // The platform's texts may hold half a character. The whole store is not lost for it.
        text += replacementCharacter;
      }
    }
    object.expandedSize += text.size();
    object.value = PropertyList(text);
  }

  const Object* referenced(std::size_t at, Object& container, int depth) {
    const std::uint64_t index = number(at, referenceWidth_);
    if (index >= objects_.size()) {
      fail(at, "a reference to an object that does not exist");
      return nullptr;
    }
    const Object* object = objectAt(static_cast<std::size_t>(index), depth);
    if (!object) return nullptr;
    container.expandedSize += object->expandedSize;
    // Both sizes are below the limit or just above it, so the sum cannot overflow before it is refused.
    if (container.expandedSize > maximumExpandedSize_) {
      fail(at, "the value is larger than any that can be meant");
      return nullptr;
    }
    if (isContainer(*object)) container.height = std::max(container.height, object->height + 1);
    return object;
  }

  bool readArray(std::size_t offset, Object& object, int depth) {
    Span span;
    if (!readCount(offset, referenceWidth_, &span)) return false;
    PropertyList::Array elements;
    for (std::size_t i = 0; i < span.count; ++i) {
      const Object* element = referenced(span.start + i * referenceWidth_, object, depth + 1);
      if (!element) return false;
      elements.push_back(element->value);
    }
    object.value = PropertyList(std::move(elements));
    return true;
  }

  bool readDictionary(std::size_t offset, Object& object, int depth) {
    Span span;
    if (!readCount(offset, 2 * std::size_t{referenceWidth_}, &span)) return false;
    std::vector<PropertyListDictionary::Entry> entries;
    for (std::size_t i = 0; i < span.count; ++i) {
      const Object* key = referenced(span.start + i * referenceWidth_, object, depth + 1);
      if (!key) return false;
      const SharedText* const name = key->value.sharedText();
      if (!name) return fail(offset, "a key that is no string");
      const Object* value = referenced(span.start + (span.count + i) * referenceWidth_, object, depth + 1);
      if (!value) return false;
      entries.emplace_back(*name, value->value);
    }
    object.value = PropertyList(PropertyListDictionary(std::move(entries)));
    return true;
  }

  const std::string& bytes_;
  std::string* problem_;
  std::size_t offsetWidth_ = 0;
  std::size_t referenceWidth_ = 0;
  std::size_t tableOffset_ = 0;
  std::size_t unclaimed_ = 0;  ///< Bytes before the table that no text, data or container has been read from.
  std::uint64_t maximumExpandedSize_;
  std::vector<Object> objects_;  ///< Never resized while objects are read.
};

}  // namespace

bool isBinaryPropertyList(const std::string& bytes) { return bytes.compare(0, 6, "bplist") == 0; }

std::optional<PropertyList> parseBinaryPropertyList(const std::string& bytes, std::string* problem) {
  if (problem) problem->clear();
  if (bytes.compare(0, headerSize, "bplist00") != 0) {
    if (problem) *problem = "byte 7: an unknown version of the binary property-list form";
    return std::nullopt;
  }
  return BinaryReader(bytes, problem).read();
}

}  // namespace epg
