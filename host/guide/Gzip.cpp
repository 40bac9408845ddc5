#include "host/guide/Gzip.h"

#include <zlib.h>

#include <algorithm>
#include <vector>

namespace epg {

namespace {

/// Owns a zlib stream that reads gzip.
class Inflater {
 public:
  Inflater() {
    constexpr int gzipOnly = 16;
    good_ = inflateInit2(&stream_, MAX_WBITS + gzipOnly) == Z_OK;
  }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;
  ~Inflater() {
    if (good_) inflateEnd(&stream_);
  }

  bool good() const { return good_; }
  z_stream& stream() { return stream_; }

 private:
  z_stream stream_{};
  bool good_ = false;
};

bool beginsMember(const std::string& bytes, std::size_t at) {
  return bytes.size() - at >= 2 && bytes[at] == '\x1f' && bytes[at + 1] == '\x8b';
}

bool isPadding(const std::string& bytes, std::size_t from) {
  return bytes.find_first_not_of('\0', from) == std::string::npos;
}

}  // namespace

bool isGzip(const std::string& bytes) { return beginsMember(bytes, 0); }

std::optional<std::string> decompressedGzip(const std::string& bytes, std::size_t largestSize, std::string* problem) {
  Inflater inflater;
  if (!inflater.good()) {
    *problem = "not enough memory to decompress it";
    return std::nullopt;
  }
  z_stream& stream = inflater.stream();
  std::string text;
  std::vector<char> buffer(256 * 1024);
  std::size_t given = 0;
  for (;;) {
    if (stream.avail_in == 0 && given < bytes.size()) {
      // zlib counts bytes in an unsigned int.
      const std::size_t portion = std::min<std::size_t>(bytes.size() - given, 1U << 30);
      stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data() + given));
      stream.avail_in = static_cast<uInt>(portion);
      given += portion;
    }
    stream.next_out = reinterpret_cast<Bytef*>(buffer.data());
    stream.avail_out = static_cast<uInt>(buffer.size());
    const int result = inflate(&stream, Z_NO_FLUSH);
    const std::size_t got = buffer.size() - stream.avail_out;
    if (got > largestSize - text.size()) {
      *problem = "decompresses to more than " + std::to_string(largestSize) + " bytes";
      return std::nullopt;
    }
    text.append(buffer.data(), got);
    const std::size_t read = given - stream.avail_in;
    if (result == Z_STREAM_END) {
      if (isPadding(bytes, read)) return text;
      if (!beginsMember(bytes, read)) {
        *problem = "byte " + std::to_string(read + 1) + ": something that is no gzip data follows the gzip data";
        return std::nullopt;
      }
      inflateReset(&stream);
    } else if (result == Z_BUF_ERROR || (result == Z_OK && read == bytes.size() && got == 0)) {
      *problem = "the gzip data is cut off";
      return std::nullopt;
    } else if (result != Z_OK) {
      *problem = "byte " + std::to_string(read + 1) + ": the gzip data is damaged";
      if (stream.msg) *problem += std::string(" (") + stream.msg + ")";
      return std::nullopt;
    }
  }
}

}  // namespace epg
