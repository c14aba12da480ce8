// Trees from a line of text, and their rows as one.
//
//   Parent parent("a, b,c|second column");
//   EXPECT_EQ(RowsOf(parent.tree), "a, b,c");

#pragma once

#include "tests/support/windows.h"

namespace dq::test {

/// Rows as lines: blanks for the level, the columns with "|" between.
template <typename Tree>
void Fill(Tree& tree, std::string_view rows) {
  std::istringstream lines{std::string(rows)};
  for (std::string line; std::getline(lines, line, ',');) {
    const std::size_t level = line.find_first_not_of(' ');
    const int row = tree.AddRow("", static_cast<int>(level));
    tree.SetDelimitedText(row, line.substr(level).c_str(), "|");
  }
}

/// The first column, as `Fill` takes it; "+" behind rows that are collapsed.
inline std::string RowsOf(const CSftTree& tree) {
  std::string rows;
  for (int row = 0; row < tree.GetCount(); ++row) {
    rows += (row > 0 ? "," : "") + std::string(static_cast<std::size_t>(tree.GetLevel(row)), ' ');
    rows += tree.CellText(row, 0);
    if (tree.HasChildren(row) && !tree.IsExpanded(row)) rows += '+';
  }
  return rows;
}

/// A tree in a parent that keeps what it is told, with three columns of different types.
template <typename Tree>
struct WithParent : CWnd {
  explicit WithParent(std::string_view rows = "") {
    CreateWnd({.class_name = "Parent", .place = {0, 0, 400, 300}});
    const UINT formats[] = {kColumnText, kColumnNumber, kColumnDateTime};
    for (const UINT format : formats) tree.AddColumn("Title", 100, format);
    tree.Create(0, {0, 0, 400, 300}, this, 3070);
    Fill(tree, rows);
  }
  ~WithParent() override { DestroyWindow(); }
  BOOL OnCmdMsg(UINT id, int code, void*, void*) override {
    if (id == 3070) codes += std::to_string(code) + ' ';
    return 0;
  }
  /// Has the tree notify it, and tells whether the tree's own handler takes it.
  LRESULT Reflect(int code) {
    return tree.SendMessage(0xBD11, MakeWParam(3070, static_cast<UINT>(code)),
                            reinterpret_cast<LPARAM>(tree.GetSafeHwnd()));
  }

  /// What it was told of the tree.
  std::string codes;
  Tree tree;
};
using Parent = WithParent<CDQTree>;

}  // namespace dq::test
