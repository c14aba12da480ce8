// Trees: texts, sorting, state, editing, moves, copying, saving, printing, and their views.

#include "tests/support/doubles.h"
#include "tests/support/registries.h"
#include "tests/support/temp_directory.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

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
std::string Rows(const CSftTree& tree) {
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
    EXPECT_EQ(Rows(one.tree), Rows(other.tree)) << column << one.tree.IsSortAscending();
  }
}

TEST(Tree, AClickOnATitleSortsAndASecondOneTurnsItRound) {
  Parent parent("b|900 KB,A|10 MB,c|x");
  const auto click = [&](int column) {
    MouseInput(WM_LBUTTONDOWN, MK_LBUTTON, {column * 100 + 10, 3}, &parent.tree);
    MouseInput(WM_LBUTTONUP, 0, {column * 100 + 10, 3}, &parent.tree);
    return Rows(parent.tree);
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
  EXPECT_EQ(Rows(parent.tree), "A,b,c");
  Parent alone("x");
  EXPECT_FALSE(alone.tree.SortByColumn(0));
  EXPECT_TRUE(alone.tree.GetSortColumn() == -1 && !parent.tree.SortByColumn(3));
}

TEST(Tree, RowsWithChildrenExpandAndCollapseButThoseAtTheTopStayOpen) {
  Parent parent("a, b,  c,   d,e");
  CDQTree& tree = parent.tree;
  const auto at = [&](int row) {
    tree.SetCaret(row);
    const LRESULT taken = parent.Reflect(row == 1 ? 33 : 45);
    return Rows(tree) + (taken != 0 ? " 1" : " 0");
  };
  EXPECT_EQ(at(0), "a, b,  c,   d,e 1");
  EXPECT_EQ(at(1), "a, b+,  c,   d,e 1");
  EXPECT_EQ(at(4), "a, b+,  c,   d,e 0") << "a leaf";
  {
    HeldKeys keys;
    keys.held = {VK_CONTROL};
    EXPECT_EQ(at(1), "a, b,  c,   d,e 1");
    EXPECT_EQ(at(1), "a, b+,  c+,   d,e 1") << "with all levels";
  }
  tree.AllowDrag(true);
  EXPECT_EQ(at(0), "a+, b+,  c+,   d,e 1");
  tree.SetHandleExpandCollapse(false);
  EXPECT_EQ(at(0), "a+, b+,  c+,   d,e 0");
}

TEST(Tree, KeysAreToldToTheParentAndCopy) {
  Parent parent("a|1, b|2");
  HeldKeys keys;
  std::string told;
  for (const UINT key : {45U, 46U, 109U, 107U, 65U}) {
    told += std::to_string(parent.tree.SendMessage(0xBC2E, MakeWParam(key, 0))) + ' ';
  }
  EXPECT_EQ(told + parent.codes, "-2 -2 -2 -2 -1 101 102 102 100 ");
  parent.codes.clear();
  parent.tree.SetFocus();
  for (const WPARAM key : {45, 46}) KeyInput(WM_KEYDOWN, key);
  EXPECT_EQ(parent.codes, "101 102 ");
  parent.tree.SetMultiSelect();
  parent.tree.SelectAll();
  // What holds the keys, and whether that copies.
  for (const auto& [held, key, copies] :
       std::initializer_list<std::tuple<std::set<int>, WPARAM, bool>>{
           {{VK_CONTROL}, 'C', true},
           {{VK_CONTROL}, 'c', true},
           {{VK_CONTROL}, VK_INSERT, true},
           {{VK_CONTROL, VK_SHIFT}, 'C', false},
           {{}, 'C', false}}) {
    platform::Current().clipboard->SetAll({});
    keys.held = held;
    KeyInput(WM_KEYDOWN, key);
    const auto text = platform::Current().clipboard->Get(CLIPBOARD_TEXT);
    EXPECT_EQ(text.value_or(""), copies ? std::string("a\t1\t\r\n\tb\t2\t\r\n\0", 14) : "") << key;
  }
}

TEST(Tree, TextsAreFoundCutAndJoinedByCells) {
  Parent parent("a|7|x,B,b||y|lost,b");
  CDQTree& tree = parent.tree;
  EXPECT_TRUE(tree.FindTextA(0, "b") == 2 && tree.FindTextA(2, "y") == 2);
  EXPECT_TRUE(tree.FindTextA(0, nullptr) == -1 && tree.FindTextA(3, "") == -1 &&
              tree.FindTextA(0, "A") == -1);
  CString text("former");
  tree.GetDelimitedText(2, text, "--");
  EXPECT_EQ(text, "b----y");
  tree.GetDelimitedText(9, text, ",");
  EXPECT_TRUE(text.IsEmpty() && !tree.SetText(9, "x") && !tree.SetDelimitedText(-1, "", ""));
  int number = 0;
  EXPECT_TRUE(tree.GetText(0, 1, number) && number == 7 && !tree.GetText(0, 3, number));
  EXPECT_TRUE(tree.SetText(1, 1, -5) && tree.GetText(1, 1) == "-5");
  EXPECT_EQ(tree.GetText(tree.AddString(42)), "42");
  EXPECT_TRUE(tree.SetItemBold(0, -1) && tree.GetItemFont(0, 2) == tree.GetBoldFont());
  EXPECT_TRUE(tree.SetItemColor(0, 1, 5) && tree.GetItemColor(0, 1) == 5);
  tagCellInfoParm info;
  std::tie(info.row, info.column) = std::pair(0, 1);
  ASSERT_TRUE(tree.GetCellInfo(&info));
  EXPECT_TRUE(info.text == "7" && info.color == 5 &&
              info.font == &tree.GetBoldFont()->GetLogFont());
  info.row = 1;
  EXPECT_TRUE(tree.SetCellInfo(&info) && tree.GetItemColor(1, 1) == 5 && tree.GetText(1, 1) == "7");
  CBitmap strip;
  strip.Attach(std::make_unique<BitmapDescription>(BitmapDescription{{4, 1}, {1, 2, 3, 4}}));
  tree.RegisterColumnBitmapSize(1, {2, 2});
  EXPECT_TRUE(tree.SetIndexedBitmap(0, 1, strip, 1) && !tree.SetIndexedBitmap(0, 1, strip, 2));
  EXPECT_EQ(tree.GetColumnBitmap(0, 1)->pixels, (std::vector<COLORREF>{3, 4}));
}

TEST(Tree, IndicesFollowInsertionsDeletionsAndMoves) {
  const auto after = [](ItemOperation operation, int row, int to = -1) {
    CUIntArray rows;
    for (const UINT each : {0U, 2U, 5U}) rows.Add(each);
    CDQTree::AdjustIndices(rows, operation, row, to);
    std::string text;
    for (int at = 0; at < rows.GetSize(); ++at) text += std::to_string(rows[at]) + ' ';
    return text;
  };
  EXPECT_EQ(after(ITEM_INSERTED, 2), "0 3 6 ");
  EXPECT_EQ(after(ITEM_DELETED, 2), "0 4 ");
  EXPECT_EQ(after(ITEM_MOVED, 5, 0), "1 3 ");
}

TEST(TreeStates, AreSavedByteForByteAndRestoredAsFarAsTheyFit) {
  MemoryRegistry registry;
  MainWindow main;
  main.app.SetRegistryKey("Maker");
  Parent parent("a, b,  c,d, e,f");
  CDQTree& tree = parent.tree;
  tree.SetMultiSelect();
  EXPECT_FALSE(tree.RestoreState("Tree")) << "nothing was saved";
  tree.Expand(0, false);
  tree.SetCaret(4);
  for (const int row : {2, 5}) tree.SelectRow(row);
  ASSERT_TRUE(tree.SaveState("Tree"));
  CXMemFile file;
  ASSERT_TRUE(file.ReadRegistry("Tree", "TreeState"));
  const std::string bytes(file.GetBuffer(), static_cast<std::size_t>(file.GetLength()));
  const std::string expected("\4\0\0\0\2\0\0\0\2\0\0\0\5\0\0\0\2\0\1\0\3\0", 22);
  EXPECT_EQ(bytes, expected);

  tree.SetCaret(0);
  tree.UnselectAll();
  for (const int row : {0, 1, 3}) tree.Expand(row, row == 0);
  EXPECT_TRUE(tree.RestoreState("Tree"));
  EXPECT_EQ(Rows(tree), "a+, b,  c,d, e,f");
  EXPECT_EQ(tree.GetSelectedRows(), (std::vector{2, 5}));
  EXPECT_EQ(tree.GetCaret(), 0) << "that comes when the tree has settled";
  PumpUntilIdle();
  EXPECT_EQ(tree.GetCaret(), 4);
  // Fewer rows, and others that have children.
  Parent other("a, b,c, d");
  EXPECT_TRUE(other.tree.RestoreState("Tree"));
  EXPECT_EQ(Rows(other.tree), "a+, b,c+, d");

  // Whatever is cut off, and whatever numbers lie, nothing changes.
  const auto restores = [&](const std::string& state) {
    main.app.WriteProfileBinary("Tree", "TreeState", reinterpret_cast<const BYTE*>(state.data()),
                                static_cast<UINT>(state.size()));
    const std::string before = Rows(tree);
    const bool restored = tree.RestoreState("Tree");
    return restored || Rows(tree) != before;
  };
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_FALSE(restores(bytes.substr(0, size))) << size;
  }
  for (const auto& [at, value] : {std::pair(4, '\x7F'), {7, '\x80'}, {7, '\x7F'}, {16, '\5'}}) {
    std::string lying = bytes;
    lying[static_cast<std::size_t>(at)] = value;
    EXPECT_FALSE(restores(lying)) << at;
  }
  registry.refusal = {platform::ErrorKind::kNoSpace, ENOSPC};
  EXPECT_FALSE(tree.SaveState("Other"));
}

