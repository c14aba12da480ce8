// Memory of which one allocation fails. To be included by one source of a test program.
//
//   FailAllocation(3);  // the third of this thread from now on
//   ... work ...
//   if (!AllocationFailed()) ... there were fewer than three

#pragma once

#include <cstdlib>
#include <new>

namespace dq::test {

/// The allocation of this thread that fails, counted down; 0 for none.
inline thread_local int t_countdown = 0;
inline thread_local bool t_failed = false;

inline void FailAllocation(int number) {
  t_countdown = number;
  t_failed = false;
}
/// Whether it has come to that; none fails any more.
inline bool AllocationFailed() {
  t_countdown = 0;
  return t_failed;
}

inline void* Allocate(std::size_t size) noexcept {
  if (t_countdown > 0 && --t_countdown == 0) {
    t_failed = true;
    return nullptr;
  }
  return std::malloc(size > 0 ? size : 1);
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
