// The rows of the list and tree control, against a plain list of rows.

#include "tests/support/doubles.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

/// A tree as a list of rows and nothing else: each answer is found by looking at all of them.
struct PlainTree {
  struct Row {
    std::array<std::string, 3> texts;
    int level = 0;
    std::uintptr_t data = 0;
    bool expanded = true, selected = false, caret = false;
  };

  int size() const { return static_cast<int>(rows.size()); }
  Row& operator[](int row) { return rows[static_cast<std::size_t>(row)]; }
  int Most(int row) { return row == 0 ? 0 : (*this)[row - 1].level + 1; }
  int End(int row) {
    int end = row + 1;
    while (end < size() && (*this)[end].level > (*this)[row].level) ++end;
    return end;
  }
  void Cut(int row) {
    for (; row < size() && (*this)[row].level > Most(row); ++row) (*this)[row].level = Most(row);
  }
  void Put(int at, std::vector<Row> put, int level) {
    const int by = std::clamp(level, 0, Most(at)) - put.front().level;
    for (Row& row : put) row.level += by;
    rows.insert(rows.begin() + at, put.begin(), put.end());
    Cut(at + static_cast<int>(put.size()));
  }
  std::vector<Row> Take(int row) {
    const auto first = rows.begin() + row, last = rows.begin() + End(row);
    std::vector<Row> taken(first, last);
    rows.erase(first, last);
    return taken;
  }
  /// Sorts the siblings from a row on by moving one before another.
  void Sort(int first, int level, int column) {
    std::vector<std::vector<Row>> groups;
    while (first < size() && (*this)[first].level == level) groups.push_back(Take(first));
    std::stable_sort(groups.begin(), groups.end(), [column](const auto& a, const auto& b) {
      return multi_byte::CompareNoCase(a[0].texts.at(column), b[0].texts.at(column)) < 0;
    });
    for (auto& group : groups) {
      rows.insert(rows.begin() + first, group.begin(), group.end());
      const int next = first + static_cast<int>(group.size());
      if (group.size() > 1) Sort(first + 1, level + 1, column);
      first = next;
    }
  }

  std::vector<Row> rows;
};

void ExpectSame(CSftTree& tree, PlainTree& plain) {
  ASSERT_EQ(tree.GetCount(), plain.size());
  std::vector<int> path, last(1, -1), children(plain.rows.size());
  std::vector<int> selected, shown;
  for (int row = 0; row < plain.size(); ++row) {
    const PlainTree::Row& want = plain[row];
    const auto level = static_cast<std::size_t>(want.level);
    path.resize(level);
    bool is_shown = true;
    for (const int above : path) is_shown &= plain[above].expanded;
    const int parent = path.empty() ? -1 : path.back();
    if (parent >= 0) ++children[static_cast<std::size_t>(parent)];
    last.resize(std::max(level + 1, last.size()), -1);
    const int former = last[level] > parent ? last[level] : -1;
    last[level] = row;
    path.push_back(row);
    ASSERT_EQ(tree.GetLevel(row), want.level) << row;
    for (int column = 0; column < 3; ++column) {
      ASSERT_EQ(tree.GetCellText(row, column).View(), want.texts.at(column)) << row;
    }
    ASSERT_EQ(tree.GetRowData(row), want.data);
    ASSERT_EQ(tree.IsExpanded(row), want.expanded);
    ASSERT_EQ(tree.GetParentRow(row), parent) << row;
    ASSERT_EQ(tree.GetPrevSibling(row), former) << row;
    if (former >= 0) {
      ASSERT_EQ(tree.GetNextSibling(former), row);
    }
    ASSERT_EQ(tree.IsRowShown(row), is_shown) << row;
    ASSERT_EQ(tree.GetShownIndex(row), is_shown ? static_cast<int>(shown.size()) : -1) << row;
    if (is_shown) shown.push_back(row);
    ASSERT_EQ(tree.IsSelected(row), want.selected) << row;
    if (want.selected) selected.push_back(row);
    ASSERT_EQ(tree.GetCaret() == row, want.caret) << row;
  }
  ASSERT_EQ(tree.GetSelectedRows(), selected);
  ASSERT_EQ(tree.GetSelectedCount(), static_cast<int>(selected.size()));
  ASSERT_EQ(tree.GetShownCount(), static_cast<int>(shown.size()));
  for (std::size_t n = 0; n < shown.size(); ++n) {
    ASSERT_EQ(tree.GetShownRow(static_cast<int>(n)), shown[n]);
  }
  for (int row = 0; row < plain.size(); ++row) {
    ASSERT_EQ(tree.GetChildCount(row), children[static_cast<std::size_t>(row)]) << row;
    ASSERT_EQ(tree.HasChildren(row), children[static_cast<std::size_t>(row)] > 0);
    ASSERT_EQ(tree.GetDescendantCount(row), plain.End(row) - row - 1);
  }
}

