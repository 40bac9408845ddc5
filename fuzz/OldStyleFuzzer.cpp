// Any bytes as an old-style property list: read or refused with a place, never a crash; what was read is written, and
// what was written is read back as the same value.

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/Check.h"
#include "plist/PropertyListFile.h"
#include "plist/PropertyListForms.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  std::string problem;
  const auto list = epg::parseOldStylePropertyList(bytes, &problem);
  FUZZ_CHECK(list.has_value() == problem.empty());
  if (!list) return 0;
  const auto written = epg::propertyListXML(*list);
  FUZZ_CHECK(written);
  const auto readBack = epg::parsePropertyList(*written);
  FUZZ_CHECK(readBack);
  FUZZ_CHECK(epg::propertyListXML(*readBack) == written);
  return 0;
}