/// Refuses what begins with "x", and tells what it is told.
struct EditedTree : CDQTree {
  void OnUpdateEdit(int row, const char* text) override {
    told += std::to_string(row) + text + ' ';
    CDQTree::OnUpdateEdit(row, text);
    if (told.ends_with("end ")) ResetContent();
  }
  std::string told;
};

TEST(TreeEditor, OffersItsTextByKeysAndByLosingTheFocus) {
  ScriptedPrompts prompts;
  WithParent<EditedTree> parent("a, b,c, d,e");
  EditedTree& tree = parent.tree;
  const auto edit = [&](const char* text, UINT key) {
    EXPECT_NE(tree.GetEditCtrl(), nullptr);
    if (tree.GetEditCtrl() == nullptr) return;
    tree.GetEditCtrl()->SetWindowText(text);
    tree.GetEditCtrl()->SendMessage(WM_KEYDOWN, key);
  };
  tree.SetColors(7);
  tree.SetCaret(1);
  tree.EditCell(-1, 0);
  ASSERT_NE(tree.GetEditCtrl(), nullptr);
  CRect place;
  tree.GetCellRect(1, 0, &place, true);
  EXPECT_TRUE(tree.GetEditCtrl()->GetPlace() == place && tree.GetDlgItem(1111) == CWnd::GetFocus());
  EXPECT_TRUE(tree.GetEditCtrl()->GetTextColor() == 7 && tree.GetEditCtrl()->GetSel() == 0x10000);
  EXPECT_TRUE(tree.GetEditIndex() == 1 && tree.GetEditCol() == 0);
  edit("B", VK_RETURN);
  EXPECT_TRUE(tree.GetEditCtrl() == nullptr && CWnd::GetFocus() == &tree);
  tree.EditCell(1, 1);
  tree.AddRow("f");
  tree.MoveWindow({0, 0, 400, tree.GetHeaderHeight() + 2 * tree.GetRowHeight()});
  tree.SendMessage(WM_VSCROLL, SB_LINEDOWN);
  tree.GetCellRect(1, 1, &place, true);
  EXPECT_TRUE(tree.GetTopRow() == 1 && tree.GetEditCtrl()->GetPlace() == place);
  tree.MoveWindow({0, 0, 400, 300});
  tree.DeleteRow(5);
  edit("", VK_TAB);
  EXPECT_EQ(prompts.shown.at(0).text, "Please enter a name for the item.");
  ASSERT_NE(tree.GetEditCtrl(), nullptr) << "the edit goes on";
  edit("dropped", VK_ESCAPE);
  EXPECT_EQ(tree.GetEditCtrl(), nullptr);
  tree.AllowEmptyEdit(true);
  tree.EditCell(1, 1);
  edit("", VK_TAB);
  tree.EditCell(4, 0);
  tree.GetEditCtrl()->SetWindowText("");
  tree.AllowEmptyEdit(false);
  parent.SetFocus();
  EXPECT_TRUE(prompts.shown.size() == 2 && CWnd::GetFocus() == tree.GetEditCtrl());
  edit("", VK_ESCAPE);
  // The name of another folder with the same parent is refused without a word, that of a leaf not.
  tree.EditCell(2, 0);
  edit("a", VK_RETURN);
  EXPECT_EQ(prompts.shown.size(), 2U);
  edit("e", VK_RETURN);
  tree.EditCell(4, 0);
  tree.GetEditCtrl()->SetWindowText("by focus");
  parent.SetFocus();
  EXPECT_EQ(tree.GetEditCtrl(), nullptr);
  tree.EditCell(9, 0);
  tree.EditCell(0, 3);
  EXPECT_EQ(tree.GetEditCtrl(), nullptr) << "there is no such cell";
  tree.Expand(0, false);
  tree.EditCell(1, 0);
  EXPECT_EQ(Rows(tree), "a, B,e, d,by focus") << "it is brought into view";
  edit("end", VK_RETURN);
  EXPECT_EQ(tree.told, "1B 1 2e 4by focus 1end ");
  EXPECT_TRUE(tree.GetCount() == 0 && tree.GetEditCtrl() == nullptr);
  EXPECT_EQ(parent.codes, "") << "they are the tree's own";
}

