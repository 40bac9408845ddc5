#include "tests/support/NaiveDayFile.h"

#include <cstddef>

#include "export/ApostrophePass.h"
#include "tests/support/NaiveXMLText.h"

namespace epg::test {

namespace {

constexpr std::size_t spacesPerLevel = 4;

void indent(std::string& document, int level) {
  document.append(static_cast<std::size_t>(level) * spacesPerLevel, ' ');
}

bool appendStartTag(std::string& document, const XMLElement& element) {
  document += '<';
  document += element.name;
  for (const auto& [name, value] : element.attributes) {
    document += ' ';
    document += name;
    document += "=\"";
    if (!appendNaiveXMLText(document, value, XMLContext::Attribute)) return false;
    document += '"';
  }
  document += '>';
  return true;
}

}  // namespace

bool appendXMLElement(std::string& document, const XMLElement& element, int level) {
  indent(document, level);
  if (!appendStartTag(document, element)) return false;
  if (element.children.empty()) {
    if (!appendNaiveXMLText(document, element.text, XMLContext::Text)) return false;
  } else {
    document += '\n';
    for (const XMLElement& child : element.children) {
      if (!appendXMLElement(document, child, level + 1)) return false;
    }
    indent(document, level);
  }
  document += "</";
  document += element.name;
  document += ">\n";
  return true;
}

std::optional<std::string> naiveDayFile(const LocalCalendar& calendar, const DateFormatter& rootDateFormatter,
                                        const EPGItemStore& items, const std::vector<EPGEvent>& events,
                                        const PlaybackIDHash& hash) {
  const auto rootDate = [&](std::optional<Instant> date) {
    return date ? rootDateFormatter.stringFromDate(calendar, *date) : std::string();
  };
  XMLElement root;
  root.name = "programs";
  root.attributes.emplace_back("dateFrom",
                               events.empty() ? std::string() : rootDate(events.front().eventEPGStartDateTime));
  root.attributes.emplace_back("dateTo", events.empty() ? std::string() : rootDate(events.back().eventEPGEndDateTime));
  for (const EPGEvent& event : events) {
    root.addChild(xmlEventWithDictionary(calendar, items, event, hash));
  }
  std::string document = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  if (!appendXMLElement(document, root, 0)) return std::nullopt;
  return stringByEscapingSpecialCharacters(document);
}

}  // namespace epg::test
