// What holds with every window layer, whoever draws: a layer shows what the library holds and
// changes nothing by itself, takes part in the message loop, and may go away at any time.
//
//   TEST(MyLayer, Conforms) { dq::test::CheckLayer(my_layer); }

#pragma once

#include "tests/support/windows.h"

namespace dq::test {

/// All that a window and those in it hold, as a text.
inline std::string DumpTree(const CWnd& window) {
  platform::DialogControl control;
  window.Describe(control);
  std::string dump;
  const CRect place = window.GetWindowRect();
  for (const LONG edge : {place.left, place.top, place.right, place.bottom}) {
    dump += std::to_string(edge) + ',';
  }
  dump += window.GetWindowText().View();
  dump += "|" + control.value + "|" + std::to_string(window.IsShown()) +
          std::to_string(window.IsWindowEnabled()) + std::to_string(CWnd::GetFocus() == &window) +
          std::to_string(CWnd::GetCapture() == &window) +
          std::to_string(window.GetScrollPos(SB_VERT));
  int first = 0;
  int last = 0;
  if (const auto* const edit = dynamic_cast<const CEdit*>(&window)) edit->GetSel(first, last);
  if (const auto* const list = dynamic_cast<const CListBox*>(&window)) first = list->GetTopIndex();
  if (const auto* const combo = dynamic_cast<const CComboBox*>(&window)) {
    first = combo->GetDroppedState() ? 1 : 0;
    last = combo->GetCurSel();
  }
  dump += "|" + std::to_string(first) + "-" + std::to_string(last) + "\n";
  for (CWnd* child = window.GetTopWindow(); child != nullptr; child = child->GetNextWindow()) {
    dump += DumpTree(*child);
  }
  return dump;
}

/// Makes the dialog and its controls large enough to be drawn.
inline void Spread(ControlDialog& dialog) {
  dialog.MoveWindow(120, 90, 320, 240);
  for (int id = 1; id <= 24; ++id) {
    if (CWnd* const control = dialog.GetDlgItem(id)) {
      control->MoveWindow(8 + (id % 4) * 76, 8 + (id / 4) * 30, 70, 26);
    }
  }
}

/// What the layer does at leisure.
inline void LetLayerWork() {
  PumpUntil([] { return false; }, 40);
}

/// What a program does to windows stays as it was done, and isn't told as a person's act.
inline void CheckLayerLeavesWindowsAlone() {
  ControlDialog dialog;
  CWnd other;
  CFont bold;
  bold.CreateFontIndirect({.lfHeight = -16, .lfWeight = 700});
  CMenu menu;
  menu.LoadMenuIndirect("popup \"&A\"\nitem 7 \"&One\\tCtrl+O\" checked\nseparator\nend\n");
  other.CreateWnd({.class_name = "Other", .text = "Other", .place = {300, 200, 500, 300}});
  Spread(dialog);
  dialog.ShowWindow(SW_SHOW);
  const std::string many(70'000, 'x');
  const auto button = [&](int id) -> CButton& { return dialog.Get<CButton>(id); };
  const std::function<void()> acts[] = {
      [&] { dialog.edit().SetWindowText("two\r\nlines \xFF\xC3 \xE2\x82\xAC & more\nbare"); },
      [&] { dialog.edit().SetSel(3, 9), dialog.edit().SetFocus(); },
      [&] { dialog.edit().ReplaceSel(many.c_str()); },
      [&] { dialog.edit().SetStyle({.password = true}); },
      [&] { dialog.edit().SetStyle({.multi_line = true, .read_only = true}); },
      [&] { button(dialog.kCheck).SetCheck(2), button(dialog.kRadio2).SetCheck(1); },
      [&] {
        button(dialog.kRadio2).SetCheck(0), button(dialog.kPush).SetKind(ButtonKind::kDefault);
      },
      [&] { button(dialog.kPush).SetKind(ButtonKind::kGroup), button(dialog.kPush).SetFocus(); },
      [&] {
        dialog.list().InsertString(1, "New"), dialog.list().DeleteString(0),
            dialog.list().SetCurSel(1);
      },
      [&] {
        for (int row = 0; row < 500; ++row) dialog.list().AddString("Row");
      },
      [&] { dialog.list().SetTopIndex(300), dialog.list().SetFocus(); },
      [&] { dialog.list().ResetContent(); },
      [&] { dialog.Get<CListBox>(dialog.kMany).SetSel(-1, true); },
      [&] { dialog.Get<CCheckListBox>(dialog.kMarks).SetCheck(1, 2); },
      [&] { dialog.combo().SetCurSel(2), dialog.combo().SetEditSel(1, 3); },
      [&] { dialog.combo().ShowDropDown(), dialog.combo().AddString("Late"); },
      [&] { dialog.combo().ShowDropDown(false), dialog.combo().ResetContent(); },
      [&] { dialog.spin().SetRange(9, -9), dialog.spin().SetPos(-4); },
      [&] { button(dialog.kCheck).SetToolTip("A tip"), button(dialog.kCheck).SetFont(&bold); },
      [&] { dialog.combo().EnableWindow(false), dialog.list().ShowWindow(SW_HIDE); },
      [&] { dialog.GetDlgItem(dialog.kStatic)->MoveWindow(-50, 20, 3, 900); },
      [&] { dialog.GetDlgItem(dialog.kStatic)->SetWindowText("A & B && \xC3\xA4"); },
      [&] { dialog.list().SetWindowOrder(nullptr), dialog.spin().SetParent(&other); },
      [&] {
        other.SetScrollInfo(SB_VERT, {0, 99, 10, 50}), other.SetCapture();
      },
      [&] { CWnd::ReleaseCapture(), other.SetScrollPos(SB_VERT, 7), other.Invalidate(); },
      [&] { other.SetMenu(&menu), menu.AppendMenu(MF_STRING, 8, "&Two"); },
      [&] {
        menu.ModifyMenu(0, MF_BYPOSITION, 9, "Gone"), menu.DestroyMenu(), other.SetMenu(nullptr);
      },
      [&] { dialog.EnableWindow(false), other.ShowWindow(SW_HIDE); },
      [&] { dialog.EnableWindow(true), other.DestroyWindow(); },
      [&] { dialog.controls.clear(); },
  };
  int number = 0;
  for (const auto& act : acts) {
    act();
    dialog.codes.clear();
    const auto dump = [&] { return DumpTree(dialog) + DumpTree(other); };
    const std::string before = dump();
    LetLayerWork();
    EXPECT_EQ(dump(), before) << "act " << number;
    EXPECT_TRUE(dialog.codes.empty()) << "act " << number;
    ++number;
  }
}

/// Frames are told alike each time and leave room for what is in them.
inline void CheckLayerTellsFrames(WindowObserver& layer) {
  for (const bool is_frame : {false, true}) {
    const auto window = is_frame ? std::make_unique<CFrameWnd>() : std::make_unique<CWnd>();
    window->CreateWnd({.class_name = "F", .place = {50, 60, 250, 160}, .client_size = true});
    const CRect widths = layer.GetFrameWidths(*window);
    EXPECT_TRUE(widths.left >= 0 && widths.top >= 0 && widths.right >= 0 && widths.bottom >= 0);
    LetLayerWork();
    EXPECT_EQ(window->GetClientRect(), (CRect{0, 0, 200, 100}));
    EXPECT_EQ(layer.GetFrameWidths(*window), widths);
  }
}

/// The thread waits in the layer, which whoever has something for it ends.
inline void CheckLayerTakesPartInTheLoop() {
  MainWindow window;
  std::jthread other([&, handle = window.GetSafeHwnd()] {
    for (int count = 0; count < 50; ++count) {
      PostToWindow(handle, WM_APP, 0, 0);
      SendToWindow(handle, WM_APP, 0, 0);
    }
  });
  EXPECT_TRUE(PumpUntil([&] { return window.messages.size() == 100; }, 30000));
  window.on_message = [](const MSG&) { throw CUserException(); };
  window.PostMessage(WM_APP);
  EXPECT_THROW(PumpUntil([] { return false; }, 30000), CUserException);
  if (NativeEvents* const events = GetWindowObserver()->GetEvents()) {
    events->Wait(0);
    events->Wake();
    const auto begin = std::chrono::steady_clock::now();
    events->Wait(20000);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
  }
}

/// A dialog that runs when the layer goes, or is told that nobody works with it, is cancelled.
inline void CheckLayerMayGo(WindowObserver& layer) {
  MainWindow window;
  CDialog dialog;
  dialog.InitModalIndirect(
      ReadDialogTemplate("size 90 40\ndefbutton 1 \"OK\" 8 8 60 20\n").value());
  window.on_message = [](const MSG&) { SetWindowObserver(nullptr); };
  if (layer.RunsDialogs()) {
    window.PostMessage(WM_APP);
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    SetWindowObserver(&layer);
  }
}

inline void CheckLayer(WindowObserver& layer) {
  CheckLayerTellsFrames(layer);
  CheckLayerLeavesWindowsAlone();
  CheckLayerTakesPartInTheLoop();
  CheckLayerMayGo(layer);
}

}  // namespace dq::test