/// One step at random, done to both.
void Step(CSftTree& tree, PlainTree& plain, std::mt19937& random) {
  const auto below = [&](int end) {
    return static_cast<int>(random() % static_cast<unsigned>(end));
  };
  const int count = plain.size(), level = below(5);
  const std::string text(static_cast<std::size_t>(below(20) == 0 ? below(40000) : below(4)), 'a');
  const std::string named = text + static_cast<char>((below(2) == 0 ? 'A' : 'a') + below(26));
  const int kind = count == 0 ? 0 : below(16);
  const int row = count == 0 ? 0 : below(count), other = below(count + 1), column = below(3);
  SCOPED_TRACE(std::to_string(kind) + " row " + std::to_string(row) + " of " +
               std::to_string(count) + " level " + std::to_string(level));
  if (kind < 3) {
    const int at = kind == 0 ? count : other;
    ASSERT_EQ(
        kind == 0 ? tree.AddRow(named.c_str(), level) : tree.InsertRow(at, named.c_str(), level),
        at);
    plain.Put(at, {PlainTree::Row{{named}}}, level);
  } else if (kind < 5) {
    ASSERT_TRUE(tree.DeleteRow(kind == 3 ? 0 : row));
    plain.Take(kind == 3 ? 0 : row);
  } else if (kind < 7) {
    const int moved = tree.MoveRow(row, other, level), end = plain.End(row);
    if (other > row && other < end) {
      ASSERT_EQ(moved, -1);
    } else {
      const int to = other > row ? other - (end - row) : other;
      ASSERT_EQ(moved, to);
      plain.Put(to, plain.Take(row), level);
    }
  } else if (kind == 7) {
    ASSERT_TRUE(tree.SetLevel(row, level));
    plain.Put(row, plain.Take(row), level);
  } else if (kind < 10) {
    const bool expand = below(2) == 0, deep = kind == 9;
    ASSERT_TRUE(tree.Expand(row, expand, deep));
    for (int at = row; at < (deep ? plain.End(row) : row + 1); ++at) plain[at].expanded = expand;
  } else if (kind < 12) {
    const bool select = below(3) > 0;
    const int last = std::min(count - 1, row + below(5));
    tree.SelectRows(row, last, select);
    for (int at = row; at <= last; ++at) plain[at].selected = select;
    ASSERT_TRUE(tree.SetCaret(last));
    for (auto& each : plain.rows) each.caret = false;
    plain[last].caret = true;
  } else if (kind < 15) {
    const std::string put = kind == 14 ? plain[other % count].texts.at(column) : text;
    // A text of the tree itself is as good as any other.
    ASSERT_TRUE(tree.SetCellText(row, column,
                                 kind == 14 ? tree.CellText(other % count, column) : put.c_str()));
    ASSERT_TRUE(tree.SetRowData(row, random()));
    plain[row].texts.at(column) = put;
    plain[row].data = tree.GetRowData(row);
  } else if (below(4) == 0) {
    tree.SortRows(column);
    plain.Sort(0, 0, column);
  }
}

TEST(SftTree, RowsAreThoseOfAPlainListWhateverIsDoneToThem) {
  // How many rows there are at first, the steps, and after how many of them all is looked at.
  for (const auto& [rows, steps, look] : Rows<int, int, int>{{0, 3000, 1}, {2000, 500, 20}}) {
    std::mt19937 random(static_cast<unsigned>(rows + 7));
    CSftTree tree;
    PlainTree plain;
    tree.SetMultiSelection(true);
    for (const char* title : {"a", "b", "c"}) tree.AddColumn(title, 50);
    for (int row = 0; row < rows; ++row) {
      tree.AddRow("x", row % 7);
      plain.Put(row, {PlainTree::Row{{"x"}}}, row % 7);
    }
    for (int step = 0; step < steps; ++step) {
      Step(tree, plain, random);
      if (step % look == 0) ExpectSame(tree, plain);
      if (HasFatalFailure()) FAIL() << "step " << step << " of the tree with " << rows << " rows";
    }
  }
}

/// Levels and texts of a tree's rows, kept by what it tells of them alone.
struct Mirror : RecordingObserver {
  explicit Mirror(CSftTree& shown) : tree(shown) {}
  void OnWindowChange(CWnd& window, WindowChange change, const ChangedRange& told) override {
    if (&window != &tree) return;
    const bool all = told == ChangedRange(), in = change == WindowChange::kRowsInserted;
    const auto at = rows.begin() + told.first;
    if (in) rows.insert(at, static_cast<std::size_t>(told.count), {});
    if (change == WindowChange::kRowsRemoved) rows.erase(at, at + told.count);
    if (!in && change != WindowChange::kRowsChanged) return;
    for (int row = told.first; row < (all ? tree.GetCount() : told.first + told.count); ++row) {
      rows.at(static_cast<std::size_t>(row)) =
          std::to_string(tree.GetLevel(row)) + tree.CellText(row, 0);
    }
  }
  CSftTree& tree;
  std::vector<std::string> rows;
};

