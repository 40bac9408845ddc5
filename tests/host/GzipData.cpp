#include "tests/host/GzipData.h"

#include <zlib.h>

#include <stdexcept>

namespace epg::test {

std::string gzipData(const std::string& bytes) {
  z_stream stream{};
  constexpr int gzip = 16;
  constexpr int memoryLevel = 8;
  if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, MAX_WBITS + gzip, memoryLevel, Z_DEFAULT_STRATEGY) !=
      Z_OK) {
    throw std::runtime_error("zlib cannot compress");
  }
  std::string compressed(deflateBound(&stream, static_cast<uLong>(bytes.size())), '\0');
  std::string input = bytes;
  stream.next_in = reinterpret_cast<Bytef*>(&input[0]);
  stream.avail_in = static_cast<uInt>(input.size());
  stream.next_out = reinterpret_cast<Bytef*>(&compressed[0]);
  stream.avail_out = static_cast<uInt>(compressed.size());
  const int result = deflate(&stream, Z_FINISH);
  compressed.resize(stream.total_out);
  deflateEnd(&stream);
  if (result != Z_STREAM_END) throw std::runtime_error("zlib did not compress everything");
  return compressed;
}

}  // namespace epg::test
