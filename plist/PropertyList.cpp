#include "plist/PropertyList.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace epg {

namespace {

bool sameReal(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

}  // namespace

PropertyList::PropertyList(Array elements)
    : value_(Elements(std::make_move_iterator(elements.begin()), std::make_move_iterator(elements.end()))) {}

PropertyList PropertyList::fromInteger(std::int64_t value) {
  const auto bits = static_cast<std::uint64_t>(value);
  return value < 0 ? PropertyList(Value(NegativeInteger{0 - bits})) : fromUnsigned(bits);
}

PropertyList PropertyList::fromUnsigned(std::uint64_t value) { return PropertyList(Value(value)); }
PropertyList PropertyList::fromReal(double value) { return PropertyList(Value(value)); }
PropertyList PropertyList::fromBoolean(bool value) { return PropertyList(Value(value)); }
PropertyList PropertyList::fromDate(Instant value) { return PropertyList(Value(value)); }
PropertyList PropertyList::fromData(SharedText bytes) { return PropertyList(Value(Data{std::move(bytes)})); }

PropertyList PropertyList::fromForeign(std::shared_ptr<const ForeignValue> value) {
  auto* const only = &value;
  return PropertyList(Value(Foreign(std::make_move_iterator(only), std::make_move_iterator(only + 1))));
}

PropertyList::Type PropertyList::type() const {
  // In the order of the alternatives of Value.
  static constexpr Type types[] = {Type::String, Type::Integer, Type::Integer, Type::Real,       Type::Boolean,
                                   Type::Date,   Type::Data,    Type::Array,   Type::Dictionary, Type::Foreign};
  return types[value_.index()];
}

std::optional<std::string_view> PropertyList::asString() const {
  const SharedText* const text = sharedText();
  return text ? std::optional<std::string_view>(*text) : std::nullopt;
}

std::optional<PropertyList::Integer> PropertyList::asInteger() const {
  if (const auto* magnitude = std::get_if<std::uint64_t>(&value_)) return Integer{*magnitude, false};
  if (const auto* integer = std::get_if<NegativeInteger>(&value_)) return Integer{integer->magnitude, true};
  return std::nullopt;
}

const double* PropertyList::asReal() const { return std::get_if<double>(&value_); }
const bool* PropertyList::asBoolean() const { return std::get_if<bool>(&value_); }
const Instant* PropertyList::asDate() const { return std::get_if<Instant>(&value_); }

std::optional<std::string_view> PropertyList::asData() const {
  const auto* data = std::get_if<Data>(&value_);
  return data ? std::optional<std::string_view>(data->bytes) : std::nullopt;
}

const PropertyList::Elements* PropertyList::asArray() const { return std::get_if<Elements>(&value_); }
const PropertyListDictionary* PropertyList::asDictionary() const {
  return std::get_if<PropertyListDictionary>(&value_);
}

const ForeignValue* PropertyList::asForeign() const {
  const auto* foreign = std::get_if<Foreign>(&value_);
  return foreign ? (*foreign)[0].get() : nullptr;
}

const void* PropertyList::block() const noexcept {
  if (const auto* text = std::get_if<SharedText>(&value_)) return text->block();
  if (const auto* elements = std::get_if<Elements>(&value_)) return elements->block();
  const auto* entries = std::get_if<PropertyListDictionary>(&value_);
  return entries ? entries->block() : nullptr;
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
    case PropertyList::Type::Array: {
      const PropertyList::Elements& one = *a.asArray();
      const PropertyList::Elements& other = *b.asArray();
      return one.data() == other.data() || std::equal(one.begin(), one.end(), other.begin(), other.end());
    }
    case PropertyList::Type::Dictionary:
      return *a.asDictionary() == *b.asDictionary();
    case PropertyList::Type::Foreign:
      return a.asForeign() == b.asForeign();
  }
  return false;
}

PropertyListDictionary::PropertyListDictionary(std::vector<Entry> entries) {
  const auto before = [](const Entry& a, const Entry& b) { return a.first < b.first; };
  // Most come in order, for that is how they are written.
  if (!std::is_sorted(entries.begin(), entries.end(), before)) {
    std::stable_sort(entries.begin(), entries.end(), before);
  }
  // Of equal keys keep the last: unique from the back keeps the first it meets there.
  const auto kept =
      std::unique(entries.rbegin(), entries.rend(), [](const Entry& a, const Entry& b) { return a.first == b.first; });
  entries_ = PropertyListEntries(std::make_move_iterator(kept.base()), std::make_move_iterator(entries.end()));
}

const PropertyList* PropertyListDictionary::find(std::string_view key) const {
  const Entry* const entry = position(key);
  return entry != end() && entry->first == key ? &entry->second : nullptr;
}

const PropertyListDictionary::Entry* PropertyListDictionary::position(std::string_view key) const {
  return std::lower_bound(begin(), end(), key,
                          [](const Entry& entry, std::string_view wanted) { return entry.first.view() < wanted; });
}

void PropertyListDictionary::set(SharedText key, PropertyList value) {
  const Entry* const place = position(key);
  const bool stands = place != end() && place->first == key;
  const auto at = static_cast<std::size_t>(place - begin());
  entries_ = entries_.with(Entry(std::move(key), std::move(value)), at, stands ? 1 : 0);
}

void PropertyListDictionary::remove(std::string_view key) {
  const Entry* const place = position(key);
  if (place == end() || place->first != key) return;
  std::vector<Entry> entries;
  entries.reserve(size() - 1);
  entries.assign(begin(), place);
  entries.insert(entries.end(), place + 1, end());
  entries_ = PropertyListEntries(std::make_move_iterator(entries.begin()), std::make_move_iterator(entries.end()));
}

bool operator==(const PropertyListDictionary& a, const PropertyListDictionary& b) {
  return a.shares(b) || std::equal(a.begin(), a.end(), b.begin(), b.end());
}

}  // namespace epg
