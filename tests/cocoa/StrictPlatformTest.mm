#include "tests/cocoa/StrictPlatform.h"

#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#include <string>

#import "cocoa/bridge/ExceptionGuard.h"

// That the strict platform of these tests raises where a Mac does; otherwise it would show nothing.

namespace {

template <typename Call>
bool raises(const Call& call) {
  const epg::test::StrictWithTheTest strict;
  return epg::cocoa::exceptionRaisedBy(call) != nil;
}

// Not known to be nil where they are used.
id nothing = nil;
const unichar* noCharacters = nullptr;

TEST(StrictPlatform, RefusesCharactersWithoutAnAddress) {
  EXPECT_TRUE(raises([] { [NSString stringWithCharacters:noCharacters length:0]; }));
}

TEST(StrictPlatform, RefusesBytesWithoutAnAddress) {
  EXPECT_TRUE(raises([] { [NSData dataWithBytes:noCharacters length:1]; }));
  EXPECT_FALSE(raises([] { [NSData dataWithBytes:noCharacters length:0]; }));
}

TEST(StrictPlatform, RefusesStringsThatAreNone) {
  EXPECT_TRUE(raises([] { [NSString stringWithString:nothing]; }));
  EXPECT_TRUE(raises([] { [@"a" stringByAppendingString:nothing]; }));
  EXPECT_TRUE(raises([] { [[NSString stringWithFormat:@"a%d", 1] stringByAppendingString:nothing]; }));
}

TEST(StrictPlatform, RefusesRangesBeyondTheEnd) {
  unichar units[8] = {};
  id objects[8] = {};
  EXPECT_TRUE(raises([&] { [[NSString stringWithFormat:@"a%d", 1] getCharacters:units range:NSMakeRange(1, 2)]; }));
  EXPECT_FALSE(raises([&] { [[NSString stringWithFormat:@"a%d", 1] getCharacters:units range:NSMakeRange(1, 1)]; }));
  EXPECT_TRUE(raises([&] { [[NSArray arrayWithObject:@"a"] getObjects:objects range:NSMakeRange(2, 0)]; }));
}

TEST(StrictPlatform, RefusesIndexesBeyondTheEnd) {
  EXPECT_TRUE(raises([] { [[NSMutableArray array] objectAtIndex:0]; }));
}

TEST(StrictPlatform, RefusesNoObjectInAList) {
  const id objects[] = {@"a", nothing};
  EXPECT_TRUE(raises([] { [[NSMutableArray array] addObject:nothing]; }));
  EXPECT_TRUE(raises([] { [[NSMutableSet set] addObject:nothing]; }));
  EXPECT_TRUE(raises([&] { [NSArray arrayWithObjects:objects count:2]; }));
  EXPECT_TRUE(raises([] { [NSArray arrayWithObject:nothing]; }));
}

TEST(StrictPlatform, RefusesNoObjectAndNoKeyInADictionary) {
  const id objects[] = {@"a", nothing};
  const id keys[] = {@"a", @"b"};
  EXPECT_TRUE(raises([] { [[NSMutableDictionary dictionary] setObject:nothing forKey:@"a"]; }));
  EXPECT_TRUE(raises([] { [[NSMutableDictionary dictionary] setObject:@"a" forKey:nothing]; }));
  EXPECT_TRUE(raises([] { [[NSMutableDictionary dictionary] removeObjectForKey:nothing]; }));
  EXPECT_TRUE(raises([] { [NSDictionary dictionaryWithObject:@"a" forKey:nothing]; }));
  EXPECT_TRUE(raises([&] { [NSDictionary dictionaryWithObjects:objects forKeys:keys count:2]; }));
  EXPECT_TRUE(raises([&] { [NSDictionary dictionaryWithObjects:keys forKeys:objects count:2]; }));
  EXPECT_FALSE(raises([&] { [NSDictionary dictionaryWithObjects:nullptr forKeys:nullptr count:0]; }));
}

TEST(StrictPlatform, RefusesValuesWithoutAName) {
  EXPECT_TRUE(raises([] { [NSError errorWithDomain:nothing code:1 userInfo:nil]; }));
  EXPECT_TRUE(raises([] { [NSXMLNode elementWithName:nothing]; }));
  EXPECT_TRUE(raises([] { [NSXMLNode textWithStringValue:nothing]; }));
  EXPECT_TRUE(raises([] { [NSXMLNode attributeWithName:@"a" stringValue:nothing]; }));
}

TEST(StrictPlatform, RefusesDatesThatAreNone) {
  EXPECT_TRUE(raises([] { [[NSDate date] compare:nothing]; }));
  EXPECT_TRUE(raises([] { [[NSTimeZone defaultTimeZone] secondsFromGMTForDate:nothing]; }));
}

TEST(StrictPlatform, LetsTheTestsOwnCallsPassOtherwise) {
  EXPECT_EQ(epg::cocoa::exceptionRaisedBy([] { [NSString stringWithCharacters:noCharacters length:0]; }), nil);
}

}  // namespace
