#pragma once

#include <gtest/gtest.h>
#include <pthread.h>

#include <cstddef>
#include <functional>

// Secondary threads of a Mac have stacks of 512 KiB.

namespace epg::test {

#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t smallStackSize = std::size_t{8} << 20;  // The sanitizer puts space around everything.
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr std::size_t smallStackSize = std::size_t{8} << 20;
#else
constexpr std::size_t smallStackSize = std::size_t{512} << 10;
#endif
#else
constexpr std::size_t smallStackSize = std::size_t{512} << 10;
#endif

inline void* runOnSmallStack(void* work) {
  (*static_cast<std::function<void()>*>(work))();
  return nullptr;
}

/// Runs the work on a thread of its own, and waits for it.
inline void onSmallStack(std::function<void()> work) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, smallStackSize), 0);
  pthread_t thread{};
  ASSERT_EQ(pthread_create(&thread, &attributes, runOnSmallStack, &work), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

}  // namespace epg::test
