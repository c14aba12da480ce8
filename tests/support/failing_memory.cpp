#include "tests/support/failing_memory.h"

#include <cstdlib>
#include <new>

namespace {

thread_local bool g_fails = false;

}  // namespace

// The program's own allocation functions. The forms that are not named here, among them the ones
// for arrays, come down to these.
void* operator new(std::size_t size) {
  void* const memory = g_fails ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return g_fails ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* operator new[](std::size_t size) { return operator new(size); }

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace dq::test {

FailingMemory::FailingMemory() { g_fails = true; }

FailingMemory::~FailingMemory() { g_fails = false; }

}  // namespace dq::test
