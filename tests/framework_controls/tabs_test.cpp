// Rows of tabs that draw themselves, and workbooks with a tab for each sheet.

#include "tests/support/windows.h"

namespace dq::test {
namespace {

struct TabHost : CWnd {
  TabHost() {
    CreateWnd("Host");
    tabs.SetStyle(kTabsRaised);
    tabs.CreateWnd({.class_name = "TabStrip", .place = {0, 0, 200, 23}, .parent = this, .id = 7});
    for (const char* label : {"One", "&Two", "Three"}) tabs.AddTab(label);
  }
  BOOL OnCommand(WPARAM wparam, LPARAM) override {
    EXPECT_EQ(wparam, MakeWParam(7, 1));
    wishes += std::to_string(tabs.GetWished()) + " ";
    if (on_wish) on_wish();
    return 1;
  }
  /// Where the tabs lie, from left to right.
  std::string Places() {
    std::string text;
    for (const CRect& rect : tabs.GetTabRects()) {
      text += std::to_string(rect.left) + "-" + std::to_string(rect.right) + " ";
    }
    return text + "| " + std::to_string(tabs.GetFirstVisible());
  }
  /// The wishes that clicks and keys are.
  std::string Click(std::initializer_list<int> places) {
    for (const int x : places) tabs.SendMessage(WM_LBUTTONDOWN, 0, MakeLParam(x, 10));
    return std::exchange(wishes, {});
  }
  std::string Press(std::initializer_list<WPARAM> keys) {
    for (const WPARAM key : keys) tabs.SendMessage(WM_KEYDOWN, key);
    return std::exchange(wishes, {});
  }

