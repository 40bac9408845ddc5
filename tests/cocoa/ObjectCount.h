#pragma once

#import <Foundation/Foundation.h>
#import <objc/runtime.h>

#include <mutex>
#include <unordered_set>

/// Follows every object of one class that is made while this lives. One for each class at a time. Any thread.
class ObjectCount {
 public:
  /// Whether it can: what is put into a class of clang's on GCC's runtime is not found there. Valgrind, which follows
  /// every object, runs where GCC compiles.
#if defined(__clang__) && !defined(__APPLE__)
  static constexpr bool works = false;
#else
  static constexpr bool works = true;
#endif

  /// The class is found by its name.
  explicit ObjectCount(const char* className);
  ObjectCount(const ObjectCount&) = delete;
  ObjectCount& operator=(const ObjectCount&) = delete;
  ~ObjectCount();

  int made() const;
  int alive() const;
  /// How many of them ended on another thread than the main one.
  int endedBesideTheMainThread() const;

 private:
  static id allocate(id self, SEL operation, NSZone* zone);
  static void deallocate(id self, SEL operation);
  static ObjectCount* ofClass(Class wanted);

  Class class_;
  IMP dealloc_;
  mutable std::mutex mutex_;
  std::unordered_set<const void*> known_;  ///< Those that nobody has begun to end.
  int made_ = 0;
  int ended_ = 0;
  int endedBesideTheMainThread_ = 0;
};
