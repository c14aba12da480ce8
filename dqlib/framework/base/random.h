// The run-time's random generator.

#pragma once

#include "dqlib/platform/types.h"

namespace dq {

/// Seeds the process's generator, which starts with the seed 1. Any thread; all share one sequence.
void SeedRandom(DWORD seed);

/// The next number, 0 to 32767. The sequence that follows a seed is the same on every machine:
/// state = state * 214013 + 2531011 modulo 2^32, of which bits 16 to 30 are the number. Texts made
/// from it must not depend on the C library.
int NextRandom();

}  // namespace dq