TEST(Tree, MovesCarryWhatIsBelowAndRefuseOwnFolders) {
  ScriptedPrompts prompts;
  // What is selected, and what it is dropped on; in brackets with rearranging.
  for (const auto& [selected, target, rows] : Cases<3>(R"(
      1 => 4 => a, c,  d,e, f, b,g ;; 1 2 => 6 => a,e, f,g,b?
      1 => 6 => a, c,  d,e, f,g, b? ;; 0 => 4 => e, f, a,  b,  c,   d,g
      1 => 0 => 23545 ;; 2 => 2 => ;; 0 => 2 => 23546 ;; 1 2 => 0 => 23545 ;; 5 => 3 => a, b, c,  d,  f,e,g
      1 3 6 => 4 => a, c,e, f, b, d, g ;; 6 => -1 => 23545 ;; 1 6 => 5 => a, c,  d,e, f, b, g
      1 => [2] => a, c,  d,  b,e, f,g ;; 5 6 => [1] => a, f, g, b, c,  d,e ;; 3 => [1] => a, d, b, c,e, f,g
      0 => [6] => 23545 ;; 6 => [-1] => a, b, c,  d,e, f,g ;; 0 => [-1] => e, f,g,a, b, c,  d)")) {
    if (rows.ends_with('?')) continue;
    Parent parent("a, b, c,  d,e, f,g");
    parent.tree.SetMultiSelect();
    std::istringstream numbers(selected);
    for (int row; numbers >> row;) parent.tree.SelectRow(row);
    parent.tree.AllowRearranging(target.starts_with('['));
    prompts.shown.clear();
    const bool moved = parent.tree.MoveSelItems(std::stoi(target.substr(target[0] == '[')));
    const bool same = Rows(parent.tree) == "a, b, c,  d,e, f,g";
    std::string told = same && !moved ? "" : Rows(parent.tree);
    if (!prompts.shown.empty())
      told = prompts.shown[0].text.ends_with("same as the source folder.") ? "23545" : "23546";
    EXPECT_EQ(told, rows) << selected << " on " << target;
  }
}

