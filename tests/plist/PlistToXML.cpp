// Reads property lists from standard input and writes each in its XML form to standard output. Before every one stands
// its length in four bytes, the highest first; the length of what cannot be read or written is 0xFFFFFFFF.

#include <cstdint>
#include <cstdio>
#include <string>

#include "plist/PropertyListFile.h"

namespace {

bool readLength(std::uint32_t* length) {
  unsigned char bytes[4];
  if (std::fread(bytes, 1, sizeof bytes, stdin) != sizeof bytes) return false;
  *length = std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 | bytes[3];
  return true;
}

void writeLength(std::uint32_t length) {
  const unsigned char bytes[4] = {static_cast<unsigned char>(length >> 24), static_cast<unsigned char>(length >> 16),
                                  static_cast<unsigned char>(length >> 8), static_cast<unsigned char>(length)};
  std::fwrite(bytes, 1, sizeof bytes, stdout);
}

}  // namespace

int main() {
  std::uint32_t length = 0;
  while (readLength(&length)) {
    std::string bytes(length, '\0');
    if (std::fread(&bytes[0], 1, length, stdin) != length) return 1;
    std::string problem;
    const auto list = epg::parsePropertyList(bytes, &problem);
    const auto xml = list ? epg::propertyListXML(*list) : std::nullopt;
    if (!list) std::fprintf(stderr, "%s\n", problem.c_str());
    writeLength(xml ? static_cast<std::uint32_t>(xml->size()) : 0xFFFFFFFF);
    if (xml) std::fwrite(xml->data(), 1, xml->size(), stdout);
    std::fflush(stdout);
  }
  return 0;
}
