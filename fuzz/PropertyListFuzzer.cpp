#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

#include "platform/PropertyListFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  std::string problem;
  const std::optional<epg::PropertyList> value = epg::parsePropertyList(bytes, &problem);
  if (!value) {
    if (problem.empty()) {
      std::abort();
    }
    return 0;
  }

  // What can be read and written reads back as bytes that write the same again.
  const std::optional<std::string> written = epg::propertyListXML(*value);
  if (written) {
    const std::optional<epg::PropertyList> readBack = epg::parsePropertyList(*written);
    if (!readBack || epg::propertyListXML(*readBack) != written) {
      std::abort();
    }
  }
  return 0;
}
