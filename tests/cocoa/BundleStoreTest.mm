#include <unistd.h>

#import <objc/runtime.h>

#include <atomic>
#include <functional>
#include <string>

#import "tests/cocoa/BundleUser.h"
#import "tests/cocoa/ObjectCount.h"
#import "tests/cocoa/OtherThreads.h"
#include "tests/support/SmallStack.h"

// The bundle's store as a live dictionary, and its saving.

namespace {

using Bundle = BundleUser;
using BundleStore = BundlePlugin;

TEST_F(BundleStore, HostChangesOfTheStoreAreSeenAndSaved) {
  NSMutableDictionary* store = [plugin epgItems];
  [store setObject:dictionary(@"title", @"A") forKey:@"E1"];
  [store setObject:dictionary(@"title", @"B") forKey:@"E2"];
  [store removeObjectForKey:@"E2"];
  EXPECT_EQ([store count], 1u);
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  EXPECT_EQ(text([[[plugin editedItems] lastObject] objectForKey:@"title"]), "A");
  [plugin saveEPGItemsToFile];
  EXPECT_TRUE(eventuallySaved([NSDictionary dictionaryWithObject:dictionary(@"title", @"A") forKey:@"E1"]));
}

TEST_F(BundleStore, HostSeesWhatACommitChanged) {
  NSMutableDictionary* store = [plugin epgItems];
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  [[[plugin editedItems] lastObject] setObject:@"Edited" forKey:@"title"];
  EXPECT_EQ([store objectForKey:@"E1"], nil);
  EXPECT_TRUE([plugin commitEditing]);
  EXPECT_EQ(text([[store objectForKey:@"E1"] objectForKey:@"title"]), "Edited");
  // Until new IDs are named, the store and the session share the item itself.
  EXPECT_EQ([store objectForKey:@"E1"], [[plugin editedItems] lastObject]);
  [[[plugin editedItems] lastObject] setObject:@"Again" forKey:@"title"];
  EXPECT_EQ(text([[store objectForKey:@"E1"] objectForKey:@"title"]), "Again");
}

TEST_F(BundleStore, StoreGivenByTheHostIsUsedInPlace) {
  NSMutableDictionary* item = dictionary(@"title", @"A");
  NSMutableDictionary* given = dictionary(@"E1", item);
  [plugin setEpgItems:given];
  EXPECT_EQ([plugin epgItems], given);
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  NSMutableDictionary* copy = [[plugin editedItems] lastObject];
  EXPECT_NE(copy, item);
  [copy setObject:@"B" forKey:@"title"];
  EXPECT_EQ(text([item objectForKey:@"title"]), "A");
  [plugin commitEditing];
  EXPECT_EQ([given objectForKey:@"E1"], copy);
  [plugin duplicateEPGItemWithUniqueID:@"E1" toItemWithUniqueID:@"E2"];
  EXPECT_EQ(text([[given objectForKey:@"E2"] objectForKey:@"uniqueID"]), "E1");
  [plugin removeEPGItemsWithUniqueIDs:only(@"E1")];
  EXPECT_EQ([given objectForKey:@"E1"], nil);
  // While a save still writes, another one is dropped.
  ASSERT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  [plugin saveEPGItemsToFile];
  EXPECT_TRUE(eventually([&] {
    return [[[savedStore() objectForKey:@"E2"] objectForKey:@"title"] isEqual:@"B"] && [savedStore() count] == 1;
  }));
}

TEST_F(BundleStore, EarlierStoreCanBeSetAgain) {
  NSMutableDictionary* own = [plugin epgItems];
  [own setObject:dictionary(@"title", @"A") forKey:@"E1"];
  [plugin setEpgItems:[NSMutableDictionary dictionary]];
  EXPECT_EQ([[plugin epgItems] count], 0u);
  [plugin setEpgItems:own];
  EXPECT_EQ([plugin epgItems], own);
  EXPECT_EQ(text([[[plugin epgItems] objectForKey:@"E1"] objectForKey:@"title"]), "A");
}

TEST_F(BundleStore, WithoutAStoreNothingIsWritten) {
  ASSERT_TRUE(writeStore(dictionary(@"E1", dictionary(@"title", @"A"))));
  [plugin setEpgItems:nil];
  [plugin setEditedItems:nil];
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  EXPECT_TRUE([plugin commitEditing]);
  [plugin saveEPGItemsToFileThread:nil];
  EXPECT_EQ([savedStore() count], 1u);
  EXPECT_EQ([plugin epgItems], nil);
  EXPECT_EQ([plugin editedItems], nil);
}

TEST_F(BundleStore, StoreBehavesAsADictionary) {
  NSMutableDictionary* store = [plugin epgItems];
  [store setObject:dictionary(@"title", @"A") forKey:@"E1"];
  [store setObject:@"no item" forKey:@"E2"];
  EXPECT_TRUE([store
      isEqual:([NSDictionary dictionaryWithObjectsAndKeys:dictionary(@"title", @"A"), @"E1", @"no item", @"E2", nil])]);
  EXPECT_EQ([[store allKeys] count], 2u);
  NSMutableDictionary* copy = [[store mutableCopy] autorelease];
  [copy removeAllObjects];
  EXPECT_EQ([store count], 2u);
  NSMutableDictionary* item = [store objectForKey:@"E1"];
  NSEnumerator* keys = [store keyEnumerator];
  [store removeAllObjects];
  EXPECT_EQ([[keys allObjects] count], 2u);
  EXPECT_EQ([store count], 0u);
  EXPECT_EQ(text([item objectForKey:@"title"]), "A");
  EXPECT_EQ([store objectForKey:@"none"], nil);
  EXPECT_EQ([store objectForKey:[NSNumber numberWithInt:1]], nil);
}

TEST_F(BundleStore, ObjectOutOfTheStoreLivesAsLongAsTheEntry) {
  NSMutableDictionary* item = nil;
  {
    NSAutoreleasePool* inner = [[NSAutoreleasePool alloc] init];
    [plugin setEditedEPGUniqueIDs:only(@"E1")];
    [plugin commitEditing];
    [plugin setEditedEPGUniqueIDs:[NSArray array]];
    item = [[plugin epgItems] objectForKey:@"E1"];
    [inner drain];
  }
  EXPECT_EQ([[plugin epgItems] objectForKey:@"E1"], item);
  EXPECT_EQ(text([item objectForKey:@"uniqueID"]), "E1");
}

// What the host was handed out and does not hold itself, as it may with a dictionary.

TEST_F(Bundle, ItemTakenIntoTheStoreLivesOnWhenTheListLetsGoOfIt) {
  if (!ObjectCount::works) GTEST_SKIP() << "NOT TESTED: objects cannot be counted with this compiler";
  const ObjectCount items("EPGDorvaSelinItem");
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSMutableDictionary* item = nil;
  {
    NSAutoreleasePool* inner = [[NSAutoreleasePool alloc] init];
    [plugin setEditedEPGUniqueIDs:only(@"E1")];
    item = [[plugin editedItems] lastObject];
    [plugin commitEditing];
    [plugin setEditedEPGUniqueIDs:[NSArray array]];
    [inner drain];
  }
  EXPECT_EQ(items.made(), 1);
  EXPECT_EQ(items.alive(), 1);
  EXPECT_EQ([[plugin epgItems] objectForKey:@"E1"], item);
  ASSERT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  [plugin release];
}

TEST_F(BundleStore, ValueOutOfAnItemLivesAsLongAsItStands) {
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  NSMutableDictionary* item = [[plugin editedItems] lastObject];
  NSString* title = nil;
  NSArray* tags = nil;
  {
    NSAutoreleasePool* inner = [[NSAutoreleasePool alloc] init];
    [item setObject:@"A title that fits into no pointer" forKey:@"title"];
    [item setObject:[NSArray arrayWithObjects:@"One tag that is long", @"Another", nil] forKey:@"tags"];
    title = [item objectForKey:@"title"];
    tags = [item objectForKey:@"tags"];
    // Asked for again, it is no other object that would push the first one out.
    EXPECT_EQ([item objectForKey:@"title"], title);
    EXPECT_EQ([item objectForKey:@"tags"], tags);
    [inner drain];
  }
  EXPECT_EQ(text(title), "A title that fits into no pointer");
  EXPECT_EQ(text([tags lastObject]), "Another");
  EXPECT_EQ([item objectForKey:@"tags"], tags);
  [item setObject:@"Another title, just as long as that" forKey:@"title"];
  EXPECT_EQ(text([item objectForKey:@"title"]), "Another title, just as long as that");
  [item removeObjectForKey:@"title"];
  EXPECT_EQ([item objectForKey:@"title"], nil);
}

TEST_F(BundleStore, ValueInTheStoreThatIsNoItemLivesAsLongAsItStands) {
  NSMutableDictionary* store = [plugin epgItems];
  [store setObject:@"no item, but a text all the same" forKey:@"E1"];
  EXPECT_EQ([store objectForKey:@"E1"], [store objectForKey:@"E1"]);
  [store setObject:@"another text, just as long as it" forKey:@"E1"];
  EXPECT_EQ(text([store objectForKey:@"E1"]), "another text, just as long as it");
}

TEST_F(Bundle, WhatWasHandedOutGoesWithItsEntry) {
  if (!ObjectCount::works) GTEST_SKIP() << "NOT TESTED: objects cannot be counted with this compiler";
  const ObjectCount items("EPGDorvaSelinItem");
  // The save's snapshot holds the items too, until its thread is gone.
  const OtherThreads threads;
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  const auto inAPool = [&](const std::function<void()>& work) {
    NSAutoreleasePool* inner = [[NSAutoreleasePool alloc] init];
    work();
    [inner drain];
    return threads.areGone();
  };
  ASSERT_TRUE(inAPool([&] {
    [plugin setEditedEPGUniqueIDs:[NSArray arrayWithObjects:@"E1", @"E2", @"E3", nil]];
    [plugin commitEditing];
    [plugin setEditedEPGUniqueIDs:[NSArray array]];
    for (NSString* uniqueID : {@"E1", @"E2", @"E3"}) {
      EXPECT_NE([[plugin epgItems] objectForKey:uniqueID], nil);
    }
  }));
  EXPECT_EQ(items.alive(), 3);
  // Through the plug-in, through the dictionary, and replaced.
  ASSERT_TRUE(inAPool([&] { [plugin removeEPGItemsWithUniqueIDs:only(@"E1")]; }));
  EXPECT_EQ(items.alive(), 2);
  ASSERT_TRUE(inAPool([&] { [[plugin epgItems] removeObjectForKey:@"E2"]; }));
  EXPECT_EQ(items.alive(), 1);
  ASSERT_TRUE(inAPool([&] { [plugin duplicateEPGItemWithUniqueID:@"E3" toItemWithUniqueID:@"E3"]; }));
  EXPECT_EQ(items.alive(), 0);
  ASSERT_TRUE(inAPool([&] { EXPECT_NE([[plugin epgItems] objectForKey:@"E3"], nil); }));
  EXPECT_EQ(items.alive(), 1);
  ASSERT_TRUE(inAPool([&] { [[plugin epgItems] setObject:@"no item" forKey:@"E3"]; }));
  EXPECT_EQ(items.alive(), 0);
  [plugin release];
}

// Saving.

IMP originalSave;
std::atomic<int> savesBesideTheMainThread{0};

void countedSave(id self, SEL operation, NSDictionary* snapshot) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  if (![NSThread isMainThread] && [snapshot isKindOfClass:[NSDictionary class]] &&
      [[snapshot objectForKey:@"E1"] isKindOfClass:[NSDictionary class]]) {
    ++savesBesideTheMainThread;
  }
  [pool drain];
  functionOf<void(id, SEL, NSDictionary*)>(originalSave)(self, operation, snapshot);
}

