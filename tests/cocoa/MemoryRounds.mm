#import "tests/cocoa/MemoryRounds.h"

#include <stdlib.h>

#import "tests/cocoa/BundleUser.h"
#import "tests/cocoa/OtherThreads.h"

#if defined(__has_include)
#if __has_include(<valgrind/memcheck.h>)
#include <valgrind/memcheck.h>
#endif
#endif
// Without valgrind's headers there is no valgrind to ask.
#ifndef VALGRIND_DO_LEAK_CHECK
#define VALGRIND_DO_LEAK_CHECK
#define VALGRIND_DO_CHANGED_LEAK_CHECK
#define VALGRIND_CLO_CHANGE(option)
#define VALGRIND_PRINTF(...)
#endif

namespace {

const int few = 5;

int many() {
  const char* const given = getenv("EPG_MEMORY_ROUNDS");
  return given != nullptr ? atoi(given) : 200;
}

}  // namespace

int repeatForMemory(const std::function<void()>& round) {
  const OtherThreads threads;
  int done = 0;
  const auto reach = [&](int rounds) {
    while (done < rounds && !testing::Test::HasFatalFailure()) {
      NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
      round();
      [pool drain];
      ++done;
    }
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    EXPECT_TRUE(threads.areGone());
    [pool drain];
  };
  reach(few);
  VALGRIND_PRINTF("looked at after %d rounds\n", done);
  // Only what comes later is worth a line, and to write down what there is takes longer than to find it.
  VALGRIND_CLO_CHANGE("--show-leak-kinds=none");
  VALGRIND_DO_LEAK_CHECK;
  VALGRIND_CLO_CHANGE("--show-leak-kinds=all");
  reach(few + many());
  VALGRIND_PRINTF("looked at after %d rounds\n", done);
  VALGRIND_DO_CHANGED_LEAK_CHECK;
  return done;
}