  CSftTabs tabs;
  std::string wishes;
  std::function<void()> on_wish = [this] { tabs.SetCurSel(tabs.GetWished()); };
};

TEST(SftTabs, LieSideBySideAndAreScrolledWhereTheyDontFit) {
  TabHost host;
  CSftTabs& tabs = host.tabs;
  EXPECT_TRUE(host.Places() == "0-39 39-78 78-131 | 0" && tabs.GetWantedHeight() == 23);
  EXPECT_TRUE(tabs.GetArrowRect(true).IsRectEmpty());
  tabs.MoveWindow(0, 0, 131, 23);
  EXPECT_TRUE(host.Places() == "0-39 39-78 78-131 | 0" && tabs.GetArrowRect(true).IsRectEmpty());
  tabs.MoveWindow(0, 0, 130, 23);
  EXPECT_EQ(host.Places(), "0-39 39-78 78-98 | 0");
  EXPECT_EQ(Text(tabs.GetArrowRect(false)) + Text(tabs.GetArrowRect(true)),
            "98,0-114,23114,0-130,23");
  EXPECT_TRUE(host.Click({120}).empty() && host.Places() == "0-0 0-39 39-92 | 1");
  EXPECT_TRUE(host.Click({120}).empty() && host.Places() == "0-0 0-39 39-92 | 1") << "no further";
  EXPECT_TRUE(host.Click({100}).empty() && host.Places() == "0-39 39-78 78-98 | 0");
  EXPECT_TRUE(tabs.SetCurSel(2) && host.Places() == "0-0 0-39 39-92 | 1");
  EXPECT_TRUE(tabs.HitTest({38, 22}) == 1 && tabs.HitTest({39, 0}) == 2);
  for (const CPoint& at : {CPoint{92, 5}, CPoint{-1, 5}, CPoint{5, 23}, CPoint{5, -1}}) {
    EXPECT_EQ(tabs.HitTest(at), -1) << at.x;
  }
  tabs.DeleteTab(0);
  EXPECT_EQ(host.Places(), "0-39 39-92 | 0") << "all fit again";
  tabs.SetTabLabel(0, std::string(1 << 20, 'x').c_str());
  EXPECT_EQ(host.Places(), "0-98 0-0 | 0") << "a label is cut off";
  tabs.DeleteAllTabs();
  EXPECT_TRUE(host.Places() == "| 0" && tabs.HitTest({1, 1}) == -1);
  EXPECT_TRUE(!tabs.SetCurSel(0) && tabs.InsertTab(1, "x") == -1 && !tabs.DeleteTab(0));
}

TEST(SftTabs, TellThePersonsWishAndLeaveTheRestToTheParent) {
  TabHost host;
  CSftTabs& tabs = host.tabs;
  tabs.EnableTab(1, false);
  EXPECT_EQ(host.Click({50, 100, 180}), "2 ");
  EXPECT_EQ(host.Press({VK_LEFT, VK_LEFT, VK_END, VK_HOME}), "0 2 0 ");
  host.on_wish = [] {};
  EXPECT_TRUE(host.Press({VK_RIGHT}) == "2 " && tabs.GetCurSel() == 0);
  tabs.SetTabData(2, 5);
  EXPECT_EQ(tabs.InsertTab(0, nullptr, CSftTabs::kTabDisabled), 0);
  EXPECT_TRUE(tabs.GetCurSel() == 1 && tabs.GetTabData(3) == 5 && !tabs.IsTabEnabled(0));
  EXPECT_TRUE(tabs.DeleteTab(1) && tabs.GetCurSel() == -1);
  tabs.EnableWindow(false);
  EXPECT_EQ(host.Click({100}), "");
  tabs.EnableWindow();
  host.on_wish = [&] { tabs.DestroyWindow(); };
  EXPECT_EQ(host.Click({100}), "2 ");
}

TEST(SftTabs, DrawReliefArrowsAndTheFocus) {
  TabHost host;
  CSftTabs& tabs = host.tabs;
  CFont bold;
  bold.CreateFontIndirect({.lfHeight = -20, .lfWeight = 700});
  tabs.DeleteTab(2);
  tabs.MoveWindow(0, 0, 60, 23);
  tabs.EnableTab(1, false);
  tabs.SetTabFont(1, &bold);
  tabs.SetCurSel(0);
  tabs.SetFocus();
  // The page's edge and the tab's outer one; the focus, and the tips of the arrows.
  for (const auto& [style, edge, outer] : Rows<int, const char*, const char*>{
           {kTabsRaised, "fill 0,22 60,23 ffffff\n", "fill 0,0 28,1 e3e3e3\n"},
           {kTabsRaisedBelow, "fill 0,0 60,1 a0a0a0\n", "fill 0,22 28,23 696969\n"}}) {
    tabs.SetStyle(style);
    RecordingDC dc;
    tabs.Paint(dc);
    for (const char* drawn : {edge, outer, "line 3,3 24,3 000000 dot\n",
                              "fill 34,11 35,12 6d6d6d\n", "fill 53,11 54,12 000000\n"}) {
      EXPECT_NE(dc.Text().find(drawn), std::string::npos) << drawn << dc.Text();
    }
  }
  tabs.MoveWindow(0, 0, 200, 40);
  RecordingDC dc;
  tabs.Paint(dc);
  EXPECT_NE(dc.Text().find("fill 39,0 40,38 e3e3e3\n"), std::string::npos) << "a lower one";
  EXPECT_NE(dc.Text().find("font \"\" -20 bold\ntext 48,7"), std::string::npos);
  EXPECT_NE(dc.Text().find("font \"\" 13\ntext 9,13 \"One\""), std::string::npos);
  EXPECT_EQ(tabs.GetWantedHeight(), 23);
}

TEST(SftTabs, DrawThemselvesInTheirColours) {
  TabHost host;
  CSftTabs& tabs = host.tabs;
  tabs.SetStyle(kTabsFlat);
  tabs.SetColors({.background = 0x10, .text = 0x20, .highlight_background = 0x30}, 0x40);
  tabs.SetTabColors(2, {.text = 0x50});
  tabs.SetCurSel(1);
  RecordingDC dc;
  tabs.Paint(dc);
  EXPECT_EQ(
      dc.Text(),
      "fill 0,0 200,23 400000\nfill 0,0 39,23 100000\nfill 38,4 39,19 a0a0a0\ntext 9,5 "
      "\"One\" 200000\nfill 85,0 138,23 100000\nfill 137,4 138,19 a0a0a0\ntext 94,5 \"Three\" "
      "500000\nfill 0,22 200,23 ffffff\nfill 39,0 85,23 300000\nfill 39,0 85,2 0078d7\ntext "
      "48,5 \"&Two\"\n");
}

struct Sheets : testing::Test {
  struct Workbook : SECWorkbook {
    void InvalidateTab(SECWorksheetWnd* sheet) override {
      ++invalidated;
      SECWorkbook::InvalidateTab(sheet);
    }
    int invalidated = 0;
  };
  Sheets() {
    book.Create("Book", "", {0, 0, 400, 300});
    for (int at = 0; at < 3; ++at) {
      sheets[at].Create("Sheet", std::to_string(at).c_str(), {0, 0, 100, 100}, &book);
    }
  }
  /// The labels, with a mark for the current one.
  std::string Tabs() {
    const SEC3DTabControl& tabs = book.GetTabControl();
    std::string text;
    for (int at = 0; at < tabs.GetTabCount(); ++at) {
      text += tabs.GetTabLabel(at).View();
      text += at == tabs.GetActiveTab() ? "*" : " ";
    }
    return text;
  }

