#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#import "tests/cocoa/StrictPlatform.h"

int main(int argc, char** argv) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  testing::InitGoogleTest(&argc, argv);
  epg::test::makePlatformStrict();
  const int result = RUN_ALL_TESTS();
  [pool drain];
  return result;
}
