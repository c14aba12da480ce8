// Trees: the comparisons of columns, and sorting by a click on a title.

#include "tests/support/trees.h"

namespace dq::test {
namespace {

TEST(TreeNumbers, AreReadUpToWhatIsNone) {
  for (const auto& [text, number, integer] : Cases<3>(R"(
      => 0 => 0 ;; 900 KB => 900 => 900 ;; 10 MB => 10000 => 10000 ;; 1 MB KB => 1 => 1
      10MB => 10 => 10 ;; -1.5e2 MB => -150000 => -1000 ;; +7 => 7 => 7 ;; .5 => 0.5 => 0
      1e => 1 => 1 ;; 0x10 => 0 => 0 ;; nan => 0 => 0 ;; inf => 0 => 0 ;; +-1 => 0 => 0
      1e999 => inf => 1 ;; -1e999 => -inf => -1 ;; 0.0001e-999 => 0 => 0 ;; 0e99999999999 => 0 => 0
      99999999999999999999 MB => 1e+23 => 2147483647 ;; -3000000 MB => -3e+09 => -2147483648)")) {
    std::ostringstream told;
    told << CDQTree::Str2Double(text.c_str());
    EXPECT_EQ(told.str(), number) << text;
    EXPECT_EQ(std::to_string(CDQTree::Str2Number(text.c_str())), integer) << text;
  }
  EXPECT_TRUE(CDQTree::Str2Double(nullptr) == 0 && CDQTree::Str2Number(nullptr) == 0);
}

TEST(TreeComparisons, AreOfNumbersTextsAndDatesAndTheirOpposites) {
  CSftTree tree;
  const auto text = [](const std::string& cell) { return cell == "-" ? nullptr : cell.c_str(); };
  struct Pair {
    TreeCompare ascending, descending;
  };
  const std::map<std::string, Pair> pairs = {
      {"n", {CDQTree::SortNumberAscendingCallback, CDQTree::SortNumberDescendingCallback}},
      {"i", {CDQTree::SortIntegerAscendingCallback, CDQTree::SortIntegerDescendingCallback}},
      {"d", {CDQTree::SortDateTimeAscendingCallback, CDQTree::SortDateTimeDescendingCallback}}};
  // A date with a fraction can't be read: as the first one it has both cut, as the second one it is
  // no date.
  for (const auto& [kind, a, b, order, back] : Cases<5>(R"(
      n => 10 MB => 900 KB => 1 => -1 ;; n => abc => XYZ => -1 => 1 ;; n => 0 => abc => -1 => 1
      n => 0 => 0.0 => 0 => 0 ;; n => 0 => x0 => 0 => 0 ;; n => - => A => -1 => 1
      n => -1 => x => -1 => 1 ;; i => 12 => 5x => 1 => -1 ;; i => a => b => 0 => 0
      d => 2024-05-06 => 5/7/2024 => -1 => 1 ;; d => 1 Jan 1800 06:00 => 1800-01-01 18:00 => -1 => 1
      d => 2024-05-06 07:08:09.5 => 2024-05-06 07:08:09 => 0 => 1
      d => 2024-05-06 07:08:09.5 => 2024-05-06 07:08:08.9 => 1 => -1
      d => x => 1900-01-01 => -1 => 1 ;; d => x => y => 0 => 0 ;; d => 13/12/2024 => 12/14/2024 => -1 => 1
      d => 0099-01-02 => 2024-02-30 => 0 => 0 ;; d => 2024-5-6 7:08 => 2024-05-06 07:07:59 => 1 => -1)")) {
    const Pair& pair = pairs.at(kind);
    EXPECT_EQ(std::to_string(pair.ascending(tree, text(a), text(b), 0, 0)), order) << a << b;
    EXPECT_EQ(std::to_string(pair.ascending(tree, text(b), text(a), 0, 0)), back) << b << a;
    EXPECT_EQ(std::to_string(pair.descending(tree, text(b), text(a), 0, 0)), order) << b << a;
  }
  const auto strings = CDQTree::SortStringDescendingCallback;
  EXPECT_TRUE(strings(tree, "a", "B", 0, 0) > 0 && strings(tree, "A", "a", 0, 0) == 0);
  EXPECT_EQ(strings(tree, nullptr, "a", 0, 0), 0);
}

TEST(TreeSort, GivesWhatTheCallbacksGiveForRandomTexts) {
  std::mt19937 random(7);
  const std::vector<std::string> words = {"0",
                                          "x0",
                                          "abc",
                                          " 0",
                                          "!",
                                          "10 MB",
                                          "900 KB",
                                          "",
                                          "-1",
                                          "1e3",
                                          "Abc",
                                          "5/6/2024",
                                          "2024-05-06 07:08:09.5",
                                          "2024-05-06 07:08:09",
                                          "abcdefgh1",
                                          "ABCDEFGH2",
                                          "\xE9"};
  Parent one, other;
  for (int row = 0; row < 200; ++row) {
    const std::string& word = words[random() % words.size()];
    const int level = static_cast<int>(random() % 3);
    for (CDQTree* const tree : {&one.tree, &other.tree}) {
      tree->AddRow(std::to_string(row).c_str(), level);
      for (int column = 1; column < 3; ++column) tree->SetText(row, column, word.c_str());
    }
  }
  one.tree.AddColumn("", 10);
  other.tree.AddColumn("", 10);
  for (int row = 0; row < 200; ++row) {
    for (CDQTree* const tree : {&one.tree, &other.tree})
      tree->SetText(row, 3, tree->GetText(row, 1));
  }
  const std::tuple<int, TreeCompare> sorts[] = {{1, CDQTree::SortNumberAscendingCallback},
                                                {1, CDQTree::SortNumberDescendingCallback},
                                                {2, CDQTree::SortDateTimeAscendingCallback},
                                                {2, CDQTree::SortDateTimeDescendingCallback},
                                                {3, nullptr},
                                                {3, CDQTree::SortStringDescendingCallback}};
  for (const auto& [column, compare] : sorts) {
    ASSERT_TRUE(one.tree.SortByColumn(column));
    other.tree.SortRows(column, compare);
    EXPECT_EQ(RowsOf(one.tree), RowsOf(other.tree)) << column << one.tree.IsSortAscending();
  }
}

TEST(Tree, AClickOnATitleSortsAndASecondOneTurnsItRound) {
  Parent parent("b|900 KB,A|10 MB,c|x");
  const auto click = [&](int column) {
    MouseInput(WM_LBUTTONDOWN, MK_LBUTTON, {column * 100 + 10, 3}, &parent.tree);
    MouseInput(WM_LBUTTONUP, 0, {column * 100 + 10, 3}, &parent.tree);
    return RowsOf(parent.tree);
  };
  EXPECT_EQ(click(1), "c,b,A");
  EXPECT_EQ(click(1), "A,b,c");
  EXPECT_EQ(click(0), "A,b,c") << "another column starts ascending";
  EXPECT_EQ(click(0), "c,b,A");
  EXPECT_TRUE(parent.tree.GetSortMarkColumn() == 0 && !parent.tree.IsSortMarkAscending());
  EXPECT_EQ(parent.codes.find("36"), std::string::npos) << "it is the tree's own";
  parent.tree.SetAutoSort(false);
  EXPECT_EQ(click(0), "c,b,A");
  EXPECT_EQ(parent.Reflect(36), 0);
  parent.tree.SetAutoSort(true);
  EXPECT_EQ(parent.Reflect(36), 1);
  EXPECT_EQ(RowsOf(parent.tree), "A,b,c");
  Parent alone("x");
  EXPECT_FALSE(alone.tree.SortByColumn(0));
  EXPECT_TRUE(alone.tree.GetSortColumn() == -1 && !parent.tree.SortByColumn(3));
}

}  // namespace
}  // namespace dq::test