TEST_F(BundleStore, SaveThreadEntersThroughItsOperationWithTheSnapshot) {
  Method method = class_getInstanceMethod([plugin class], @selector(saveEPGItemsToFileThread:));
  originalSave = method_setImplementation(method, implementationOf(countedSave));
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  [plugin commitEditing];
  EXPECT_TRUE(eventuallySaved(dictionary(@"E1", dictionary(@"uniqueID", @"E1"))));
  EXPECT_EQ(savesBesideTheMainThread, 1);
  method_setImplementation(method, originalSave);
}

/// `levels` lists or dictionaries, one inside the other.
id nested(BOOL areDictionaries, int levels) {
  id value = @"innermost";
  for (int level = 0; level < levels; ++level) {
    value = areDictionaries ? dictionary(@"a", value) : [NSMutableArray arrayWithObject:value];
  }
  return value;
}

int levelsOf(id value) {
  int levels = 0;
  for (; ![value isKindOfClass:[NSString class]] && value != nil; ++levels) {
    value = [value isKindOfClass:[NSArray class]] ? [value lastObject] : [value objectForKey:@"a"];
  }
  return levels;
}

TEST_F(BundleStore, DeepValuesAreTakenHandedOutAndSavedOnASmallStack) {
  // The store and the item are two more.
  constexpr int levels = 510;
  for (const BOOL areDictionaries : {NO, YES}) {
    id value = nested(areDictionaries, levels);
    EPGDorvaSelinManagerPlugin* const tried = plugin;
    epg::test::onSmallStack([=] {
      NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
      NSMutableDictionary* item = [NSMutableDictionary dictionaryWithObject:@"A" forKey:@"title"];
      [[tried epgItems] setObject:item forKey:@"E1"];
      [item setObject:value forKey:@"deep"];
      [tried setEditedEPGUniqueIDs:only(@"E1")];
      EXPECT_EQ(levelsOf([[[tried editedItems] lastObject] objectForKey:@"deep"]), levels);
      [tried saveEPGItemsToFileThread:[NSDictionary dictionaryWithObject:item forKey:@"E1"]];
      [pool drain];
    });
    EXPECT_EQ(levelsOf([[savedStore() objectForKey:@"E1"] objectForKey:@"deep"]), levels);
  }
}

