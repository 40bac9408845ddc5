#include "platform/PropertyList.h"

#include <algorithm>
#include <cmath>

namespace epg {

namespace {

bool sameReal(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

}  // namespace

PropertyList::PropertyList() : PropertyList(std::string()) {}
PropertyList::PropertyList(std::string text) : value_(std::make_shared<const std::string>(std::move(text))) {}
PropertyList::PropertyList(const char* text) : PropertyList(std::string(text)) {}
PropertyList::PropertyList(Array elements) : value_(std::make_shared<const Array>(std::move(elements))) {}
PropertyList::PropertyList(PropertyListDictionary entries)
    : value_(std::make_shared<const PropertyListDictionary>(std::move(entries))) {}
PropertyList::PropertyList(std::shared_ptr<const PropertyListDictionary> entries) : value_(std::move(entries)) {}

PropertyList PropertyList::fromInteger(std::int64_t value) {
  Integer integer;
  integer.negative = value < 0;
  const auto bits = static_cast<std::uint64_t>(value);
  integer.magnitude = value < 0 ? 0 - bits : bits;
  return PropertyList(Value(integer));
}

PropertyList PropertyList::fromUnsigned(std::uint64_t value) {
  Integer integer;
  integer.magnitude = value;
  return PropertyList(Value(integer));
}

PropertyList PropertyList::fromReal(double value) { return PropertyList(Value(value)); }
PropertyList PropertyList::fromBoolean(bool value) { return PropertyList(Value(value)); }
PropertyList PropertyList::fromDate(Instant value) { return PropertyList(Value(value)); }

PropertyList PropertyList::fromData(std::string bytes) {
  return PropertyList(Value(Data{std::make_shared<const std::string>(std::move(bytes))}));
}

PropertyList PropertyList::fromForeign(std::shared_ptr<const ForeignValue> value) {
  return PropertyList(Value(std::move(value)));
}

const std::string* PropertyList::asString() const {
  const auto* text = std::get_if<std::shared_ptr<const std::string>>(&value_);
  return text ? text->get() : nullptr;
}

const PropertyList::Integer* PropertyList::asInteger() const { return std::get_if<Integer>(&value_); }
const double* PropertyList::asReal() const { return std::get_if<double>(&value_); }
const bool* PropertyList::asBoolean() const { return std::get_if<bool>(&value_); }
const Instant* PropertyList::asDate() const { return std::get_if<Instant>(&value_); }

const std::string* PropertyList::asData() const {
  const auto* data = std::get_if<Data>(&value_);
  return data ? data->bytes.get() : nullptr;
}

const PropertyList::Array* PropertyList::asArray() const {
  const auto* array = std::get_if<std::shared_ptr<const Array>>(&value_);
  return array ? array->get() : nullptr;
}

const PropertyListDictionary* PropertyList::asDictionary() const {
  const auto* dictionary = std::get_if<std::shared_ptr<const PropertyListDictionary>>(&value_);
  return dictionary ? dictionary->get() : nullptr;
}

const ForeignValue* PropertyList::asForeign() const {
  const auto* foreign = std::get_if<std::shared_ptr<const ForeignValue>>(&value_);
  return foreign ? foreign->get() : nullptr;
}

std::shared_ptr<const PropertyListDictionary> PropertyList::sharedDictionary() const {
  const auto* dictionary = std::get_if<std::shared_ptr<const PropertyListDictionary>>(&value_);
  return dictionary ? *dictionary : nullptr;
}

bool operator==(const PropertyList& a, const PropertyList& b) {
  if (a.type() != b.type()) return false;
  switch (a.type()) {
    case PropertyList::Type::String:
      return *a.asString() == *b.asString();
    case PropertyList::Type::Integer:
      return a.asInteger()->magnitude == b.asInteger()->magnitude && a.asInteger()->negative == b.asInteger()->negative;
    case PropertyList::Type::Real:
      return sameReal(*a.asReal(), *b.asReal());
    case PropertyList::Type::Boolean:
      return *a.asBoolean() == *b.asBoolean();
    case PropertyList::Type::Date:
      return sameReal(a.asDate()->secondsSinceReferenceDate, b.asDate()->secondsSinceReferenceDate);
    case PropertyList::Type::Data:
      return *a.asData() == *b.asData();
    case PropertyList::Type::Array:
      return a.asArray() == b.asArray() || *a.asArray() == *b.asArray();
    case PropertyList::Type::Dictionary:
      return a.asDictionary() == b.asDictionary() || *a.asDictionary() == *b.asDictionary();
    case PropertyList::Type::Foreign:
      return a.asForeign() == b.asForeign();
  }
  return false;
}

PropertyListDictionary::PropertyListDictionary(std::vector<Entry> entries) : entries_(std::move(entries)) {
  std::stable_sort(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) { return a.first < b.first; });
  // Of equal keys keep the last: unique from the back keeps the first it meets there.
  const auto kept = std::unique(entries_.rbegin(), entries_.rend(),
                                [](const Entry& a, const Entry& b) { return a.first == b.first; });
  entries_.erase(entries_.begin(), kept.base());
}

std::vector<PropertyListDictionary::Entry>::iterator PropertyListDictionary::position(const std::string& key) {
  return std::lower_bound(entries_.begin(), entries_.end(), key,
                          [](const Entry& entry, const std::string& wanted) { return entry.first < wanted; });
}

const PropertyList* PropertyListDictionary::find(const std::string& key) const {
  const auto entry = std::lower_bound(entries_.begin(), entries_.end(), key,
                                      [](const Entry& e, const std::string& wanted) { return e.first < wanted; });
  return entry != entries_.end() && entry->first == key ? &entry->second : nullptr;
}

void PropertyListDictionary::set(const std::string& key, PropertyList value) {
  const auto entry = position(key);
  if (entry != entries_.end() && entry->first == key) {
    entry->second = std::move(value);
  } else {
    entries_.emplace(entry, key, std::move(value));
  }
}

void PropertyListDictionary::remove(const std::string& key) {
  const auto entry = position(key);
  if (entry != entries_.end() && entry->first == key) entries_.erase(entry);
}

}  // namespace epg
