// Any bytes as an XMLTV guide: programmes with a title and times, or a refusal that says where.

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/Check.h"
#include "host/Refusal.h"
#include "host/XMLTVGuide.h"
#include "platform/XMLText.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const epg::XMLTVGuide guide = epg::parseGuide(std::string(reinterpret_cast<const char*>(data), size), "guide.xml");
    for (const epg::XMLTVProgramme& programme : guide.programmes) {
      FUZZ_CHECK(!programme.title.empty());
      FUZZ_CHECK(epg::isUTF8(programme.title));
      for (const std::string& category : programme.categories) FUZZ_CHECK(!category.empty());
    }
  } catch (const epg::Refusal& refusal) {
    FUZZ_CHECK(std::string(refusal.what()).find("guide.xml") != std::string::npos);
  }
  return 0;
}
