#import "tests/cocoa/OtherThreads.h"

#include <dirent.h>

#include <algorithm>

#import "tests/cocoa/BundleUser.h"

std::set<std::string> OtherThreads::running() {
  std::set<std::string> threads;
  if (DIR* const folder = opendir("/proc/self/task")) {
    while (const dirent* const entry = readdir(folder)) {
      threads.insert(entry->d_name);
    }
    closedir(folder);
  }
  return threads;
}

bool OtherThreads::areGone() const {
  const bool gone = eventually([&] {
    const std::set<std::string> now = running();
    return std::includes(before_.begin(), before_.end(), now.begin(), now.end());
  });
  // What the last of them left the main thread to do.
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode beforeDate:[NSDate date]];
  [pool drain];
  return gone;
}
