#include "host/UniqueIDArguments.h"

#include <utf8.h>

#include <algorithm>
#include <optional>

#include "host/LineText.h"
#include "host/Refusal.h"

namespace epg {

namespace {

bool isUTF8(const std::string& text) { return utf8::is_valid(text.begin(), text.end()); }

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

std::vector<std::string> uniqueIDs(const std::vector<std::string>& arguments, std::istream& input) {
  const char* const standardInput = "-";
  if (std::count(arguments.begin(), arguments.end(), standardInput) > 1) {
    throw WrongUsage("standard input (-) can be read only once");
  }
  std::vector<std::string> ids;
  for (const std::string& argument : arguments) {
    if (argument == standardInput) {
      readUniqueIDs(input, &ids);
    } else {
      ids.push_back(argument);
    }
  }
  return ids;
}

}  // namespace epg
