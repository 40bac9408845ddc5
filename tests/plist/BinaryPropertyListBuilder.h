#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace epg::test {

/// Puts together a file in the binary form from the bytes of its objects, right or wrong.
class BinaryPropertyListBuilder {
 public:
  using References = std::vector<std::uint64_t>;

  // Anything here may be set to what no good file has.
  std::size_t offsetWidth = 4;
  std::size_t referenceWidth = 2;
  std::uint64_t top = 0;
  std::string header = "bplist00";

  static std::string bigEndian(std::uint64_t number, std::size_t width) {
    std::string bytes;
    for (std::size_t i = width; i-- > 0;) bytes += static_cast<char>(i < 8 ? number >> (8 * i) & 0xFF : 0);
    return bytes;
  }

  static std::string byte(unsigned value) { return std::string(1, static_cast<char>(value)); }

  /// A marker with a count, the count behind it where four bits are too few.
  static std::string counted(unsigned kind, std::uint64_t count) {
    if (count < 15) return byte(kind << 4 | static_cast<unsigned>(count));
    return byte(kind << 4 | 0xF) + byte(0x13) + bigEndian(count, 8);
  }

  static std::string integer(std::uint64_t value) { return byte(0x13) + bigEndian(value, 8); }
  static std::string ascii(const std::string& text) { return counted(0x5, text.size()) + text; }
  static std::string data(const std::string& bytes) { return counted(0x4, bytes.size()) + bytes; }

  std::string array(const References& elements) const { return counted(0xA, elements.size()) + references(elements); }
  std::string dictionary(const References& keys, const References& values) const {
    return counted(0xD, keys.size()) + references(keys) + references(values);
  }

  /// The new object's index.
  std::uint64_t add(const std::string& object) {
    objects_.push_back(object);
    return objects_.size() - 1;
  }
  void replace(std::uint64_t index, const std::string& object) { objects_[static_cast<std::size_t>(index)] = object; }

  std::string file() const {
    std::string bytes = header;
    std::string table;
    for (const std::string& object : objects_) {
      table += bigEndian(bytes.size(), offsetWidth);
      bytes += object;
    }
    const std::size_t tableOffset = bytes.size();
    return bytes + table + trailer(objects_.size(), tableOffset);
  }

  std::string trailer(std::uint64_t count, std::uint64_t tableOffset) const {
    return std::string(6, '\0') + byte(static_cast<unsigned>(offsetWidth)) +
           byte(static_cast<unsigned>(referenceWidth)) + bigEndian(count, 8) + bigEndian(top, 8) +
           bigEndian(tableOffset, 8);
  }

 private:
  std::string references(const References& indices) const {
    std::string bytes;
    for (const std::uint64_t index : indices) bytes += bigEndian(index, referenceWidth);
    return bytes;
  }

  std::vector<std::string> objects_;
};

}  // namespace epg::test
