// Files of random stores, held against the plainest way of making them: byte for byte.

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cmath>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "plugin/EPGItemStore.h"
#include "tests/support/HostileText.h"
#include "tests/support/PlainPropertyListXML.h"
#include "tests/support/Property.h"
#include "tests/support/StoreContent.h"

namespace epg::test {
namespace {

using Entries = std::vector<PropertyListDictionary::Entry>;

std::optional<std::string> fileOf(const EPGItemStoreSnapshot& snapshot) {
  std::string file;
  StringSink sink(file);
  if (!writeStore(sink, snapshot)) return std::nullopt;
  sink.flush();
  return file;
}

/// Often the same but for their ends, often such as XML cannot carry, and then often the same once it does.
rc::Gen<std::string> uniqueID() {
  const auto beginning = rc::gen::element<std::string>("", "entry-", "entry-of-some-length-", "e");
  const auto end = rc::gen::weightedOneOf<std::string>(
      {{6, rc::gen::map(below(200), [](std::size_t number) { return std::to_string(number); })},
       {1, rc::gen::element<std::string>("", std::string(1, '\0'), std::string(2, '\0'), "\x01", "\x02", "\xEF\xBF\xBE",
                                         "\xEF\xBF\xBD", "\xEF\xBF\xBD\xEF\xBF\xBD", "\x7F", "\xC3\xA9", "\xF4", "&",
                                         "<\r")}});
  return rc::gen::apply([](const std::string& a, const std::string& b) { return a + b; }, beginning, end);
}

rc::Gen<PropertyList> leaf() {
  class HostsOwn : public ForeignValue {};
  const auto rare =
      rc::gen::element(PropertyList::fromReal(0.1), PropertyList::fromReal(std::nan("")), PropertyList::fromInteger(-7),
                       PropertyList::fromBoolean(true), PropertyList::fromDate(Instant{1e9}),
                       PropertyList::fromData("\x01\xFFxyz"), PropertyList::fromData(std::string(200, 'd')),
                       PropertyList(PropertyListDictionary()), PropertyList(PropertyList::Array()));
  const auto unwritable = rc::gen::element(PropertyList::fromForeign(std::make_shared<HostsOwn>()),
                                           PropertyList::fromDate(Instant{std::nan("")}));
  return rc::gen::weightedOneOf<PropertyList>(
      {{120, rc::gen::map(mostlyUTF8(300), [](std::string text) { return PropertyList(std::move(text)); })},
       {20, rare},
       {1, unwritable}});
}

rc::Gen<PropertyList> value() {
  return rc::gen::weightedOneOf<PropertyList>(
      {{4, leaf()},
       {1, rc::gen::map(upTo(4, leaf()), [](PropertyList::Array list) { return PropertyList(std::move(list)); })}});
}

rc::Gen<PropertyListDictionary> item() {
  const auto key = rc::gen::weightedOneOf<std::string>(
      {{8, rc::gen::element<std::string>("title", "tags", "description", "uniqueID", "imageURL")},
       {1, rc::gen::map(mostlyUTF8(100), [](std::string text) { return text; })}});
  return rc::gen::map(upTo(6, rc::gen::pair(key, value())), [](const auto& pairs) {
    Entries entries;
    for (const auto& [name, content] : pairs) entries.emplace_back(name, content);
    return PropertyListDictionary(std::move(entries));
  });
}

TEST(StoreFileProperties, EveryStoreFileIsThatOfThePlainWay) {
  std::size_t refused = 0;
  std::size_t written = 0;
  expectForCases(1000, [&] {
    EPGItemStore store;
    for (const auto& [id, values] : *upTo(30, rc::gen::pair(uniqueID(), item()))) {
      store.setItem(id, std::make_shared<EPGItem>(values));
    }
    for (const auto& [id, content] : *upTo(2, rc::gen::pair(uniqueID(), leaf()))) {
      EPGItemStoreEntry entry;
      entry.value = content;
      store.setEntry(id, std::move(entry));
    }
    const EPGItemStoreSnapshot snapshot = store.snapshot();
    const auto file = fileOf(snapshot);
    RC_ASSERT(file == plainPropertyListXML(propertyListOfStore(snapshot)));
    ++(file ? written : refused);
  });
  // Neither answer may be given always.
  EXPECT_GT(refused, 10U);
  EXPECT_GT(written, 100U);
}

}  // namespace
}  // namespace epg::test