  Workbook book;
  SECWorksheetWnd sheets[3];
};

TEST_F(Sheets, HaveATabEachInTheirWorkbook) {
  SEC3DTabControl& tabs = book.GetTabControl();
  EXPECT_TRUE(Tabs() == "0 1 2*" && !tabs.IsShown());
  EXPECT_EQ(Text(book.GetMDIClient()->GetPlace()), "0,0-400,300");
  book.SetWorkbookMode(true);
  EXPECT_EQ(Text(book.GetMDIClient()->GetPlace()) + Text(tabs.GetPlace()),
            "0,0-400,2760,276-400,300");
  tabs.SendMessage(WM_LBUTTONDOWN, 0, MakeLParam(30, 10));
  EXPECT_TRUE(book.MDIGetActive() == &sheets[1] && Tabs() == "0 1*2 ");
  sheets[0].SetWindowText("Zero");
  sheets[1].ShowWindow(SW_HIDE);
  EXPECT_EQ(Tabs(), "Zero 1 2*");
  tabs.Choose(1);
  EXPECT_TRUE(sheets[1].IsShown() && Tabs() == "Zero 1*2 ");
  sheets[1].ShowWindow(SW_HIDE);
  sheets[2].DestroyWindow();
  book.AddSheet(&sheets[0]);
  book.AddSheet(&sheets[2]);
  book.AddSheet(nullptr);
  EXPECT_TRUE(Tabs() == "Zero*1 " && book.GetSheet(1) == &sheets[1] && book.GetSheet(2) == nullptr);
  EXPECT_TRUE(book.FindSheet(&sheets[1]) == 1 && book.FindSheet(&sheets[2]) == -1);
  CMDIChildWnd plain;
  plain.Create("Child", "", {}, &book);
  EXPECT_EQ(Tabs(), "Zero 1 ") << "no sheet is active";
  book.SetWorkbookMode(false);
  EXPECT_EQ(Text(book.GetMDIClient()->GetPlace()), "0,0-400,300");
  SECWorksheetWnd alone;
  CMDIFrameWnd other;
  EXPECT_TRUE(other.Create("Frame", "", {}) && alone.Create("Sheet", "", {}, &other));
  EXPECT_TRUE(alone.GetWorkbook() == nullptr && book.DestroyWindow());
}

}  // namespace
}  // namespace dq::test
