// Any bytes as a property list, XML or binary: read or refused, never a crash; what was read is written, and what
// was written is read back as the same bytes.

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/Check.h"
#include "platform/PropertyListFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string problem;
  const auto list = epg::parsePropertyList(std::string(reinterpret_cast<const char*>(data), size), &problem);
  FUZZ_CHECK(list || !problem.empty());
  if (!list) return 0;
  const auto written = epg::propertyListXML(*list);
  FUZZ_CHECK(written);
  const auto readBack = epg::parsePropertyList(*written);
  FUZZ_CHECK(readBack);
  FUZZ_CHECK(epg::propertyListXML(*readBack) == written);
  return 0;
}