TEST(Tree, DeletionAsksAndGoesFromTheBottomUp) {
  ScriptedPrompts prompts{BUTTON_NO, BUTTON_YES, BUTTON_YES, BUTTON_YES};
  Parent parent("a, b,c, d,  e,f");
  CDQTree& tree = parent.tree;
  static std::string gone;
  gone.clear();
  tree.SetDeleteCallback(
      [](CSftTree& from, int row, std::uintptr_t) { gone += from.GetCellText(row, 0); });
  tree.SetMultiSelect();
  tree.DeleteSelectedItems();
  tree.SelectRow(3);
  tree.DeleteSelectedItems();
  EXPECT_TRUE(tree.GetCount() == 6 && CWnd::GetFocus() == &tree);
  tree.Clear();
  EXPECT_EQ(Rows(tree), "a, b,c,f");
  for (const int row : {0, 1, 2}) tree.SelectRow(row);
  tree.Cut();
  EXPECT_EQ(Rows(tree) + " " + gone, "f decba");
  EXPECT_EQ(platform::Current().clipboard->Get(CLIPBOARD_TEXT),
            std::string("a\t\t\r\n\tb\t\t\r\nc\t\t\r\n\0", 17));
  tree.SelectRow(0);
  tree.DeleteSelectedItems();
  std::string told;
  for (const ShownBox& box : prompts.shown) told += std::to_string(box.type) + box.text + '\n';
  EXPECT_EQ(told,
            "292Are you sure that you want to delete the folder 'd' and all of its contents?\n"
            "292Are you sure that you want to delete the folder 'd' and all of its contents?\n"
            "292Are you sure that you want to delete these 3 items?\n"
            "292Are you sure that you want to delete the item 'f' ?\n");
  tree.CreateNewFolder();
  EXPECT_TRUE(Rows(tree) == "New Folder" && tree.GetEditIndex() == 0);
  tree.ResetEditCtrl();
  EXPECT_EQ(tree.CreateNewItem(), 1);
}

