// Any bytes as an XMLTV guide: programmes with a title and times, or a refusal that says where. Read in pieces it is
// the same guide, or none.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/Check.h"
#include "host/guide/EPGUniqueID.h"
#include "host/guide/FaultlessGuide.h"
#include "host/terminal/Refusal.h"
#include "xml/XMLText.h"

namespace {

std::string told(const epg::XMLTVProgramme& programme) {
  return epg::playbackUniqueID(programme) + " " + epg::epgUniqueID(programme);
}

/// Nothing when the guide was not read.
std::optional<std::vector<std::string>> readInPieces(const std::string& bytes) {
  constexpr std::size_t parts = 2;
  constexpr std::size_t pieceSize = 50;
  std::vector<std::string> programmes[parts];
  std::vector<epg::ProgrammeTaker> takers;
  takers.reserve(parts);
  for (std::vector<std::string>& part : programmes) {
    takers.emplace_back([&part](const epg::XMLTVProgramme& programme) { part.push_back(told(programme)); });
  }
  if (!epg::parseFaultlessGuide(bytes, takers, pieceSize)) return std::nullopt;
  programmes[0].insert(programmes[0].end(), programmes[1].begin(), programmes[1].end());
  return programmes[0];
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const std::optional<std::vector<std::string>> inPieces = readInPieces(bytes);
  try {
    std::vector<std::string> whole;
    const auto take = [&whole](const epg::XMLTVProgramme& programme) {
      FUZZ_CHECK(!programme.title.empty());
      FUZZ_CHECK(epg::isUTF8(programme.title));
      for (const std::string& category : programme.categories) FUZZ_CHECK(!category.empty());
      whole.push_back(told(programme));
    };
    const epg::GuideSummary summary = epg::parseGuide(bytes, "guide.xml", take);
    FUZZ_CHECK(!inPieces || (inPieces == whole && summary.warnings.empty()));
  } catch (const epg::Refusal& refusal) {
    FUZZ_CHECK(!inPieces);
    FUZZ_CHECK(std::string(refusal.what()).find("guide.xml") != std::string::npos);
  }
  return 0;
}
