// The whole road: any items and events in, a day file out that an independent reader finds well-formed and whose
// values are exactly those that went in, save for characters that XML cannot carry.

#include <fuzzer/FuzzedDataProvider.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <utf8.h>

#include <cstdlib>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "export/DayFile.h"
#include "export/EventOrder.h"
#include "fuzz/Check.h"
#include "model/EPGItemTexts.h"
#include "model/KeyConstants.h"
#include "store/MemoryItem.h"
#include "store/ShardedItemStore.h"
#include "xml/XMLText.h"

namespace {

using Items = std::map<std::string, epg::PropertyListDictionary>;

std::string anyText(FuzzedDataProvider& input) {
  std::string text = input.ConsumeRandomLengthString(60);
  if (input.ConsumeProbability<float>() < 0.9F && !epg::isUTF8(text)) {
    std::string mended;
    utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(mended));
    return mended;
  }
  return text;
}

/// The text as it must come out of the file: what XML 1.0 cannot carry replaced by U+FFFD.
std::string carried(const std::string& text) {
  std::string result;
  for (auto at = text.begin(); at != text.end();) {
    const std::uint32_t point = utf8::next(at, text.end());
    const bool possible = point == 9 || point == 10 || point == 13 || (point >= 0x20 && point <= 0xD7FF) ||
                          (point >= 0xE000 && point <= 0xFFFD) || point >= 0x10000;
    utf8::append(possible ? point : 0xFFFD, std::back_inserter(result));
  }
  return result;
}

std::string contentOf(xmlNodePtr node) {
  xmlChar* const content = xmlNodeGetContent(node);
  std::string text = content ? reinterpret_cast<const char*>(content) : "";
  xmlFree(content);
  return text;
}

std::vector<xmlNodePtr> elements(xmlNodePtr parent) {
  std::vector<xmlNodePtr> children;
  for (xmlNodePtr child = parent->children; child; child = child->next) {
    if (child->type == XML_ELEMENT_NODE) children.push_back(child);
  }
  return children;
}

std::string value(const epg::PropertyListDictionary& item, std::string_view key) {
  const epg::PropertyList* const found = item.find(key);
  return found && found->asString() ? std::string(*found->asString()) : std::string();
}

void checkProgram(xmlNodePtr program, const epg::PropertyListDictionary& item) {
  const std::vector<xmlNodePtr> parts = elements(program);
  // Date and time, the texts, the tags.
  FUZZ_CHECK(parts.size() == 2 + epg::epgItemTexts.size() + 1);
  for (std::size_t i = 0; i < epg::epgItemTexts.size(); ++i) {
    FUZZ_CHECK(contentOf(parts[2 + i]) == carried(value(item, epg::epgItemTexts[i].key)));
  }
  const epg::PropertyList* const tags = item.find(epg::ZRLEPGDSTagsKey);
  const std::vector<xmlNodePtr> written = elements(parts.back());
  FUZZ_CHECK(written.size() == (tags ? tags->asArray()->size() : 0));
  for (std::size_t i = 0; i < written.size(); ++i) {
    FUZZ_CHECK(contentOf(written[i]) == carried(std::string(*(*tags->asArray())[i].asString())));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  Items items;
  bool allUTF8 = true;
  for (int i = input.ConsumeIntegralInRange(0, 4); i > 0; --i) {
    epg::PropertyListDictionary item;
    for (const epg::EPGItemText& value : epg::epgItemTexts) {
      if (!input.ConsumeBool()) continue;
      const std::string text = anyText(input);
      allUTF8 = allUTF8 && epg::isUTF8(text);
      item.set(value.key, text);
    }
    if (input.ConsumeBool()) {
      epg::PropertyList::Array tags;
      for (int tag = input.ConsumeIntegralInRange(0, 3); tag > 0; --tag) {
        tags.emplace_back(anyText(input));
        allUTF8 = allUTF8 && epg::isUTF8(*tags.back().asString());
      }
      item.set(epg::ZRLEPGDSTagsKey, tags);
    }
    items[std::to_string(i)] = item;
  }
  std::vector<epg::EPGEvent> events;
  for (int i = input.ConsumeIntegralInRange(0, 6); i > 0; --i) {
    epg::EPGEvent event;
    if (input.ConsumeBool()) event.eventEPGUniqueID = std::to_string(input.ConsumeIntegralInRange(0, 5));
    if (input.ConsumeBool()) event.eventEPGPlaybackUniqueID = input.ConsumeRandomLengthString(10);
    if (input.ConsumeBool()) event.eventEPGStartDateTime = epg::Instant{input.ConsumeFloatingPoint<double>()};
    if (input.ConsumeBool()) event.eventEPGEndDateTime = epg::Instant{input.ConsumeFloatingPoint<double>()};
    events.push_back(event);
  }
  const epg::EventOrder order = epg::EventOrder::byStart(events);
  std::vector<epg::EPGEvent> sorted;
  for (std::size_t i = 0; i < order.size(); ++i) sorted.push_back(order[i]);
  events.swap(sorted);

  epg::ShardedItemStore store;
  for (const auto& [id, item] : items) store.setItem(id, std::make_shared<epg::MemoryItem>(item));
  std::vector<epg::PropertyListDictionary> expected;
  for (const epg::EPGEvent& event : events) {
    const auto item = event.eventEPGUniqueID ? items.find(*event.eventEPGUniqueID) : items.end();
    if (item != items.end()) expected.push_back(item->second);
  }
  const auto content = epg::dayFileContent(epg::LocalCalendar(), epg::DateFormatter("dd-MM-yyyy"), store, events);
  if (allUTF8) FUZZ_CHECK(content.has_value());
  if (!content) return 0;

  FUZZ_CHECK(content->find('\'') == std::string::npos);
  const xmlDocPtr document = xmlReadMemory(content->data(), static_cast<int>(content->size()), "day.xml", nullptr,
                                           XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_NOWARNING);
  FUZZ_CHECK(document);
  const std::vector<xmlNodePtr> programs = elements(xmlDocGetRootElement(document));
  FUZZ_CHECK(programs.size() == expected.size());
  for (std::size_t i = 0; i < programs.size(); ++i) checkProgram(programs[i], expected[i]);
  xmlFreeDoc(document);
  return 0;
}
