#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  testing::InitGoogleTest(&argc, argv);
  const int result = RUN_ALL_TESTS();
  [pool drain];
  return result;
}
