#include "tests/support/NaiveEditor.h"

namespace epg::test {

namespace {

const PropertyList noString = PropertyList::fromInteger(7);
const PropertyList noList = PropertyList::fromBoolean(true);

}  // namespace

bool NaiveItem::carries(const std::string& tag) const {
  if (!hasTagsEntry || !tagsEntryIsList) return false;
  for (const Element& element : tags) {
    if (element == tag) return true;
  }
  return false;
}

bool operator==(const NaiveItem& a, const NaiveItem& b) {
  return a.hasTagsEntry == b.hasTagsEntry && a.tagsEntryIsList == b.tagsEntryIsList && a.tags == b.tags &&
         a.texts == b.texts;
}

std::ostream& operator<<(std::ostream& stream, const NaiveItem& item) {
  stream << "{";
  if (item.hasTagsEntry && !item.tagsEntryIsList) stream << " tags: no list";
  if (item.hasTagsEntry && item.tagsEntryIsList) {
    stream << " tags: (";
    for (const NaiveItem::Element& tag : item.tags) stream << (tag ? "'" + *tag + "' " : std::string("7 "));
    stream << ")";
  }
  for (const auto& [key, text] : item.texts) stream << " " << key << ": " << (text ? "'" + *text + "'" : "7");
  return stream << " }";
}

std::vector<PropertyListDictionary::Entry> entriesOf(const NaiveItem& item) {
  std::vector<PropertyListDictionary::Entry> entries;
  if (item.hasTagsEntry && item.tagsEntryIsList) {
    PropertyList::Array list;
    for (const NaiveItem::Element& tag : item.tags) list.push_back(tag ? PropertyList(*tag) : noString);
    entries.emplace_back(ZRLEPGDSTagsKey, PropertyList(list));
  }
  if (item.hasTagsEntry && !item.tagsEntryIsList) entries.emplace_back(ZRLEPGDSTagsKey, noList);
  for (const auto& [key, text] : item.texts) entries.emplace_back(key, text ? PropertyList(*text) : noString);
  return entries;
}

NaiveItem naiveItem(const EPGItem& item) {
  NaiveItem naive;
  const PropertyListDictionary values = item.values();
  for (const auto& [key, value] : values) {
    const auto text = value.asString();
    if (key != ZRLEPGDSTagsKey) {
      naive.texts[std::string(key)] = text ? std::optional<std::string>(*text) : std::nullopt;
      continue;
    }
    naive.hasTagsEntry = true;
    const PropertyList::Elements* const list = value.asArray();
    naive.tagsEntryIsList = list != nullptr;
    if (!list) continue;
    for (const PropertyList& element : *list) {
      const auto name = element.asString();
      naive.tags.push_back(name ? std::optional<std::string>(*name) : std::nullopt);
    }
  }
  return naive;
}

int naiveState(const NaiveItems& items, const std::string& tag) {
  bool first = true;
  bool result = false;
  for (const NaiveItem* const item : items) {
    if (first) {
      result = item->carries(tag);
      first = false;
    } else if (item->carries(tag) != result) {
      return -1;
    }
  }
  return result ? 1 : 0;
}

void setNaively(const NaiveItems& items, const std::string& tag, std::ptrdiff_t state) {
  for (NaiveItem* const item : items) {
    if (state == 1 && !item->carries(tag)) {
      if (!item->hasTagsEntry || !item->tagsEntryIsList) item->tags.clear();
      item->hasTagsEntry = true;
      item->tagsEntryIsList = true;
      item->tags.emplace_back(tag);
    }
    if (state == 0 && item->carries(tag)) {
      std::vector<NaiveItem::Element> others;
      for (const NaiveItem::Element& element : item->tags) {
        if (element != tag) others.push_back(element);
      }
      item->tags = others;
    }
  }
}

NaiveField naiveField(const NaiveItems& items, const std::string& key) {
  std::optional<std::string> common;
  for (const NaiveItem* const item : items) {
    const auto entry = item->texts.find(key);
    const std::optional<std::string> value = entry == item->texts.end() ? std::nullopt : entry->second;
    if (common && value != common) return {true, ""};
    if (!common) common = value;
  }
  return {false, common.value_or("")};
}

void applyNaively(const NaiveItems& items, const std::string& key, const NaiveField& field) {
  for (NaiveItem* const item : items) {
    if (!field.mixed || !field.text.empty()) item->texts[key] = field.text;
  }
}

}  // namespace epg::test