TEST(SftTree, RowsComeInWithTheTextsOfTheirColumns) {
  CSftTree tree;
  for (const char* title : {"A", "B", "C"}) tree.AddColumn(title, 50);
  for (const std::vector<const char*>& texts :
       {std::vector<const char*>{"a", nullptr, "c", "none"}, {"", "b"}, {"", nullptr, ""}, {}}) {
    const int row = tree.AddRow(texts);
    EXPECT_EQ(std::string(tree.CellText(row, 0)) + '|' + tree.CellText(row, 1) + '|' +
                  tree.CellText(row, 2),
              (std::array{"a||c", "|b|", "||", "||"}[static_cast<std::size_t>(row)]));
  }
  // A text may be the tree's own.
  const char* const own[] = {tree.CellText(0, 2), tree.CellText(1, 1)};
  EXPECT_EQ(tree.InsertRow(0, own, 5), 0);
  EXPECT_STREQ(tree.CellText(0, 1), "b");
  EXPECT_STREQ(tree.CellText(1, 2), "c");
  tree.SetCellText(0, 0, "longer");
  EXPECT_STREQ(tree.CellText(0, 1), "b");
}

TEST(SftTree, TellsObserversOfAllRowsThatChange) {
  MainWindow main;
  CSftTree tree;
  for (const char* title : {"a", "b", "c"}) tree.AddColumn(title, 50);
  tree.SetMultiSelection(true);
  tree.Create(&main, {0, 0, 200, 118}, 7);
  Mirror mirror(tree);
  PlainTree plain;
  std::mt19937 random(5);
  for (int step = 0; step < 1500; ++step) {
    Step(tree, plain, random);
    if (step % 7 != 0) continue;
    detail::TellRows();
    std::vector<std::string> rows;
    for (const auto& row : plain.rows) rows.push_back(std::to_string(row.level) + row.texts[0]);
    ASSERT_EQ(mirror.rows, rows) << step;
  }
  // Nothing if nothing changes, and a change to who looked on when it was made.
  RecordingObserver first;
  tree.Expand(0, tree.IsExpanded(0));
  EXPECT_EQ(first.Take(), "");
  tree.SetCellText(0, 0, "changed");
  RecordingObserver second;
  EXPECT_EQ(second.Take(), "");
  EXPECT_THAT(first.changes, testing::HasSubstr("7 rows"));
}

TEST(SftTree, IsDeepLargeAndSortedByAnyComparison) {
  constexpr int kRows = 100000;
  CSftTree tree;
  tree.AddColumn("", 50);
  for (int row = 0; row < kRows; ++row) tree.AddRow(row % 2 == 0 ? "b" : "a", row);
  tree.AddRow("a");
  EXPECT_EQ(tree.GetLevel(kRows - 1), kRows - 1);
  tree.Expand(0, false, true);
  for (int row = 0; row < kRows; ++row) tree.Expand(row, true);
  EXPECT_EQ(tree.GetShownCount(), kRows + 1);
  tree.SortRows(0);
  EXPECT_EQ(tree.GetLevel(1), 0) << "the last one comes before the chain";
  EXPECT_EQ(tree.GetParentRow(kRows), kRows - 1);
  tree.DeleteRow(1);
  // A comparison that contradicts itself loses no row.
  std::set<std::uintptr_t> kept;
  for (int row = 0; row < 1000; ++row) tree.SetRowData(tree.AddRow("x"), static_cast<UINT>(row));
  std::mt19937 random(3);
  tree.SortRowsBy([&random](int, int) { return static_cast<int>(random() % 3) - 1; });
  for (int row = 0; row < tree.GetCount(); ++row) kept.insert(tree.GetRowData(row));
  EXPECT_EQ(kept.size(), 1000u);
  // Megabyte cells beside empty ones.
  const std::string large(3 << 20, 'x');
  for (int row = 0; row < 20; ++row) tree.SetCellText(row, 0, large.c_str());
  tree.SetCellText(5, 0, "");
  EXPECT_EQ(tree.GetCellText(19, 0).GetLength() + tree.GetCellText(5, 0).GetLength(), 3 << 20);
  // Each row that goes is told, also by the end of the tree.
  static int gone = 0;
  gone = 0;
  {
    CSftTree ended;
    ended.SetDeleteCallback(
        [](CSftTree&, int, std::uintptr_t data) { gone += static_cast<int>(data); });
    for (const int data : {1, 10, 100})
      ended.SetRowData(ended.AddRow("", data / 10), static_cast<UINT>(data));
    ended.DeleteRow(1);
    EXPECT_EQ(gone, 110);
  }
  EXPECT_EQ(gone, 111);
}

}  // namespace
}  // namespace dq::test
