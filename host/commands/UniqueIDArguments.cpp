#include "host/commands/UniqueIDArguments.h"

#include <algorithm>

#include "host/terminal/LineText.h"
#include "host/terminal/Refusal.h"
#include "xml/XMLText.h"

namespace epg {

namespace {

const char* const byteOrderMark = "\xEF\xBB\xBF";

/// The ID in a line of standard input. Nothing, with the reason in `problem`, when no listing would write it so.
std::optional<std::string> uniqueIDInLine(const std::string& line, std::string* problem) {
  if (!isUTF8(line)) {
    *problem = "not UTF-8";
  } else if (line.find('\t') != std::string::npos) {
    *problem = "holds a tab; only the ID belongs here (cut -f1)";
  } else if (steersOutput(line)) {
    *problem = "holds a control character, which listings write as \"\\r\" or \"\\xNN\"";
  } else {
    return unescapedLine(line, problem);
  }
  return std::nullopt;
}

void readUniqueIDs(std::istream& input, std::vector<std::string>* ids) {
  const std::size_t before = ids->size();
  std::string line;
  for (std::size_t number = 1; std::getline(input, line); ++number) {
    if (number == 1 && line.compare(0, 3, byteOrderMark) == 0) line.erase(0, 3);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty()) continue;
    std::string problem;
    std::optional<std::string> id = uniqueIDInLine(line, &problem);
    if (!id) throw Refusal("standard input: line " + std::to_string(number) + ": " + problem);
    ids->push_back(std::move(*id));
  }
  if (input.bad()) throw Refusal("standard input: cannot be read");
  if (ids->size() == before) throw Refusal("standard input: no EPG unique ID");
}

}  // namespace

std::vector<std::string> uniqueIDs(const std::vector<UniqueIDArgument>& arguments, std::istream& input) {
  if (std::count(arguments.begin(), arguments.end(), std::nullopt) > 1) {
    throw WrongUsage("standard input (-) can be read only once");
  }
  std::vector<std::string> ids;
  for (const UniqueIDArgument& argument : arguments) {
    if (argument) {
      ids.push_back(*argument);
    } else {
      readUniqueIDs(input, &ids);
    }
  }
  return ids;
}

}  // namespace epg
