#include "dqlib/framework/base/string_collections.h"

#include "dqlib/framework/base/random.h"
#include "tests/support/joined.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

std::string Backwards(const CStringList& list) {
  CString texts;
  for (POSITION at = list.GetTailPosition(); at != nullptr;) texts += list.GetPrev(at) + "|";
  return std::string(texts.View());
}

TEST(CStringList, PlacesStayValidWhileOthersComeAndGo) {
  CStringList list;
  const POSITION b = list.AddTail("b");
  const POSITION a = list.AddHead("a");
  const POSITION c = list.AddTail("c");
  list.AddTail(list.GetHead());
  EXPECT_EQ(test::Joined(list) + Backwards(list), "a|b|c|a|a|c|b|a|");
  EXPECT_EQ(list.Find("a"), a) << "the first of equals";
  EXPECT_EQ(list.Find("x"), nullptr);
  list.RemoveAt(b);
  list.SetAt(c, "C");
  EXPECT_EQ(list.RemoveTail(), "a");
  EXPECT_EQ(Backwards(list), "C|a|");
  EXPECT_EQ(list.RemoveHead(), "a");
  EXPECT_EQ(list.GetCount(), 1);
}

TEST(CStringArray, InsertsBehindTheEndAndTakesItsOwnElements) {
  CStringArray array;
  array.InsertAt(2, "c");
  array.InsertAt(0, array[2]);
  array.InsertAt(6, array[0]);
  array.RemoveAt(1, 2);
  array.Reserve(array.GetSize());
  EXPECT_EQ(array.Add(array[1]), 5);
  CString all;
  for (int i = 0; i < array.GetSize(); ++i) all += array[i] + "|";
  EXPECT_EQ(all, "c|c|||c|c|");
}

TEST(Random, SequenceOfASeedIsTheSameEverywhere) {
  SeedRandom(1);
  for (const int number : {41, 18467, 6334, 26500, 19169}) EXPECT_EQ(NextRandom(), number);
  SeedRandom(0xFFFFFFFF);
  EXPECT_EQ(NextRandom(), 35);
}

}  // namespace
}  // namespace dq
