#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace epg::test {

/// What stands in a day file, read by libxml2: texts with every reference resolved, exactly as a receiver gets them.
struct DayFileProgram {
  std::optional<std::string> id;
  std::string day, month, year, hour, minute;
  std::string title, description, imgUrl;
  std::vector<std::string> tags;

  /// "5.3.12 6:30"
  std::string start() const { return day + "." + month + "." + year + " " + hour + ":" + minute; }
};

bool operator==(const DayFileProgram& a, const DayFileProgram& b);
std::ostream& operator<<(std::ostream& stream, const DayFileProgram& program);

struct DayFile {
  std::string dateFrom, dateTo;
  std::vector<DayFileProgram> programs;

  std::vector<std::string> titles() const;
  std::vector<std::string> starts() const;
};

/// Reads the file's bytes. The test fails when they are no XML, do not follow the grammar in docs/day-file.rng, or
/// hold elements, attributes or text in another order or place than a day file does.
DayFile dayFileFrom(const std::string& bytes);

}  // namespace epg::test
