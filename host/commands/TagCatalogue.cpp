#include "host/commands/TagCatalogue.h"

#include <utf8.h>

#include <algorithm>
#include <iterator>
#include <utility>
#include <variant>

#include "host/commands/CommandContext.h"
#include "host/commands/CommandLineBundle.h"
#include "host/commands/PluginSession.h"
#include "host/commands/ReportingEnvironment.h"
#include "host/guide/InputFile.h"
#include "host/guide/PropertyListInput.h"
#include "host/terminal/LineText.h"
#include "host/terminal/Refusal.h"

namespace epg {

namespace {

using Letters = std::u32string;

Letters lowerCaseLetters(const std::string& text) {
  Letters letters;
  utf8::utf8to32(text.begin(), text.end(), std::back_inserter(letters));
  for (char32_t& letter : letters) {
    if (letter >= U'A' && letter <= U'Z') letter += U'a' - U'A';
  }
  return letters;
}

/// How many insertions, deletions, replacements and swaps of neighbours make one word the other.
std::size_t editDistance(const Letters& a, const Letters& b) {
  std::vector<std::size_t> beforeLast(b.size() + 1);
  std::vector<std::size_t> last(b.size() + 1);
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    beforeLast.swap(last);
    last.swap(row);
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t exchanged = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, exchanged});
      const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (swapped) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
    }
  }
  return row[b.size()];
}

bool contains(const Letters& whole, const Letters& part) { return whole.find(part) != Letters::npos; }

bool isNear(const Letters& name, const Letters& wanted, std::size_t distance) {
  // A shorter word is part of many unrelated ones.
  constexpr std::size_t shortestPart = 3;
  const bool isPart = (wanted.size() >= shortestPart && contains(name, wanted)) ||
                      (name.size() >= shortestPart && contains(wanted, name));
  return isPart || distance <= std::max<std::size_t>(1, std::min(name.size(), wanted.size()) / 3);
}

/// Why the file gives no tags.
std::string problemOfCatalogue(Environment& environment, const std::string& path) {
  try {
    const PropertyListDictionary content = dictionaryInPropertyList(readInputFile(environment, path), path);
    const PropertyList* const tags = content.find("tags");
    if (!tags) return path + ": no tag catalogue, it has no \"tags\"";
    return path +
           (tags->asArray() ? ": a tag catalogue without tags" : ": no tag catalogue, its \"tags\" are no array");
  } catch (const Refusal& refusal) {
    return refusal.what();
  }
}

}  // namespace

std::vector<std::string> tagCatalogue(PluginSession& session) {
  session.plugin().editorView();
  const EPGDorvaSelinViewController& editor = *session.bundle().editor();
  const TableView* const table = &session.bundle().tagsTable();
  std::vector<std::string> names;
  for (std::ptrdiff_t row = 0; row < editor.numberOfRowsInTableView(table); ++row) {
    const auto value = editor.tableViewObjectValue(table, "name", row);
    if (const std::string* const name = std::get_if<std::string>(&value)) names.push_back(*name);
  }
  return names;
}

std::string missingCatalogueMessage(CommandContext& context, PluginSession& session) {
  if (const std::optional<std::string> path = session.bundle().pathForResource("Tags", "plist")) {
    return problemOfCatalogue(context.environment, *path);
  }
  return "no tag catalogue was found in " + session.bundle().resourceFolder() +
         " (the environment variable DORVASELIN_RESOURCES may name another folder)";
}

std::vector<std::size_t> tagIndexes(const std::vector<std::string>& catalogue, const std::vector<std::string>& tags) {
  std::vector<std::size_t> indexes;
  std::string problems;
  for (const std::string& tag : tags) {
    const auto found = std::find(catalogue.begin(), catalogue.end(), tag);
    if (found != catalogue.end()) {
      indexes.push_back(static_cast<std::size_t>(found - catalogue.begin()));
      continue;
    }
    problems += (problems.empty() ? "" : "\n") + ("the tag catalogue has no \"" + tag + "\"");
    const std::vector<std::string> near = nearNames(catalogue, tag);
    for (std::size_t i = 0; i < near.size(); ++i) problems += (i == 0 ? "; near it: \"" : ", \"") + near[i] + "\"";
  }
  if (!problems.empty()) throw Refusal(problems);
  return indexes;
}

std::vector<std::string> nearNames(const std::vector<std::string>& names, const std::string& wanted) {
  constexpr std::size_t mostNames = 5;
  constexpr std::size_t longestWanted = 200;  // Comparing takes time in proportion to the length.
  std::vector<std::pair<std::size_t, std::string>> near;
  const Letters letters = lowerCaseLetters(wanted);
  if (letters.size() > longestWanted) return {};
  for (const std::string& name : names) {
    const Letters candidate = lowerCaseLetters(name);
    const std::size_t distance = editDistance(candidate, letters);
    if (isNear(candidate, letters, distance)) near.emplace_back(distance, name);
  }
  std::stable_sort(near.begin(), near.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<std::string> nearest;
  for (std::size_t i = 0; i < near.size() && i < mostNames; ++i) nearest.push_back(near[i].second);
  return nearest;
}

}  // namespace epg