/// Chooses a file to save to, and what is printed into a file.
struct OutputPrompts : ScriptedPrompts {
  using ScriptedPrompts::ScriptedPrompts;
  std::optional<platform::ChosenFiles> ChooseFile(const platform::FileQuestion& asked) override {
    file = asked;
    return platform::ChosenFiles{{path}, 2};
  }
  std::optional<platform::PrintChoice> ChoosePrint(const platform::PrintQuestion& asked) override {
    print = asked;
    return choice;
  }
  std::string path;
  platform::FileQuestion file;
  platform::PrintQuestion print;
  platform::PrintChoice choice;
};

TEST(Tree, SavesAllRowsWithCommasWhateverTheKindOfFile) {
  OutputPrompts prompts;
  TempDirectory directory;
  prompts.path = directory.path() + "/rows.tab";
  Parent parent("a|1|x, b,c|2\"");
  parent.tree.Expand(0, false);
  parent.tree.SendMessage(WM_COMMAND, 57603);
  EXPECT_EQ(directory.Get("rows.tab"), "a,1,x\r\nb,,\r\nc,2\",\r\n");
  EXPECT_TRUE(prompts.file.kinds.size() == 3 && prompts.file.extension == "CSV");
  EXPECT_THROW(parent.tree.Save((directory.path() + "/no/file").c_str(), ",", "\n"),
               CFileException);
  prompts.path = directory.path();
  parent.tree.OnFileSave();
  EXPECT_EQ(prompts.shown.size(), 1U) << "it is told in a box";
}

