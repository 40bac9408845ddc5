#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "platform/Instant.h"
#include "plist/SharedRun.h"
#include "plist/SharedText.h"

namespace epg {

/// A value that is no property list: something of the host's that the store carries along but no file can hold.
class ForeignValue {
 public:
  virtual ~ForeignValue() = default;
};

class PropertyList;
class PropertyListDictionary;

/// Entries sorted by the bytes of their keys.
using PropertyListEntries = SharedRun<std::pair<SharedText, PropertyList>>;

/// A property-list dictionary: entries sorted by the bytes of their keys, each key once.
///
/// Copies share their entries, so copying is cheap whatever the dictionary holds, and several threads may read copies
/// of one dictionary at once. A change makes the entries anew and costs time in proportion to their number: whoever
/// has many makes the dictionary of all at once.
class PropertyListDictionary {
 public:
  using Entry = std::pair<SharedText, PropertyList>;

  PropertyListDictionary() noexcept = default;
  /// Of entries with the same key the last one counts.
  explicit PropertyListDictionary(std::vector<Entry> entries);

  /// The value under `key`, null when there is none. Lives until the last dictionary with these entries changes.
  const PropertyList* find(std::string_view key) const;
  void set(SharedText key, PropertyList value);
  void remove(std::string_view key);

  std::size_t size() const noexcept;
  bool empty() const noexcept;
  const Entry* begin() const noexcept;
  const Entry* end() const noexcept;

  /// Where its memory begins, null when empty; for `prefetch`.
  const void* block() const noexcept { return entries_.block(); }

  /// Whether both are copies of one dictionary, neither changed since.
  bool shares(const PropertyListDictionary& other) const noexcept;

  friend bool operator==(const PropertyListDictionary& a, const PropertyListDictionary& b);
  friend bool operator!=(const PropertyListDictionary& a, const PropertyListDictionary& b) { return !(a == b); }

 private:
  /// Where the key stands or would stand.
  const Entry* position(std::string_view key) const;

  PropertyListEntries entries_;
};

/// One property-list value: string, integer, real, boolean, date, data, array or dictionary.
///
/// A value never changes after it is made. Strings, data, arrays and dictionaries are shared between copies, so
/// copying is cheap whatever the value holds, and several threads may read copies of one value at once.
class PropertyList {
 public:
  enum class Type { String, Integer, Real, Boolean, Date, Data, Array, Dictionary, Foreign };

  /// The integers that the formats can hold: -2^63 to 2^64 - 1. Zero is never negative.
  struct Integer {
    std::uint64_t magnitude = 0;
    bool negative = false;
  };

  /// To make an array of.
  using Array = std::vector<PropertyList>;
  /// What an array holds.
  using Elements = SharedRun<PropertyList>;

  /// Containers nested deeper than this are neither read nor written. The outermost value is at depth 1.
  static constexpr int maximumDepth = 512;

  /// The empty string.
  PropertyList() = default;
  PropertyList(SharedText text) : value_(std::move(text)) {}
  PropertyList(std::string_view text) : PropertyList(SharedText(text)) {}
  PropertyList(const std::string& text) : PropertyList(SharedText(text)) {}
  PropertyList(const char* text) : PropertyList(SharedText(text)) {}
  PropertyList(Array elements);
  PropertyList(Elements elements) : value_(std::move(elements)) {}
  PropertyList(PropertyListDictionary entries) : value_(std::move(entries)) {}

  static PropertyList fromInteger(std::int64_t value);
  static PropertyList fromUnsigned(std::uint64_t value);
  static PropertyList fromReal(double value);
  static PropertyList fromBoolean(bool value);
  static PropertyList fromDate(Instant value);
  static PropertyList fromData(SharedText bytes);
  static PropertyList fromForeign(std::shared_ptr<const ForeignValue> value);

  Type type() const;

  /// Each of these answers nothing (null) when the value is of another type. Pointers and views live as long as this
  /// value; a view of a text, and the elements and entries, as long as any copy of it.
  std::optional<std::string_view> asString() const;
  std::optional<Integer> asInteger() const;
  const double* asReal() const;
  const bool* asBoolean() const;
  const Instant* asDate() const;
  std::optional<std::string_view> asData() const;
  const Elements* asArray() const;
  const PropertyListDictionary* asDictionary() const;
  const ForeignValue* asForeign() const;

  /// Where the memory of a string, an array or a dictionary begins, null for others and when it takes none; for
  /// `prefetch`.
  const void* block() const noexcept;

  /// The string itself, shared; null when the value is of another type.
  const SharedText* sharedText() const;

  /// Same type and same content. Two reals that are both not a number are equal; a foreign value equals itself only.
  friend bool operator==(const PropertyList& a, const PropertyList& b);
  friend bool operator!=(const PropertyList& a, const PropertyList& b) { return !(a == b); }

 private:
  // Stores hold millions of values: none of these is wider than a word of 64 bits.
  struct NegativeInteger {
    std::uint64_t magnitude;
  };
  struct Data {
    SharedText bytes;
  };
  using Foreign = SharedRun<std::shared_ptr<const ForeignValue>>;  ///< Of one element.
  using Value = std::variant<SharedText, std::uint64_t, NegativeInteger, double, bool, Instant, Data, Elements,
                             PropertyListDictionary, Foreign>;

  explicit PropertyList(Value value) : value_(std::move(value)) {}

  Value value_;
};

inline std::size_t PropertyListDictionary::size() const noexcept { return entries_.size(); }
inline bool PropertyListDictionary::empty() const noexcept { return entries_.empty(); }
inline const PropertyListDictionary::Entry* PropertyListDictionary::begin() const noexcept { return entries_.begin(); }
inline const PropertyListDictionary::Entry* PropertyListDictionary::end() const noexcept { return entries_.end(); }
inline bool PropertyListDictionary::shares(const PropertyListDictionary& other) const noexcept {
  return entries_.data() == other.entries_.data();
}

inline const SharedText* PropertyList::sharedText() const { return std::get_if<SharedText>(&value_); }

}  // namespace epg
