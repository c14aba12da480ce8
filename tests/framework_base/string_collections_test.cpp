#include "dqlib/framework/base/string_collections.h"

#include <gtest/gtest.h>
#include <string>

namespace dq {
namespace {

std::string Walk(const CStringList& list, bool forward) {
  std::string texts;
  POSITION position = forward ? list.GetHeadPosition() : list.GetTailPosition();
  while (position != nullptr) {
    texts += forward ? list.GetNext(position) : list.GetPrev(position);
    texts += ' ';
  }
  return texts;
}

TEST(CStringList, PlacesStayValidWhileOthersComeAndGo) {
  CStringList list;
  const POSITION b = list.AddTail("b");
  const POSITION a = list.AddHead("a");
  const POSITION c = list.AddTail("c");
  list.AddTail(list.GetHead());
  EXPECT_EQ(Walk(list, true), "a b c a ");
  EXPECT_EQ(Walk(list, false), "a c b a ");
  EXPECT_EQ(list.Find("a"), a) << "the first of equals";
  EXPECT_EQ(list.Find("x"), nullptr);
  list.RemoveAt(b);
  list.SetAt(c, "C");
  EXPECT_EQ(list.RemoveTail(), "a");
  EXPECT_EQ(Walk(list, false), "C a ");
  EXPECT_EQ(list.RemoveHead(), "a");
  EXPECT_EQ(list.GetCount(), 1);
}

TEST(CStringArray, InsertsBehindTheEndAndTakesItsOwnElements) {
  CStringArray array;
  array.InsertAt(2, "c");
  array.InsertAt(0, array[2]);
  array.InsertAt(6, array[0]);
  EXPECT_EQ(array.GetSize(), 7);
  const char* const texts[] = {"c", "", "", "c", "", "", "c"};
  for (int i = 0; i < 7; ++i) EXPECT_EQ(array[i], texts[i]) << i;
  array.RemoveAt(1, 2);
  EXPECT_EQ(array[1], "c");
  array.Reserve(array.GetSize());
  EXPECT_EQ(array.Add(array[1]), 5);
  EXPECT_EQ(array[5], "c");
}

}  // namespace
}  // namespace dq
