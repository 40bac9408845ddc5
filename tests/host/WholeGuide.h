#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/guide/XMLTVGuide.h"

namespace epg::test {

/// A guide with all its programmes.
struct WholeGuide : GuideSummary {
  std::vector<XMLTVProgramme> programmes;
};

inline WholeGuide wholeGuide(const std::string& bytes, const std::string& name = "guide.xml") {
  WholeGuide guide;
  static_cast<GuideSummary&>(guide) = parseGuide(
      bytes, name, [&guide](XMLTVProgramme&& programme) { guide.programmes.push_back(std::move(programme)); });
  return guide;
}

}  // namespace epg::test