TEST(Tree, PrintsSixtyRowsAPageOfAllOrOfTheSelected) {
  OutputPrompts prompts;
  ScriptedPrinting printing;
  ManualClock clock;
  Parent parent;
  CDQTree& tree = parent.tree;
  tree.OnFilePrint();
  EXPECT_EQ(printing.printed, 0);
  for (int row = 0; row < 60; ++row)
    tree.AddRow(("row" + std::to_string(row) + ".").c_str(), row % 2);
  for (int row = 0; row < 60; row += 2) tree.Expand(row, false);
  tree.SetText(7, 1, std::string(100000, 'w').c_str());
  tree.SetPrintHeaderPrefix("Prefix");
  const auto print = [&] {
    printing.document.clear();
    tree.SendMessage(WM_COMMAND, 57607);
    std::size_t pages = 0;
    for (std::size_t at = 0; (at = printing.document.find("/Type /Page ", at)) != std::string::npos;
         ++at)
      ++pages;
    return std::to_string(pages);
  };
  EXPECT_EQ(print(), "1");
  EXPECT_TRUE(prompts.shown.empty() && !prompts.print.offer_selection);
  const auto has = [&](const char* text) {
    return printing.document.find(text) != std::string::npos;
  };
  EXPECT_TRUE(has("(Prefix     ") && has("(row0.)") && has("(row59.)") && has("(Title)"));
  EXPECT_TRUE(has("(1 / 1)") && has("www...)") && !has(std::string(1000, 'w').c_str()));
  // The question is answered by its usual button, which is Yes.
  tree.AddRow("last.", 0);
  EXPECT_EQ(print(), "2");
  EXPECT_EQ(prompts.shown.at(0).text,
            "The report desired will be about 2 pages long.\nDo you want to continue?");
  EXPECT_TRUE(has("(last.)") && has("(2 / 2)"));
  prompts.choice = {.part = platform::PrintedPart::kPages, .from = 2, .to = 9, .copies = 3};
  EXPECT_TRUE(print() == "1" && has("(last.)") && !has("(row0.)") && printing.job.copies == 3);
  tree.SetMultiSelect();
  tree.AllowPrintSelection(true);
  for (const int row : {3, 60}) tree.SelectRow(row);
  prompts.choice = {.part = platform::PrintedPart::kSelection};
  EXPECT_TRUE(print() == "1" && has("(row3.)") && has("(last.)") && !has("(row4.)"));
  EXPECT_TRUE(prompts.print.offer_selection &&
              prompts.print.choice.part == platform::PrintedPart::kSelection);
  EXPECT_EQ(prompts.shown.size(), 2U) << "one page is no question";
  printing.outcome = {platform::Error{platform::ErrorKind::kOther, 5}, "out of paper"};
  print();
  EXPECT_EQ(prompts.shown.back().text, "out of paper");
  EXPECT_TRUE(parent.IsWindowEnabled() && parent.GetTopLevelParent() == &parent);
}

TEST(Tree, PrintingEndsByItsDialogOrWithTheTree) {
  for (const bool ends : {false, true}) {
    Parent parent;
    for (int row = 0; row < 200; ++row) parent.tree.AddRow("x");
    std::vector<int> rows(200);
    std::iota(rows.begin(), rows.end(), 0);
    RecordingDC dc({.area = {1000, 1400}, .has_pages = true});
    CDQPrintDlg printing(dc, parent.tree, rows);
    EXPECT_EQ(printing.GetPageCount(), 4);
    if (ends) {
      parent.PostMessage(WM_CLOSE);
      EXPECT_EQ(printing.Print(), PrintResult::kCancelled);
    } else {
      struct Cancelling : RecordingObserver {
        void OnWindowChange(CWnd& window, WindowChange change, const ChangedRange&) override {
          if (change == WindowChange::kText && window.GetWindowText() == "2 / 4") {
            window.GetParent()->PostMessage(WM_COMMAND, IDCANCEL);
          }
        }
      } observer;
      EXPECT_EQ(printing.Print(), PrintResult::kCancelled);
    }
    EXPECT_EQ(dc.Text().find("document") != std::string::npos, true) << dc.Text().substr(0, 300);
  }
}