TEST_F(Bundle, StoreFileOfEightTebibytesEndsNothing) {
  ASSERT_TRUE([@"{" writeToFile:storePath() atomically:YES encoding:NSUTF8StringEncoding error:NULL]);
  if (truncate([storePath() fileSystemRepresentation], off_t { 8 } << 40) != 0) {
    GTEST_SKIP() << "NOT TESTED: no file of this size can be made here";
  }
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  ASSERT_NE(plugin, nil);
  EXPECT_EQ([[plugin epgItems] count], 0u);
  [plugin release];
}

TEST_F(Bundle, UnreadableStoreIsKeptBesideTheFirstSavesFile) {
  ASSERT_TRUE([@"{ E1 = " writeToFile:storePath() atomically:YES encoding:NSUTF8StringEncoding error:NULL]);
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  [[plugin epgItems] setObject:dictionary(@"title", @"One") forKey:@"E2"];
  [plugin saveEPGItemsToFileThread:[plugin epgItems]];
  EXPECT_EQ(text([[savedStore() objectForKey:@"E2"] objectForKey:@"title"]), "One");
  NSArray* names = [[NSFileManager defaultManager] contentsOfDirectoryAtPath:dataFolder_ error:NULL];
  NSArray* kept = [names filteredArrayUsingPredicate:[NSPredicate predicateWithFormat:@"SELF CONTAINS 'unreadable, '"]];
  ASSERT_EQ([kept count], 1u) << text([names description]);
  NSString* content = [NSString stringWithContentsOfFile:[dataFolder_ stringByAppendingPathComponent:[kept lastObject]]
                                                encoding:NSUTF8StringEncoding
                                                   error:NULL];
  EXPECT_EQ(text(content), "{ E1 = ");
  [plugin release];
}

