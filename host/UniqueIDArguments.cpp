#include "host/UniqueIDArguments.h"

#include <algorithm>

#include "host/LineText.h"
#include "host/Refusal.h"
#include "platform/XMLText.h"

namespace epg {

namespace {

void readUniqueIDs(std::istream& input, std::vector<std::string>* ids) {
  const std::size_t before = ids->size();
  std::string line;
  for (std::size_t number = 1; std::getline(input, line); ++number) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty()) continue;
    std::string problem = "not UTF-8";
    std::optional<std::string> id;
    if (isUTF8(line)) id = unescapedLine(line, &problem);
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