/// Drags from one row to a place, or with -1 there to another row, and tells the rows then.
std::string Drag(CDQTree& tree, int row, CPoint to) {
  const auto middle = [&tree](int of) {
    CRect place;
    tree.GetCellRect(of, 0, &place, true);
    return CPoint{(place.left + place.right) / 2, (place.top + place.bottom) / 2};
  };
  const CPoint from = tree.ClientToScreen(middle(row));
  to = tree.ClientToScreen(to.x < 0 ? middle(static_cast<int>(to.y)) : to);
  MouseInput(WM_LBUTTONDOWN, MK_LBUTTON, from, &tree);
  MouseInput(WM_MOUSEMOVE, MK_LBUTTON, to, &tree);
  MouseInput(WM_LBUTTONUP, 0, to, &tree);
  return Rows(tree);
}

TEST(Tree, ADragMovesRowsOrTellsOfOtherWindows) {
  struct Foreign : CDQTree {
    LRESULT OnForeignDrop(CWnd* target, const CStringArray*) override {
      return told += "drop on " + std::to_string(target->GetDlgCtrlID()) + " ", 0;
    }
    LRESULT OnForeignDrag(CWnd* target) override {
      return told += "over " + std::to_string(target->GetDlgCtrlID()) + " ", 0;
    }
    void PostDrag() override { told += "end "; }
    std::string told;
  };
  ScriptedPrompts prompts;
  WithParent<Foreign> parent("a, b,c");
  CWnd other;
  other.CreateWnd({.class_name = "Other", .place = {0, 200, 400, 300}, .parent = &parent, .id = 9});
  parent.tree.MoveWindow({0, 0, 400, 200});
  EXPECT_EQ(Drag(parent.tree, 2, {-1, 0}), "a, b,c") << "it isn't allowed";
  parent.tree.AllowDrag(true);
  EXPECT_EQ(Drag(parent.tree, 2, {-1, 0}), "a, b, c");
  EXPECT_EQ(Drag(parent.tree, 1, {20, 190}), "a, c,b") << "below all rows";
  EXPECT_EQ(Drag(parent.tree, 1, {20, 2}), "a, c,b") << "on the titles";
  EXPECT_EQ(Drag(parent.tree, 1, {20, 250}), "a, c,b");
  EXPECT_EQ(parent.tree.told, "end end end over 9 drop on 9 end ");
  EXPECT_TRUE(prompts.shown.empty() && parent.tree.GetDropTarget() == -1);
}

/// Takes rows from elsewhere, and keeps what it is told of other windows.
struct DropTree : CDQTree {
  void* CreateItem(const char* text, bool) override {
    return takes ? const_cast<char*>(text) : nullptr;
  }
  LRESULT OnForeignDrop(CWnd* target, const CStringArray* texts) override {
    told += target == this ? "in " : "out ";
    for (int at = 0; texts != nullptr && at < texts->GetSize(); ++at) told += (*texts)[at] + " ";
    return 0;
  }
  void PostDrag() override { told += "over "; }
  bool takes = true;
  std::string told;
};

struct DropView : CDQTreeView {
  std::unique_ptr<CDQTree> CreateTreeControl() override { return std::make_unique<DropTree>(); }
  DropTree& tree() { return static_cast<DropTree&>(*GetTree()); }
};