TEST_F(BundleStore, RemovingNothingStillWritesTheFile) {
  [plugin removeEPGItemsWithUniqueIDs:nil];
  EXPECT_TRUE(eventuallySaved([NSDictionary dictionary]));
}

TEST_F(Bundle, DuplicatingNothingWritesNothing) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  [plugin duplicateEPGItemWithUniqueID:@"none" toItemWithUniqueID:@"E2"];
  [plugin duplicateEPGItemWithUniqueID:nil toItemWithUniqueID:@"E2"];
  EXPECT_EQ([[plugin epgItems] count], 0u);
  ASSERT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  [plugin release];
  EXPECT_EQ(savedStore(), nil);
}

TEST_F(Bundle, ObjectDroppedWhileSavingStillSaves) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  [plugin setEditedEPGUniqueIDs:[NSArray arrayWithObjects:@"E1", @"E2", nil]];
  [plugin commitEditing];
  [plugin release];
  EXPECT_TRUE(eventually([&] { return [savedStore() count] == 2; }));
}

// The editing session without an editor.

TEST_F(BundleStore, SameIDTwiceIsTwoCopiesOfWhichTheSecondStays) {
  NSMutableArray* list = [plugin editedItems];
  [plugin setEditedEPGUniqueIDs:[NSArray arrayWithObjects:@"E1", @"E1", nil]];
  EXPECT_EQ([plugin editedItems], list);
  ASSERT_EQ([list count], 2u);
  EXPECT_NE([list objectAtIndex:0], [list objectAtIndex:1]);
  [[list objectAtIndex:0] setObject:@"first" forKey:@"title"];
  [[list objectAtIndex:1] setObject:@"second" forKey:@"title"];
  [plugin commitEditing];
  EXPECT_EQ([[plugin epgItems] objectForKey:@"E1"], [list objectAtIndex:1]);
}

TEST_F(BundleStore, ListGivenByTheHostIsUsedInPlace) {
  NSMutableArray* list = [NSMutableArray array];
  NSMutableDictionary* item = dictionary(@"uniqueID", @"E9");
  [list addObject:item];
  [plugin setEditedItems:list];
  EXPECT_EQ([plugin editedItems], list);
  [plugin commitEditing];
  EXPECT_EQ([[plugin epgItems] objectForKey:@"E9"], item);
  ASSERT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  [item setObject:@"later" forKey:@"title"];
  [plugin saveEPGItemsToFileThread:[plugin epgItems]];
  EXPECT_EQ(text([[savedStore() objectForKey:@"E9"] objectForKey:@"title"]), "later");
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  EXPECT_EQ([list count], 1u);
  EXPECT_EQ(text([[list lastObject] objectForKey:@"uniqueID"]), "E1");
}

}  // namespace
