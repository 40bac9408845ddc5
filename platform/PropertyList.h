#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "platform/Instant.h"

namespace epg {

class PropertyListDictionary;

/// A value that is no property list: something of the host's that the store carries along but no file can hold.
class ForeignValue {
 public:
  virtual ~ForeignValue() = default;
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

  using Array = std::vector<PropertyList>;

  /// Containers nested deeper than this are neither read nor written. The outermost value is at depth 1.
  static constexpr int maximumDepth = 512;

  /// The empty string.
  PropertyList();
  PropertyList(std::string text);
  PropertyList(const char* text);
  PropertyList(Array elements);
  PropertyList(PropertyListDictionary entries);
  /// Shares the dictionary, which must not be null.
  explicit PropertyList(std::shared_ptr<const PropertyListDictionary> entries);

  static PropertyList fromInteger(std::int64_t value);
  static PropertyList fromUnsigned(std::uint64_t value);
  static PropertyList fromReal(double value);
  static PropertyList fromBoolean(bool value);
  static PropertyList fromDate(Instant value);
  static PropertyList fromData(std::string bytes);
  static PropertyList fromForeign(std::shared_ptr<const ForeignValue> value);

  Type type() const { return static_cast<Type>(value_.index()); }

  /// Each of these answers nothing (null) when the value is of another type. Pointers live as long as this value.
  const std::string* asString() const;
  const Integer* asInteger() const;
  const double* asReal() const;
  const bool* asBoolean() const;
  const Instant* asDate() const;
  const std::string* asData() const;
  const Array* asArray() const;
  const PropertyListDictionary* asDictionary() const;
  const ForeignValue* asForeign() const;

  /// The dictionary itself, shared; null when the value is of another type.
  std::shared_ptr<const PropertyListDictionary> sharedDictionary() const;

  /// Same type and same content. Two reals that are both not a number are equal; a foreign value equals itself only.
  friend bool operator==(const PropertyList& a, const PropertyList& b);
  friend bool operator!=(const PropertyList& a, const PropertyList& b) { return !(a == b); }

 private:
  struct Data {
    std::shared_ptr<const std::string> bytes;
  };
  // In the order of Type.
  using Value = std::variant<std::shared_ptr<const std::string>, Integer, double, bool, Instant, Data,
                             std::shared_ptr<const Array>, std::shared_ptr<const PropertyListDictionary>,
                             std::shared_ptr<const ForeignValue>>;

  explicit PropertyList(Value value) : value_(std::move(value)) {}

  Value value_;
};

/// A property-list dictionary: entries sorted by the bytes of their keys, each key once.
class PropertyListDictionary {
 public:
  using Entry = std::pair<std::string, PropertyList>;

  PropertyListDictionary() = default;
  /// Of entries with the same key the last one counts.
  explicit PropertyListDictionary(std::vector<Entry> entries);

  /// The value under `key`, null when there is none. Lives until the dictionary changes.
  const PropertyList* find(const std::string& key) const;
  void set(const std::string& key, PropertyList value);
  void remove(const std::string& key);

  std::size_t size() const { return entries_.size(); }
  bool empty() const { return entries_.empty(); }
  std::vector<Entry>::const_iterator begin() const { return entries_.begin(); }
  std::vector<Entry>::const_iterator end() const { return entries_.end(); }

  friend bool operator==(const PropertyListDictionary& a, const PropertyListDictionary& b) {
    return a.entries_ == b.entries_;
  }

 private:
  std::vector<Entry>::iterator position(const std::string& key);

  std::vector<Entry> entries_;
};

}  // namespace epg
