// Memory of which one allocation fails. To be included by one source of a test program.
//
//   FailAllocation(3);  // the third of this thread from now on
//   ... work ...
//   if (!AllocationFailed()) ... there were fewer than three

#pragma once

#include "tests/support/testing.h"

namespace dq::test {

/// This thread's allocations up to the one that fails, counted down; near `INT_MAX` for none.
inline thread_local int t_countdown = INT_MAX;

inline void FailAllocation(int number) { t_countdown = number; }
/// Whether it has come to that; none fails any more.
inline bool AllocationFailed() { return std::exchange(t_countdown, INT_MAX) <= 0; }

inline void* Allocate(std::size_t size) noexcept {
  return --t_countdown == 0 ? nullptr : std::malloc(size > 0 ? size : 1);
}

}  // namespace dq::test

// The forms for arrays call these. Not inline, or the compiler sees memory of one kind given back
// as another.
[[gnu::noinline]] void* operator new(std::size_t size) {
  if (void* const memory = dq::test::Allocate(size)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return dq::test::Allocate(size);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
