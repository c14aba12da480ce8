#include "dqlib/framework/controls/row_store.h"

#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/controls/list_box.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

TEST(RowStore, AnswersAsAPlainListOfTextsDoes) {
  std::mt19937 random(20261);
  detail::RowStore store;
  std::vector<std::string> plain;
  for (int step = 0; step < 20'000; ++step) {
    const int at = static_cast<int>(random() % (plain.size() + 1));
    const std::string text(random() % 3, "aAbB"[random() % 4]);
    const std::string lower = multi_byte::Lower(text);
    if (random() % 8 < 3 && at < store.size()) {
      store.Erase(at);
      plain.erase(plain.begin() + at);
    } else if (plain.size() < 60) {
      store.Insert(at, text);
      plain.insert(plain.begin() + at, text);
      ASSERT_EQ(store[at].data, 0U) << "a row that is used again begins anew";
      store[at].data = 1;
    }
    // The rows behind `at`, then those from the first on.
    const int count = static_cast<int>(plain.size());
    int exact = -1;
    int prefix = -1;
    for (int steps = count; steps > 0; --steps) {
      const int next = (at < count ? at + steps : steps - 1) % count;
      const std::string row = multi_byte::Lower(plain[static_cast<std::size_t>(next)]);
      if (row == lower) exact = next;
      if (!lower.empty() && row.starts_with(lower)) prefix = next;
    }
    ASSERT_EQ(store.FindExact(at, text), exact) << step;
    ASSERT_EQ(store.FindPrefix(at, text), prefix) << step;
  }
  EXPECT_EQ(store.Texts(), plain);
}

TEST(RowStore, PersonNamesRowsByOneLineEachAndEqualOnesOneAfterTheOther) {
  detail::RowStore store;
  for (const char* text : {"a", "B", "A", "2", "a"}) store.Insert(store.size(), text);
  // A row's own text may be added, wherever the rows lie then.
  for (int i = 0; i < 20; ++i) store.Insert(store.size(), store.Text(1));
  for (int i = 0; i < 20; ++i) store.Erase(5);
  EXPECT_EQ(store.FindExact(1, "b"), 1) << "they are all gone";
  for (const auto& [lines, marks] : test::Rows<const char*, const char*>{{"", "....."},
                                                                         {"a", "x...."},
                                                                         {"A\na", "x.x.."},
                                                                         {"a\r\nA\na", "x.x.x"},
                                                                         {"a\na\na\na", "x.x.x"},
                                                                         {"1\na", "x.x.."},
                                                                         {"2\nb", ".x.x."},
                                                                         {"5", "....x"},
                                                                         {"6", ""},
                                                                         {"0", ""},
                                                                         {"a\nc", ""}}) {
    std::vector<bool> named;
    std::string got;
    if (store.FindAllNamed(lines, named)) {
      for (const bool each : named) got += each ? 'x' : '.';
    }
    EXPECT_EQ(got, marks) << lines;
  }
}

TEST(RowStore, SortedListPutsEqualsBehindEachOtherAndKeepsTheSelectedRow) {
  CListBox list(ListStyle{.sorted = true});
  std::string places;
  for (const char* text : {"b", "C", "a", "B", "c", "A"}) {
    places += std::to_string(list.AddString(text));
    if (list.GetCount() == 1) list.SetCurSel(0);
  }
  for (int at = 0; at < 6; ++at) places += std::string(" ") + list.GetText(at);
  EXPECT_EQ(places, "010241 a A b B C c");
  EXPECT_EQ(list.GetCurSel(), 2);
  EXPECT_EQ(list.InsertString(0, "z"), 0);
  EXPECT_EQ(list.GetCurSel(), 3);
  EXPECT_EQ(list.DeleteString(1), 6);
  EXPECT_EQ(list.DeleteString(3), 5);
  EXPECT_EQ(list.GetCurSel(), 2);
  EXPECT_EQ(list.DeleteString(2), 4);
  EXPECT_EQ(list.GetCurSel(), -1);
  for (const int bad : {-2, 99}) {
    for (const int answer : {list.InsertString(bad, "x"), list.DeleteString(bad),
                             list.SetCurSel(bad), list.SetItemData(bad, 1), list.GetTextLen(bad),
                             list.GetSel(bad), list.SetTopIndex(bad)}) {
      EXPECT_EQ(answer, -1);
    }
    EXPECT_EQ(list.GetItemData(bad), ~std::uintptr_t{0});
  }
}

}  // namespace
}  // namespace dq
