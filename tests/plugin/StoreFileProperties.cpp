// Files of random stores, held against the plainest way of making them: byte for byte.

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "model/EPGItemStore.h"
#include "store/ItemStoreFile.h"
#include "store/MemoryItem.h"
#include "store/ShardedItemStore.h"
#include "tests/support/HostileText.h"
#include "tests/support/NaivePropertyListXML.h"
#include "tests/support/Property.h"
#include "tests/support/StoreContent.h"

namespace epg::test {
namespace {

using namespace std::string_view_literals;

using Entries = std::vector<PropertyListDictionary::Entry>;

std::optional<std::string> fileOf(const EPGItemStoreSnapshot& snapshot) {
  std::string file;
  StringSink sink(file);
  if (!writeItemStore(sink, snapshot)) return std::nullopt;
  sink.flush();
  return file;
}

/// Often the same but for their ends, often such as XML cannot carry, and then often the same once it does.
std::string uniqueID() {
  const std::string beginning = oneTextOf({"", "entry-", "entry-of-some-length-", "e"});
  if (!onceIn(7)) return beginning + std::to_string(below(200));
  return beginning + oneTextOf({"", "\0"sv, "\0\0"sv, "\x01", "\x02", "\xEF\xBF\xBE", "\xEF\xBF\xBD",
                                "\xEF\xBF\xBD\xEF\xBF\xBD", "\x7F", "\xC3\xA9", "\xF4", "&", "<\r"});
}

PropertyList leaf() {
  class HostsOwn : public ForeignValue {};
  static const std::vector<PropertyList> rare = {PropertyList::fromReal(0.1),
                                                 PropertyList::fromReal(std::nan("")),
                                                 PropertyList::fromInteger(-7),
                                                 PropertyList::fromBoolean(true),
                                                 PropertyList::fromDate(Instant{1e9}),
                                                 PropertyList::fromData("\x01\xFFxyz"),
                                                 PropertyList::fromData(std::string(200, 'd')),
                                                 PropertyList(PropertyListDictionary()),
                                                 PropertyList(PropertyList::Array())};
  const std::size_t kind = below(141);
  if (kind < 120) return PropertyList(mostlyUTF8(300));
  if (kind < 140) return oneOf(rare);
  if (onceIn(2)) return PropertyList::fromForeign(std::make_shared<HostsOwn>());
  return PropertyList::fromDate(Instant{std::nan("")});
}

PropertyList value() {
  if (onceIn(5)) return PropertyList(upTo(4, leaf));
  return leaf();
}

std::string key() {
  if (onceIn(9)) return mostlyUTF8(100);
  return oneTextOf({"title", "tags", "description", "uniqueID", "imageURL"});
}

PropertyListDictionary item() {
  Entries entries;
  for (Times times(0, 6); times.next();) {
    std::string name = key();
    entries.emplace_back(std::move(name), value());
  }
  return PropertyListDictionary(std::move(entries));
}

TEST(StoreFileProperties, EveryStoreFileIsThatOfTheNaiveWay) {
  std::size_t refused = 0;
  std::size_t written = 0;
  expectForCases(1000, [&] {
    ShardedItemStore store;
    for (Times items(0, 30); items.next();) {
      const std::string id = uniqueID();
      store.setItem(id, std::make_shared<MemoryItem>(item()));
    }
    for (Times others(0, 2); others.next();) {
      const std::string id = uniqueID();
      EPGItemStoreEntry entry;
      entry.value = leaf();
      store.setEntry(id, std::move(entry));
    }
    const std::shared_ptr<const EPGItemStoreSnapshot> snapshot = store.snapshot();
    const auto file = fileOf(*snapshot);
    tell("file", file);
    HOLDS(file == naivePropertyListXML(propertyListOfStore(snapshot)));
    ++(file ? written : refused);
  });
  // Neither answer may be given always.
  EXPECT_GT(refused, 10U);
  EXPECT_GT(written, 100U);
}

}  // namespace
}  // namespace epg::test
