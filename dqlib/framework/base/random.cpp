#include "dqlib/framework/base/random.h"

#include <atomic>

namespace dq {
namespace {

std::atomic<DWORD> g_state = 1;

}  // namespace

void SeedRandom(DWORD seed) { g_state = seed; }

int NextRandom() {
  DWORD state = g_state;
  DWORD next = 0;
  do {
    next = state * 214013u + 2531011u;
  } while (!g_state.compare_exchange_weak(state, next));
  return static_cast<int>(next >> 16 & 0x7FFF);
}

}  // namespace dq
