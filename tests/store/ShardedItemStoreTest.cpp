#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "model/KeyConstants.h"
#include "store/ItemStoreShard.h"
#include "store/MemoryItem.h"
#include "store/ShardedItemStore.h"
#include "tests/support/Dictionary.h"
#include "tests/support/Items.h"
#include "tests/support/StoreContent.h"

namespace epg::test {
namespace {

using testing::ElementsAre;

TEST(ShardedItemStoreTest, FindsAnItemByItsKeyAlone) {
  ShardedItemStore store;
  const auto item = itemWith({{ZRLEPGDSUniqueIDKey, "other"}});
  store.setItem("E1", item);
  EXPECT_EQ(item, store.item("E1"));
  EXPECT_FALSE(store.item("other"));
  EXPECT_FALSE(store.item(""));
}

TEST(ShardedItemStoreTest, IDsAreComparedExactly) {
  ShardedItemStore store;
  for (const char* const id : {"e", "E", " e", "e ", "", "caf\xC3\xA9", "cafe\xCC\x81"})
    store.setItem(id, itemTitled(id));
  EXPECT_EQ(7U, store.size());
  for (const std::string& id : store.uniqueIDs()) EXPECT_EQ(id, textOf(*store.item(id), ZRLEPGDSTitleKey));
}

TEST(ShardedItemStoreTest, SettingAnItemReplacesTheOldOne) {
  ShardedItemStore store;
  const auto old = itemTitled("old");
  store.setItem("E1", old);
  store.setItem("E1", itemTitled("new"));
  EXPECT_EQ("new", textOf(*store.item("E1"), ZRLEPGDSTitleKey));
  EXPECT_EQ("old", textOf(*old, ZRLEPGDSTitleKey));
  EXPECT_EQ(1U, store.size());
}

TEST(ShardedItemStoreTest, SettingNoItemChangesNothing) {
  ShardedItemStore store;
  store.setItem("E1", itemTitled("A"));
  store.setItem("E1", nullptr);
  store.setItem("E2", nullptr);
  EXPECT_THAT(store.uniqueIDs(), ElementsAre("E1"));
}

TEST(ShardedItemStoreTest, ItemsAreSharedWithWhoeverTookThem) {
  ShardedItemStore store;
  store.setItem("E1", itemTitled("A"));
  store.item("E1")->set(ZRLEPGDSTitleKey, "B");
  EXPECT_EQ("B", textOf(*store.item("E1"), ZRLEPGDSTitleKey));
}

TEST(ShardedItemStoreTest, ARemovedItemLivesOnWithWhoeverHoldsIt) {
  ShardedItemStore store;
  store.setItem("E1", itemTitled("A"));
  const auto held = store.item("E1");
  store.removeItem("E1");
  store.removeItem("E1");
  EXPECT_FALSE(store.item("E1"));
  EXPECT_EQ("A", textOf(*held, ZRLEPGDSTitleKey));
}

TEST(ShardedItemStoreTest, IDsAreSortedByTheirBytes) {
  ShardedItemStore store;
  for (const char* const id : {"b", "B", "\xC3\xA9", "a10", "a2", ""}) store.setItem(id, itemWith({}));
  EXPECT_THAT(store.uniqueIDs(), ElementsAre("", "B", "a10", "a2", "b", "\xC3\xA9"));
}

TEST(ShardedItemStoreTest, ValuesThatAreNoDictionariesAreNoItems) {
  ShardedItemStore store(dictionaryOf({{"E1", dictionaryOf({})},
                                       {"number", PropertyList::fromInteger(7)},
                                       {"text", "x"},
                                       {"list", PropertyList::Array{PropertyList(dictionaryOf({}))}}}));
  EXPECT_EQ(1U, store.size());
  EXPECT_THAT(store.uniqueIDs(), ElementsAre("E1"));
  EXPECT_FALSE(store.item("number"));
  store.removeItem("number");
  ASSERT_TRUE(store.record("number"));
  EXPECT_EQ(PropertyList::fromInteger(7), store.record("number")->entry.value);
}

TEST(ShardedItemStoreTest, AnItemTakesThePlaceOfAValueThatIsNone) {
  ShardedItemStore store(dictionaryOf({{"E1", "x"}}));
  store.setItem("E1", itemTitled("A"));
  EXPECT_EQ(1U, store.size());
  EXPECT_EQ(PropertyList(dictionaryOf({{"E1", dictionaryOf({{ZRLEPGDSTitleKey, "A"}})}})),
            propertyListOfStore(store.snapshot()));
}

TEST(ShardedItemStoreTest, EntriesCanBeSetAndRemovedWhateverTheyAre) {
  ShardedItemStore store;
  EPGItemStoreEntry number;
  number.value = PropertyList::fromInteger(7);
  store.setEntry("n", number);
  EXPECT_FALSE(store.item("n"));
  EXPECT_EQ(0U, store.size());
  store.removeEntry("n");
  store.removeEntry("n");
  EXPECT_FALSE(store.record("n"));
  EXPECT_EQ(0U, store.snapshot()->size());
}

TEST(ShardedItemStoreTest, ASnapshotKeepsTheItemsThatStoodThereThen) {
  ShardedItemStore store;
  store.setItem("E1", itemTitled("A"));
  store.setItem("E2", itemTitled("B"));
  const std::shared_ptr<const EPGItemStoreSnapshot> snapshot = store.snapshot();
  store.setItem("E1", itemTitled("C"));
  store.removeItem("E2");
  store.setItem("E3", itemTitled("D"));
  EXPECT_EQ(PropertyList(dictionaryOf(
                {{"E1", dictionaryOf({{ZRLEPGDSTitleKey, "A"}})}, {"E2", dictionaryOf({{ZRLEPGDSTitleKey, "B"}})}})),
            propertyListOfStore(snapshot));
}

TEST(ShardedItemStoreTest, ASnapshotSharesTheItemsWithTheStore) {
  ShardedItemStore store;
  store.setItem("E1", itemTitled("A"));
  const std::shared_ptr<const EPGItemStoreSnapshot> snapshot = store.snapshot();
  ASSERT_EQ(1U, snapshot->size());
  EXPECT_EQ(store.item("E1"), snapshot->records().front()->entry.item);
}

TEST(ShardedItemStoreTest, ASnapshotOfManyEntriesKeepsThemAllWhateverChanges) {
  ShardedItemStore store;
  std::map<std::string, std::shared_ptr<EPGItem>> expected;
  for (int i = 0; i < 5000; ++i) {
    const std::string id = "entry " + std::to_string(i);
    store.setItem(id, expected[id] = itemTitled(id));
  }
  const std::shared_ptr<const EPGItemStoreSnapshot> snapshot = store.snapshot();
  for (int i = 0; i < 5000; i += 2) store.removeItem("entry " + std::to_string(i));
  for (int i = 1; i < 5000; i += 4) store.setItem("entry " + std::to_string(i), itemTitled("another"));
  for (int i = 0; i < 100; ++i) store.setItem("new " + std::to_string(i), itemTitled("new"));
  EXPECT_EQ(2600U, store.size());
  ASSERT_EQ(expected.size(), snapshot->size());
  std::map<std::string, std::shared_ptr<EPGItem>> found;
  for (const EPGItemStoreRecord* const record : snapshot->records()) {
    found[std::string(record->uniqueID)] = record->entry.item;
  }
  EXPECT_EQ(expected, found);
  ASSERT_TRUE(snapshot->find("entry 4998"));
  EXPECT_EQ(expected["entry 4998"], snapshot->find("entry 4998")->entry.item);
  EXPECT_FALSE(snapshot->find("new 1"));
}

TEST(ItemStoreShardTest, TellsIDsWithTheSameHashApart) {
  const auto record = [](const char* id) {
    return std::make_shared<const EPGItemStoreRecord>(id, EPGItemStoreEntry{});
  };
  ItemStoreShard shard;
  for (const char* const id : {"a", "b", "c"}) EXPECT_FALSE(shard.set(7, record(id)));
  EXPECT_FALSE(shard.set(6, record("before")));
  EXPECT_FALSE(shard.set(8, record("behind")));
  const auto another = record("b");
  EXPECT_EQ("b", shard.set(7, another)->uniqueID);
  EXPECT_EQ(another, shard.find(7, "b"));
  EXPECT_EQ("a", shard.remove(7, "a")->uniqueID);
  EXPECT_FALSE(shard.remove(7, "a"));
  EXPECT_FALSE(shard.find(7, "behind"));
  EXPECT_EQ("c", shard.find(7, "c")->uniqueID);
  EXPECT_EQ("b", shard.firstWithHash(7)->uniqueID);
  EXPECT_FALSE(shard.firstWithHash(5));
}

/// Of the hashes only few bits differ, at either end, so that records stand far from where their search begins, and
/// around the end of the slots.
TEST(ItemStoreShardTest, HoldsWhatAMapHoldsWhateverIsPutInAndTakenOut) {
  const auto hashOf = [](std::size_t number) {
    constexpr int shift = std::numeric_limits<std::size_t>::digits - 2;
    return (3 - number % 3) << shift | number / 20;
  };
  std::mt19937 chance;  // NOLINT: the same every time is what is wanted
  ItemStoreShard shard;
  std::map<std::string, ItemStoreShard::Record> expected;
  for (int step = 0; step < 20000; ++step) {
    const std::size_t number = chance() % 60;
    const std::string id = std::to_string(number);
    const std::size_t hash = hashOf(number);
    if (chance() % 5 < 2) {
      const auto before = expected.find(id);
      EXPECT_EQ(shard.remove(hash, id), before == expected.end() ? nullptr : before->second);
      expected.erase(id);
    } else {
      const auto record = std::make_shared<const EPGItemStoreRecord>(id, EPGItemStoreEntry{});
      EXPECT_EQ(shard.set(hash, record), expected[id]);
      expected[id] = record;
    }
    std::size_t records = 0;
    for (const ItemStoreShard::Slot& slot : shard.slots()) records += slot.record ? 1U : 0U;
    ASSERT_EQ(records, expected.size());
    for (std::size_t each = 0; each < 60; ++each) {
      const auto found = expected.find(std::to_string(each));
      ASSERT_EQ(shard.find(hashOf(each), std::to_string(each)), found == expected.end() ? nullptr : found->second);
    }
  }
}

/// A value of the host's that looks at something when it goes.
class LookingBack : public ForeignValue {
 public:
  explicit LookingBack(std::function<void()> look) : look_(std::move(look)) {}
  LookingBack(const LookingBack&) = delete;
  LookingBack& operator=(const LookingBack&) = delete;
  ~LookingBack() override { look_(); }

