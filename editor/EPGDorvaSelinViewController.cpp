#include "editor/EPGDorvaSelinViewController.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

#include "model/EPGItemTexts.h"
#include "model/KeyConstants.h"
#include "plist/PropertyListFile.h"

namespace epg {

const char* const multipleValuesPlaceholder = "<Multiple Values>";

namespace {

std::vector<std::string> tagCatalogue(const Bundle* bundle, Environment& environment) {
  std::vector<std::string> names;
  const std::optional<std::string> path = bundle ? bundle->pathForResource("Tags", "plist") : std::nullopt;
  if (!path || path->empty()) return names;
  const auto dictionary = readPropertyListDictionary(environment, *path);
  const PropertyList* const tags = dictionary ? dictionary->find("tags") : nullptr;
  const PropertyList::Elements* const list = tags ? tags->asArray() : nullptr;
  if (!list) return names;
  for (const PropertyList& tag : *list) {
    if (const auto name = tag.asString()) names.emplace_back(*name);
  }
  return names;
}

bool isTag(const PropertyList& element, std::string_view tag) { return element.asString() == tag; }

bool holdsTag(const PropertyList::Elements* tags, std::string_view tag) {
  return tags && std::any_of(tags->begin(), tags->end(), [&](const PropertyList& t) { return isTag(t, tag); });
}

/// The list with the tag put in at the end or taken out everywhere; nothing when that changes nothing.
std::optional<PropertyList::Elements> changedTags(const PropertyList::Elements* tags, const PropertyList& tag,
                                                  bool on) {
  const std::string_view name = *tag.asString();
  if (holdsTag(tags, name) == on) return std::nullopt;
  const PropertyList::Elements before = tags ? *tags : PropertyList::Elements();
  // safeguard: tag lists that are never changed in place
  if (on) return before.with(tag, before.size(), 0);
  PropertyList::Array left;
  left.reserve(before.size());
  std::copy_if(before.begin(), before.end(), std::back_inserter(left),
               [&](const PropertyList& t) { return !isTag(t, name); });
  return PropertyList::Elements(std::make_move_iterator(left.begin()), std::make_move_iterator(left.end()));
}

}  // namespace

EPGDorvaSelinViewController::EPGDorvaSelinViewController(std::string nibName, Bundle* bundle, Environment& environment)
    : nibName_(std::move(nibName)), bundle_(bundle), tags_(tagCatalogue(bundle, environment)) {
  for (std::size_t i = 0; i < tags_.size(); ++i) tagIndexes_.emplace(tags_[i], i);
}

View* EPGDorvaSelinViewController::view() {
  if (!loaded_) {
    loaded_ = true;
    if (bundle_) outlets_ = bundle_->loadInterface(nibName_, *this);
  }
  return outlets_.view;
}

void EPGDorvaSelinViewController::setItems(std::shared_ptr<EPGItemList> items) {
  items_ = std::move(items);
  statesChangeCount_.reset();
  updateTagsTableView();
  updateImageURLTextField();
  updateTitleTextField();
  updateDescriptionTextField();
}

std::ptrdiff_t EPGDorvaSelinViewController::numberOfRowsInTableView(const TableView* /*tableView*/) const {
  return static_cast<std::ptrdiff_t>(tags_.size());
}

EPGDorvaSelinViewController::ObjectValue EPGDorvaSelinViewController::tableViewObjectValue(
    const TableView* tableView, const std::string& columnIdentifier, std::ptrdiff_t row) const {
  if (tableView != outlets_.tagsTableView) return {};
  if (columnIdentifier == "name" && isTagIndex(row)) return tags_[static_cast<std::size_t>(row)];
  // The state is that of the tag which setting this row would change.
  const int index = static_cast<int>(row);
  if (columnIdentifier == "selected" && isTagIndex(index)) return stateOfTagAtIndex(index);
  return {};
}

void EPGDorvaSelinViewController::tableViewSetObjectValue(const TableView* tableView, int proposedState,
                                                          const std::string& columnIdentifier, std::ptrdiff_t row) {
  if (tableView != outlets_.tagsTableView || columnIdentifier != "selected") return;
  // Mixed is only ever shown: a checkbox that would move there turns the tag on for every item instead.
  setStateOfTag(proposedState == TagStateMixed ? std::ptrdiff_t{TagStateOn} : proposedState, static_cast<int>(row));
}

bool EPGDorvaSelinViewController::isTagIndex(std::ptrdiff_t index) const {
  return index >= 0 && static_cast<std::size_t>(index) < tags_.size();
}

TagState EPGDorvaSelinViewController::stateOfTagAtIndex(int index) const {
  if (!items_ || !isTagIndex(index)) return TagStateOff;
  const std::string& tag = tags_[static_cast<std::size_t>(index)];
  const std::optional<std::size_t> changes = items_->changeCount();
  if (changes) {
    if (statesChangeCount_ != changes) {
      states_ = tagStates();
      statesChangeCount_ = changes;
    }
    return states_[tagIndexes_.find(tag)->second];
  }
  bool result = false;
  for (std::size_t i = 0; i < items_->size(); ++i) {
    const bool carried = holdsTag(tagsValue(items_->at(i)->values()), tag);
    if (i == 0) result = carried;
    if (carried != result) return TagStateMixed;
  }
  return result ? TagStateOn : TagStateOff;
}

std::vector<TagState> EPGDorvaSelinViewController::tagStates() const {
  constexpr std::size_t nobody = std::numeric_limits<std::size_t>::max();
  const std::size_t count = items_->size();
  std::vector<std::size_t> carriers(tags_.size(), 0);
  std::vector<std::size_t> lastCarrier(tags_.size(), nobody);  // A tag that an item lists twice counts once.
  for (std::size_t i = 0; i < count; ++i) {
    const PropertyListDictionary values = items_->at(i)->values();
    const PropertyList::Elements* const tags = tagsValue(values);
    if (!tags) continue;
    for (const PropertyList& element : *tags) {
      const auto name = element.asString();
      const auto tag = name ? tagIndexes_.find(*name) : tagIndexes_.end();
      if (tag == tagIndexes_.end() || lastCarrier[tag->second] == i) continue;
      lastCarrier[tag->second] = i;
      ++carriers[tag->second];
    }
  }
  std::vector<TagState> states;
  states.reserve(carriers.size());
  for (const std::size_t carrying : carriers) {
    states.push_back(carrying == 0 ? TagStateOff : carrying == count ? TagStateOn : TagStateMixed);
  }
  return states;
}

void EPGDorvaSelinViewController::setStateOfTag(std::ptrdiff_t state, int index) {
  if (!items_ || !isTagIndex(index) || (state != TagStateOn && state != TagStateOff)) return;
  const std::string& name = tags_[static_cast<std::size_t>(index)];
  const PropertyList tag(name);
  const SharedText tagsKey(ZRLEPGDSTagsKey);
  const std::optional<std::size_t> changesBefore = items_->changeCount();
  const std::size_t count = items_->size();
  std::size_t changedItems = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const std::shared_ptr<EPGItem> item = items_->at(i);
    const PropertyListDictionary values = item->values();
    std::optional<PropertyList::Elements> changed = changedTags(tagsValue(values), tag, state == TagStateOn);
    if (!changed) continue;
    item->set(tagsKey, std::move(*changed));
    ++changedItems;
  }
  // The other tags' states still hold, unless there were other changes: then the count is not the one kept here.
  if (count == 0 || !changesBefore || statesChangeCount_ != changesBefore) return;
  states_[tagIndexes_.find(name)->second] = state == TagStateOn ? TagStateOn : TagStateOff;
  statesChangeCount_ = *changesBefore + changedItems;
}

