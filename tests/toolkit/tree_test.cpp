// Trees: texts, keys, state, editing, moves, copying, saving and printing.

#include "tests/support/doubles.h"
#include "tests/support/registries.h"
#include "tests/support/temp_directory.h"
#include "tests/support/trees.h"

namespace dq::test {
namespace {

TEST(Tree, RowsWithChildrenExpandAndCollapseButThoseAtTheTopStayOpen) {
  Parent parent("a, b,  c,   d,e");
  CDQTree& tree = parent.tree;
  const auto at = [&](int row) {
    tree.SetCaret(row);
    const LRESULT taken = parent.Reflect(row == 1 ? 33 : 45);
    return RowsOf(tree) + (taken != 0 ? " 1" : " 0");
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

TEST(Tree, WithoutColumnsHasOneTextARow) {
  CDQTree tree;
  CString text;
  EXPECT_TRUE(tree.AddString("beta") == 0 && tree.AddString("alpha") == 1 && tree.GetText(1, text));
  EXPECT_TRUE(text == "alpha" && tree.FindTextA(0, "alpha") == 1 && tree.FindTextA(1, "") == -1);
  EXPECT_TRUE(tree.SetDelimitedText(0, "B,lost", ",") && tree.SortByColumn(0));
  tree.SetMultiSelect();
  tree.SelectAll();
  EXPECT_EQ(tree.GetCopyText(), "alpha\r\nB\r\n");
  EXPECT_TRUE(tree.SetItemBold(0, 0));
  CFont* const bold = tree.GetItemFont(0, 0);
  tree.SetDefaultFont();
  const auto other = std::make_unique<CFont>();
  EXPECT_EQ(tree.GetBoldFont(), bold) << "cells have it";
  RecordingDC dc({.area = {1000, 1400}, .has_pages = true});
  EXPECT_EQ(CDQPrintDlg(dc, tree, {0}).Print(), PrintResult::kDone);
  EXPECT_NE(dc.Text().find("alpha"), std::string::npos);
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
  EXPECT_EQ(after(ITEM_INSERTED, -1) + after(ITEM_DELETED, -1), "0 2 5 0 2 5 ");
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
  EXPECT_EQ(RowsOf(tree), "a+, b,  c,d, e,f");
  EXPECT_EQ(tree.GetSelectedRows(), (std::vector{2, 5}));
  EXPECT_EQ(tree.GetCaret(), 0) << "that comes when the tree has settled";
  PumpUntilIdle();
  EXPECT_EQ(tree.GetCaret(), 4);
  EXPECT_TRUE(tree.SendMessage(0x3701, WPARAM(-1)) == 0 && tree.GetCaret() == -1) << "none";
  // Fewer rows, and others that have children.
  Parent other("a, b,c, d");
  EXPECT_TRUE(other.tree.RestoreState("Tree"));
  EXPECT_EQ(RowsOf(other.tree), "a+, b,c+, d");

  // Whatever is cut off, and whatever numbers lie, nothing changes.
  const auto restores = [&](const std::string& state) {
    main.app.WriteProfileBinary("Tree", "TreeState", reinterpret_cast<const BYTE*>(state.data()),
                                static_cast<UINT>(state.size()));
    const std::string before = RowsOf(tree);
    const bool restored = tree.RestoreState("Tree");
    return restored || RowsOf(tree) != before;
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
  EXPECT_EQ(RowsOf(tree), "a, B,e, d,by focus") << "it is brought into view";
  edit("end", VK_RETURN);
  EXPECT_EQ(tree.told, "1B 1 2e 4by focus 1end ");
  EXPECT_TRUE(tree.GetCount() == 0 && tree.GetEditCtrl() == nullptr);
  EXPECT_EQ(parent.codes, "") << "they are the tree's own";
}

TEST(TreeEditor, GoesWithItsRow) {
  Parent parent("b,a, c");
  CDQTree& tree = parent.tree;
  tree.EditCell(1, 0);
  ASSERT_NE(tree.GetEditCtrl(), nullptr);
  tree.InsertRow(0, "z", 0);
  CRect place;
  EXPECT_TRUE(tree.GetCellRect(2, 0, &place, true) && tree.GetEditCtrl()->GetPlace() == place);
  const BitmapDescription picture{{9, 9}, std::vector<COLORREF>(81)};
  tree.SetRowPicture(2, &picture);
  EXPECT_TRUE(tree.GetCellRect(2, 0, &place, true) && tree.GetEditCtrl()->GetPlace() == place);
  tree.ShowButtons(false);
  tree.ShowTreeLines(false);
  EXPECT_TRUE(tree.GetCellRect(2, 0, &place, true) && tree.GetEditCtrl()->GetPlace() == place);
  tree.SortByColumn(0);
  tree.GetEditCtrl()->SetWindowText("A");
  tree.GetEditCtrl()->SendMessage(WM_KEYDOWN, VK_RETURN);
  EXPECT_EQ(RowsOf(tree), "A, c,b,z");
  tree.EditCell(1, 0);
  ASSERT_NE(tree.GetEditCtrl(), nullptr);
  tree.DeleteRow(0);
  EXPECT_TRUE(tree.GetEditCtrl() == nullptr && RowsOf(tree) == "b,z");
  tree.SetCaret(1);
  tree.EditCell(0, -1);
  tree.EditCell(-2, 0);
  EXPECT_EQ(tree.GetEditCtrl(), nullptr) << "there is no such cell";
}

TEST(Tree, MovesCarryWhatIsBelowAndRefuseOwnFolders) {
  ScriptedPrompts prompts;
  // What is selected, and what it is dropped on; in brackets with rearranging.
  for (const auto& [selected, target, rows] : Cases<3>(R"(
      1 => 4 => a, c,  d,e, f, b,g ;; 1 2 => 6 => a,e, f,g,b,c, d
      1 => 6 => a, c,  d,e, f,g,b ;; 0 => 4 => e, f, a,  b,  c,   d,g
      1 => 0 => 23545 ;; 2 => 2 => ;; 0 => 2 => 23546 ;; 1 2 => 0 => 23545 ;; 5 => 3 => a, b, c,  d,  f,e,g
      1 3 6 => 4 => a, c,e, f, b, d, g ;; 6 => -1 => 23545 ;; 1 6 => 5 => a, c,  d,e, f, b, g
      1 => [2] => a, c,  d,  b,e, f,g ;; 5 6 => [1] => a, f, g, b, c,  d,e ;; 3 => [1] => a, d, b, c,e, f,g
      0 => [6] => 23545 ;; 6 => [-1] => a, b, c,  d,e, f,g ;; 0 => [-1] => e, f,g,a, b, c,  d)")) {
    Parent parent("a, b, c,  d,e, f,g");
    parent.tree.SetMultiSelect();
    std::istringstream numbers(selected);
    for (int row; numbers >> row;) parent.tree.SelectRow(row);
    parent.tree.AllowRearranging(target.starts_with('['));
    EXPECT_EQ(parent.tree.InsertNode(3, 2), -1) << "where it is already";
    prompts.shown.clear();
    const bool moved = parent.tree.MoveSelItems(std::stoi(target.substr(target[0] == '[')));
    const bool same = RowsOf(parent.tree) == "a, b, c,  d,e, f,g";
    std::string told = same && !moved ? "" : RowsOf(parent.tree);
    if (!prompts.shown.empty())
      told = prompts.shown[0].text.ends_with("same as the source folder.") ? "23545" : "23546";
    EXPECT_EQ(told, rows) << selected << " on " << target;
  }
  Parent parent("a, b,c");
  EXPECT_EQ(parent.tree.InsertNode(2, 0, 2), -1) << "that one isn't below the folder";
  EXPECT_FALSE(parent.tree.TypesEqual(-1, -1) || parent.tree.TypesEqual(1, 9));
}

TEST(Tree, MayEndWhileItIsAskedForANameOrAPicture) {
  struct Ending : CDQTree {
    CString GetItemName(void*) override { return delete this, ""; }
    CBitmap* OverrideLeafBitmap(int) override { return delete this, nullptr; }
  };
  MainWindow main;
  for (const bool named : {true, false}) {
    auto* const tree = new Ending;
    tree->Create(0, {0, 0, 90, 90}, &main, 7);
    tree->SetMultiSelect();
    for (int row = 0; row < (named ? 1 : 2); ++row) tree->SelectRow(tree->AddRow("x"));
    named ? tree->DeleteSelectedItems() : tree->SetSelectedItemBitmaps(nullptr);
    EXPECT_EQ(main.GetDlgItem(7), nullptr);
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
  EXPECT_EQ(RowsOf(tree), "a, b,c,f");
  for (const int row : {0, 1, 2}) tree.SelectRow(row);
  {
    struct : platform::Clipboard {
      platform::Error SetAll(std::span<const platform::ClipboardData>) override {
        return {platform::ErrorKind::kBusy, 0};
      }
      std::optional<std::string> Get(UINT) override { return std::nullopt; }
      std::vector<UINT> Formats() override { return {}; }
    } busy;
    const platform::ScopedPlatform scope(With(&platform::Platform::clipboard, &busy));
    tree.Cut();
    EXPECT_TRUE(!tree.Copy() && RowsOf(tree) == "a, b,c,f") << "what isn't copied stays";
  }
  tree.Cut();
  EXPECT_EQ(RowsOf(tree) + " " + gone, "f decba");
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
  EXPECT_TRUE(RowsOf(tree) == "New Folder" && tree.GetEditIndex() == 0);
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
  struct : RecordingObserver {
    void OnWindowChange(CWnd& window, WindowChange change, const ChangedRange&) override {
      if (change == WindowChange::kText) told += window.GetWindowText() + '|';
    }
    std::string told;
  } shown;
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
  EXPECT_TRUE(has("(Prefix     2/3/2001     04:05:06.007)") && has("(row0.)") && has("(row59.)") &&
              has("(Title)"));
  EXPECT_TRUE(has("(1 / 1)") && has("www...)") && !has(std::string(1000, 'w').c_str()));
  EXPECT_NE(shown.told.find("Sending Message to the Printer|"), std::string::npos);
  // The question is answered by its usual button, which is Yes.
  tree.AddRow("last.", 0);
  EXPECT_EQ(print(), "2");
  EXPECT_EQ(prompts.shown.at(0).text,
            "The report desired will be about 2 pages long.\nDo you want to continue?");
  EXPECT_TRUE(has("(last.)") && has("(2 / 2)"));
  EXPECT_NE(shown.told.find("Sending Messages to the Printer|"), std::string::npos);
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

TEST(Tree, MayEndWhenItsLayoutChanges) {
  struct Ending : CDQTree {
    void OnLayoutChanged() override {
      CDQTree::OnLayoutChanged();
      if (act) std::exchange(act, nullptr)();
    }
    std::function<void()> act;
  };
  ScriptedPrompts prompts{BUTTON_YES};
  Parent parent;
  CBitmap picture;
  for (const auto& operation : std::vector<std::function<void(Ending&)>>{
           [](Ending& tree) { tree.SelectAll(), tree.DeleteSelectedItems(); },
           [](Ending& tree) { EXPECT_EQ(tree.CreateNewItem(), -1); },
           [](Ending& tree) { EXPECT_EQ(tree.MoveItem(3, 1), -1); },
           [](Ending& tree) { EXPECT_EQ(tree.RearrangeItem(4, 0), -1); },
           [](Ending& tree) {
             auto act = std::exchange(tree.act, nullptr);
             tree.Expand(1, false);
             tree.act = std::move(act);
             tree.EditCell(2, 0);
           },
           [](Ending& tree) { tree.SortByColumn(0); },
           [](Ending& tree) { tree.SendMessage(WM_LBUTTONDOWN, 0, MakeLParam(10, 5)); },
           [&](Ending& tree) { tree.SetBitmaps(&picture, &picture, nullptr, &picture); }}) {
    auto tree = std::make_unique<Ending>();
    tree->AddColumn("Title", 100);
    tree->Create(0, {0, 0, 400, 300}, &parent, 7);
    tree->SetMultiSelect();
    Fill(*tree, "r, a,  b, c,d");
    tree->act = [&] { tree.reset(); };
    operation(*tree);
    EXPECT_FALSE(tree);
  }
}

}  // namespace
}  // namespace dq::test
