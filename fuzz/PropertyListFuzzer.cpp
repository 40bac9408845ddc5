// Any bytes as a property list, XML or binary: read or refused, never a crash; what was read is written, and what
// was written is read back as the same bytes. Both ways to read the XML form give the same.

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/Check.h"
#include "plist/PropertyListFile.h"
#include "plist/PropertyListForms.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  std::string problem;
  const auto list = epg::parsePropertyList(bytes, &problem);
  FUZZ_CHECK(list || !problem.empty());
  if (!list) return 0;
  if (const auto plain = epg::parseFastXMLPropertyList(bytes)) {
    FUZZ_CHECK(plain == epg::parseAnyXMLPropertyList(bytes, nullptr));
  }
  const auto written = epg::propertyListXML(*list);
  FUZZ_CHECK(written);
  const auto readBack = epg::parseFastXMLPropertyList(*written);
  FUZZ_CHECK(readBack);
  FUZZ_CHECK(readBack == epg::parseAnyXMLPropertyList(*written, nullptr));
  FUZZ_CHECK(epg::propertyListXML(*readBack) == written);
  return 0;
}