 private:
  std::function<void()> look_;
};

TEST(ShardedItemStoreTest, WhatGoesWithAnItemMayLookAtTheStore) {
  ShardedItemStore store;
  int looks = 0;
  const auto put = [&] {
    auto value = std::make_shared<LookingBack>([&] { looks += store.item("other") ? 100 : 1; });
    store.setItem("E1", itemWith({{"hosts own", PropertyList::fromForeign(std::move(value))}}));
  };
  put();
  put();  // Replaces the first.
  store.removeItem("E1");
  EXPECT_EQ(2, looks);
  put();
  store.removeEntry("E1");
  EXPECT_EQ(3, looks);
}

TEST(ShardedItemStoreTest, WhatGoesWithAValueMayLookAtTheItem) {
  const auto item = itemTitled("A");
  int looks = 0;
  const auto put = [&] {
    auto value = std::make_shared<LookingBack>([&] { looks += item->values().find(ZRLEPGDSTitleKey) ? 1 : 100; });
    item->set("hosts own", PropertyList::fromForeign(std::move(value)));
  };
  put();
  put();
  item->remove("hosts own");
  EXPECT_EQ(2, looks);
}

TEST(ShardedItemStoreTest, SeveralItemsAreFoundAsEachByItself) {
  ShardedItemStore store;
  EPGItemStoreEntry noItem;
  noItem.value = "none";
  store.setItem("a", itemWith({{ZRLEPGDSTitleKey, "A"}, {ZRLEPGDSTagsKey, PropertyList::Array{"x", "y"}}}));
  store.setItem("empty", std::make_shared<MemoryItem>());
  store.setEntry("no item", noItem);
  const std::string a = "a", empty = "empty", none = "no item", missing = "missing";
  using Values = std::vector<std::optional<PropertyListDictionary>>;
  EXPECT_EQ(ShardedItemStore().values({&a, &missing}), (Values{std::nullopt, std::nullopt}));
  EXPECT_EQ(store.values(std::vector<const std::string*>()), Values());
  const PropertyListDictionary ofA = store.item("a")->values();
  EXPECT_EQ(store.values({&a, &empty, &none, &missing, &a}),
            (Values{ofA, PropertyListDictionary(), std::nullopt, std::nullopt, ofA}));
}

TEST(ShardedItemStoreTest, CanBeReadAndChangedByManyThreadsAtOnce) {
  ShardedItemStore store;
  std::atomic<bool> done{false};
  std::thread reader([&] {
    while (!done) {
      const std::shared_ptr<const EPGItemStoreSnapshot> snapshot = store.snapshot();
      for (const EPGItemStoreRecord* const record : snapshot->records()) {
        const std::string uniqueID(record->uniqueID);
        const auto values = store.values({&uniqueID}).front();
        EXPECT_TRUE(!values || stringValue(*values, ZRLEPGDSTitleKey) == uniqueID);
      }
    }
  });
  for (int i = 0; i < 2000; ++i) {
    const std::string id = std::to_string(i % 50);
    store.setItem(id, itemTitled(id));
    if (i % 3 == 0) store.removeItem(std::to_string((i + 25) % 50));
  }
  done = true;
  reader.join();
  EXPECT_EQ(store.size(), store.uniqueIDs().size());
}

}  // namespace
}  // namespace epg::test