TEST(TreeView, IsFilledByItsTreeWhichTakesItsCommandsAndDrops) {
  MainWindow main;
  main.MoveWindow({0, 0, 400, 300});
  DropView view;
  view.EnableDragging(true);
  ASSERT_TRUE(view.Create(&main, {0, 0, 300, 200}, 1, static_cast<CDocument*>(nullptr)));
  DropTree& tree = view.tree();
  EXPECT_TRUE(tree.GetDlgCtrlID() == 3070 && tree.GetPlace() == view.GetClientRect());
  view.MoveWindow({0, 0, 200, 100});
  view.SetFocus();
  EXPECT_TRUE(tree.GetPlace() == view.GetClientRect() && CWnd::GetFocus() == &tree);
  const auto enabled = [&] {
    std::string bits;
    for (const UINT id : {57635U, 57634U, 57637U, 57632U, 57642U}) {
      struct : CCmdUI {
        void Enable(BOOL on) override { bit = on != 0 ? '1' : '0'; }
        char bit = '-';
      } ui;
      ui.m_nID = id;
      view.OnCmdMsg(id, CN_UPDATE_COMMAND_UI, &ui, nullptr);
      bits += ui.bit;
    }
    return bits;
  };
  platform::Current().clipboard->SetAll({});
  EXPECT_EQ(enabled(), "00000");
  tree.AddColumn("", 100);
  Fill(tree, "a, b,c");
  tree.SetMultiSelect();
  EXPECT_EQ(enabled(), "00001");
  view.SendMessage(WM_COMMAND, 57642);
  view.SendMessage(WM_COMMAND, 57634);
  EXPECT_EQ(enabled(), "11111");

  const auto drop = [&](UINT format, std::string_view bytes, int row) {
    COleDataObject data;
    data.SetData(format, bytes);
    CRect place;
    tree.GetCellRect(row, -1, &place);
    const CPoint point = tree.ClientToScreen(CPoint{5, place.top + 1});
    DragInput drag(data, DROPEFFECT_COPY);
    const UINT over = drag.Move(&tree, MK_LBUTTON, point);
    EXPECT_EQ(tree.GetDropTarget(), row);
    const UINT effect = drag.Drop(&tree, 0, point);
    return std::to_string(over) + std::to_string(effect) + " " + Rows(tree);
  };
  EXPECT_EQ(drop(CLIPBOARD_TEXT, std::string_view("text\0", 5), 2), "11 a, b,c,text");
  EXPECT_EQ(drop(CLIPBOARD_FILES, std::string_view("/f\0/g\0", 7), 0), "11 a, b, /f, /g,c,text");
  EXPECT_EQ(drop(1234, "x", 0), "00 a, b, /f, /g,c,text") << "neither a text nor files";
  tree.takes = false;
  EXPECT_EQ(drop(CLIPBOARD_TEXT, "more", 0), "10 a, b, /f, /g,c,text");
  EXPECT_EQ(tree.told + std::to_string(tree.GetDropTarget()), "in text in /f /g in more -1");
  CWnd other;
  CDQTreeDropTarget target;
  COleDataObject data;
  data.SetData(CLIPBOARD_TEXT, "x");
  EXPECT_EQ(target.OnDragOver(&other, &data, 0, {}), DROPEFFECT_NONE);

  auto second = std::make_unique<CDQTree>();
  CDQTree* const plain = second.get();
  view.SetTree(std::move(second));
  EXPECT_TRUE(view.GetTree() == plain && view.GetDlgItem(3070) == plain);
}

TEST(NetworkTree, ListsTheMachinesOnceItIsOpened) {
  struct : platform::Network {
    platform::Result<platform::NetworkError> LastError() override { return platform::Error{}; }
    platform::Result<std::vector<std::string>> Machines() override { return machines; }
    platform::Result<std::vector<std::string>> machines =
        platform::Error{platform::ErrorKind::kOther, 53};
  } network;
  const platform::ScopedPlatform scope(With(&platform::Platform::network, &network));
  ScriptedPrompts prompts;
  WithParent<CDQNetworkTree> parent;
  CDQNetworkTree& tree = parent.tree;
  tree.Initialize(1);
  EXPECT_EQ(Rows(tree), "Network");
  tree.SetCaret(0);
  parent.Reflect(33);
  EXPECT_EQ(prompts.shown.at(0).text, "Network error 53.\r\n");
  network.machines = std::vector<std::string>{"\\\\ALPHA", "beta"};
  parent.Reflect(33);
  EXPECT_EQ(Rows(tree), "Network, ALPHA, beta");
  tree.SelectAll();
  CStringArray names;
  EXPECT_TRUE(tree.GetSelectedMachines(names) == 2 && tree.GetMachineCount() == 2);
  EXPECT_EQ(names[0] + names[1], "ALPHAbeta");
}

}  // namespace
}  // namespace dq::test
