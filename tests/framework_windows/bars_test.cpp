// The bars of frames and the panes of splitters: where they lie, what they tell, and what a person
// does with them.

#include "tests/support/windows.h"

namespace dq::test {
namespace {

std::string Text(const CRect& rect) {
  const auto [left, top, right, bottom] = rect;
  return std::to_string(left) + "," + std::to_string(top) + "-" + std::to_string(right) + "," +
         std::to_string(bottom);
}

/// A frame of 400 by 300 with handlers for the update of some ids.
struct BarFrame : CFrameWnd {
  BarFrame() { Create("Frame", "", {0, 0, 400, 300}); }
  BOOL OnCmdMsg(UINT id, int code, void* extra, void* only_ask) override {
    const auto handler = code == CN_UPDATE_COMMAND_UI ? updates.find(id) : updates.end();
    if (handler == updates.end()) return CFrameWnd::OnCmdMsg(id, code, extra, only_ask);
    handler->second(*static_cast<CCmdUI*>(extra));
    return 1;
  }

  std::map<UINT, std::function<void(CCmdUI&)>> updates;
};

/// Position, style, width and text of each pane.
std::string Panes(const CStatusBar& bar) {
  std::ostringstream text;
  for (int at = 0; at < bar.GetItemCount(); ++at) {
    const StatusPane pane = bar.GetPane(at);
    text << pane.id << ':' << std::hex << pane.style << std::dec << ' ' << pane.width << " ["
         << pane.text.View() << "] ";
  }
  return text.str();
}

struct StatusBars : testing::Test {
  StatusBars() {
    strings.AddString(10, "Line XX");
    strings.AddString(11, "Toggles it\nINS\xC3\x9F");
  }

  ResourceModule strings;
  CDynLinkLibrary link{&strings};
  BarFrame frame;
  CStatusBar bar;
};

TEST_F(StatusBars, ShowTheMessageOfTheirFrameAndStretchTheFirstPane) {
  const UINT ids[] = {0, 10, 11}, missing[] = {0, 12}, others[] = {11, 0};
  frame.SetMessageText("ready");
  ASSERT_TRUE(bar.Create(&frame) && bar.SetIndicators(ids));
  EXPECT_FALSE(bar.SetIndicators(missing));
  EXPECT_EQ(Panes(bar),
            "0:8000100 480 [ready] 10:4000000 49 [Line XX] 11:4000000 28 [INS\xC3\x9F] ");
  frame.RecalcLayout();
  EXPECT_EQ(Text(bar.GetPlace()), "0,279-400,300");
  std::string rects;
  for (const int at : {0, 1, 2, 3, -1}) rects += Text(bar.GetItemRect(at)) + " ";
  EXPECT_EQ(rects, "0,2-307,21 309,2-364,21 366,2-400,21 0,0-0,0 0,0-0,0 ");
  bar.MoveWindow(0, 0, 60, 1);
  EXPECT_EQ(Text(bar.GetItemRect(0)) + " " + Text(bar.GetItemRect(2)), "0,2-0,2 59,2-60,2");
  RecordingObserver told;
  CFrameWnd inner;
  inner.CreateWnd({.class_name = "Frame", .parent = &frame, .id = 3});
  EXPECT_EQ(inner.GetMessageBar(), &bar);
  inner.SetMessageText("deep");
  frame.SetMessageText("deep");
  EXPECT_EQ(told.Take(), "3 created 3 content 59393 rows@0*1 0 content ");
  EXPECT_TRUE(bar.SetIndicators(others));
  frame.SetMessageText(nullptr);
  EXPECT_EQ(told.Take(), "59393 -rows@0*3 59393 +rows@0*2 0 content 59393 rows@1*1 ");
  EXPECT_EQ(Panes(bar), "11:4000000 28 [INS\xC3\x9F] 0:0 480 [] ");
  UINT id = 0, style = 0;
  int width = 0;
  EXPECT_TRUE(bar.SetPaneInfo(0, 7, SBPS_POPOUT, -1) && bar.GetPaneInfo(0, id, style, width));
  EXPECT_EQ(std::to_string(id) + " " + std::to_string(style) + " " + std::to_string(width),
            "7 512 0");
  EXPECT_FALSE(bar.SetPaneInfo(2, 7, 0, 0) || bar.GetPaneInfo(-1, id, style, width) ||
               bar.SetPaneText(2, "") || CStatusBar().SetPaneText(0, ""));
}

TEST_F(StatusBars, AreBroughtUpToDateByHandlersWhichMayEndThem) {
  const UINT ids[] = {0, 10, 11};
  ASSERT_TRUE(bar.Create(&frame) && bar.SetIndicators(ids) && bar.SetPaneText(0, "m"));
  RecordingObserver told;
  const auto update = [&] {
    bar.SendMessage(WM_IDLEUPDATECMDUI, 1);
    return told.Take() + Panes(bar);
  };
  EXPECT_EQ(update(), "0:8000100 480 [m] 10:4000000 49 [Line XX] 11:4000000 28 [INS\xC3\x9F] ");
  bar.SetPaneText(2, "OVR");
  frame.updates[10] = [](CCmdUI& ui) { ui.SetText("Line 1"); };
  frame.updates[11] = [](CCmdUI& ui) { ui.SetRadio(1); };
  EXPECT_EQ(update(),
            "59393 rows@2*1 59393 rows@1*1 59393 rows@1*1 59393 rows@2*1 "
            "0:8000100 480 [m] 10:0 49 [Line 1] 11:200 28 [OVR] ");
  frame.updates.erase(10);
  frame.updates[11] = [](CCmdUI& ui) { ui.Enable(0), ui.SetCheck(0); };
  EXPECT_EQ(update(),
            "59393 rows@1*1 59393 rows@2*1 59393 rows@2*1 "
            "0:8000100 480 [m] 10:4000000 49 [Line 1] 11:4000000 28 [OVR] ");
  frame.updates[10] = [&](CCmdUI& ui) { bar.SetIndicators({}), ui.SetText("x"), ui.Enable(); };
  EXPECT_EQ(update(), "59393 -rows@0*3 ");
  auto dropped = std::make_unique<CStatusBar>();
  ASSERT_TRUE(dropped->Create(&frame, 5) && dropped->SetIndicators(ids));
  frame.updates[10] = [&](CCmdUI& ui) { dropped.reset(), ui.SetText("x"); };
  dropped->SendMessage(WM_IDLEUPDATECMDUI, 1);
  EXPECT_EQ(dropped, nullptr);
}

}  // namespace
}  // namespace dq::test
