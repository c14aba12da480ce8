#include "dqlib/framework/base/random.h"

#include <gtest/gtest.h>

namespace dq {
namespace {

TEST(Random, SequenceOfASeedIsTheSameEverywhere) {
  SeedRandom(1);
  for (const int number : {41, 18467, 6334, 26500, 19169}) EXPECT_EQ(NextRandom(), number);
  SeedRandom(0xFFFFFFFF);
  EXPECT_EQ(NextRandom(), ((0xFFFFFFFFu * 214013u + 2531011u) >> 16) % 0x8000);
}

}  // namespace
}  // namespace dq