void EPGDorvaSelinViewController::updateTagsTableView() {
  if (outlets_.tagsTableView) outlets_.tagsTableView->reloadData();
}

void EPGDorvaSelinViewController::updateImageURLTextField() { updateTextField(epgItemTextAt("imageURL")); }

void EPGDorvaSelinViewController::updateTitleTextField() { updateTextField(epgItemTextAt("title")); }

void EPGDorvaSelinViewController::updateDescriptionTextField() { updateTextField(epgItemTextAt("description")); }

void EPGDorvaSelinViewController::updateTextField(std::size_t index) {
  TextField* const textField = outlets_.textFields[index];
  if (!textField) return;
  PropertyListDictionary commonHolder;
  std::optional<std::string_view> common;
  const std::size_t count = items_ ? items_->size() : 0;
  for (std::size_t i = 0; i < count; ++i) {
    PropertyListDictionary values = items_->at(i)->values();
    const auto value = stringValue(values, epgItemTexts[index].key);
    // Items without the entry are passed over only until the first that has it: after that they differ.
    if (common && value != common) {
      setMixedTextField(textField, true);
      return;
    }
    if (!common && value) {
      common = value;
      commonHolder = std::move(values);
    }
  }
  setMixedTextField(textField, false);
  textField->setStringValue(std::string(common.value_or(std::string_view())));
}

void EPGDorvaSelinViewController::setMixedTextField(TextField* textField, bool mixed) {
  if (!textField) return;
  if (mixed) {
    textField->setStringValue("");
    textField->setPlaceholderString(std::string(multipleValuesPlaceholder));
  } else {
    textField->setPlaceholderString(std::nullopt);
  }
}

void EPGDorvaSelinViewController::applyChanges() {
  std::vector<PropertyListDictionary::Entry> entries;
  for (std::size_t i = 0; i < epgItemTexts.size(); ++i) {
    const TextField* const field = outlets_.textFields[i];
    if (!field) continue;
    const std::string text = field->stringValue();
    const bool mixed = field->placeholderString().has_value();
    if (!mixed || !text.empty()) entries.emplace_back(epgItemTexts[i].key, text);
  }
  if (!items_ || entries.empty()) return;
  for (std::size_t i = 0; i < items_->size(); ++i) items_->at(i)->setValues(entries);
}

}  // namespace epg
