#include "tests/reliability/Shortage.h"

#include <cstdlib>
#include <new>

namespace epg::test {

namespace {

// Per thread, so that nothing but the code under test runs short.
thread_local bool armed = false;
thread_local std::size_t allocationsLeft = 0;
thread_local Shortage::Failing failing = Shortage::Failing::Once;
thread_local std::size_t failed = 0;

bool allocationFails() {
  if (!armed) return false;
  if (allocationsLeft > 0) {
    --allocationsLeft;
    return false;
  }
  ++failed;
  if (failing == Shortage::Failing::Once) armed = false;
  return true;
}

}  // namespace

Shortage::Shortage(std::size_t number, Failing how) {
  allocationsLeft = number;
  failing = how;
  failed = 0;
  armed = true;
}

Shortage::~Shortage() { armed = false; }

std::size_t Shortage::failures() { return failed; }

void* Shortage::allocate(std::size_t size) { return allocationFails() ? nullptr : std::malloc(size == 0 ? 1 : size); }

}  // namespace epg::test

void* operator new(std::size_t size) {
  if (void* const memory = epg::test::Shortage::allocate(size)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }

void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
