// Windows that keep what they are sent and what their controls notify, and an observer that keeps
// what windows tell it.
//
//   RecordingObserver observer;
//   edit.LimitText(3);
//   EXPECT_EQ(observer.Take(), "2 content ");

#pragma once

#include "dqlib/framework/windows/dialog_controls.h"
#include "dqlib/framework/windows/ui_state.h"
#include "tests/support/testing.h"

namespace dq::test {

/// The program's application object and, for its lifetime, the main window of the calling thread.
struct MainWindow : CWnd {
  MainWindow() {
    CreateWnd("TestMainWindow");
    app.m_pMainWnd = this;
  }
  LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
    if (message < WM_USER) return CWnd::WindowProc(message, wparam, lparam);
    messages.push_back({GetSafeHwnd(), message, wparam, lparam});
    on_message(messages.back());
    return 0;
  }

  CWinApp app{"test"};
  /// Those of applications.
  std::vector<MSG> messages;
  /// Called while the sender waits.
  std::function<void(const MSG&)> on_message = [](const MSG&) {};
};

/// The calling thread's observer for its lifetime.
struct RecordingObserver : WindowObserver {
  ~RecordingObserver() override { SetWindowObserver(former); }
  void OnWindowChange(CWnd& window, WindowChange change, const ChangedRange& range) override {
    static constexpr const char* kNames[] = {
        " created", " destroyed", " replaced",    " text",  " rectangle", " shown",
        " enabled", " focus",     " invalidated", " order", " menu",      " active",
        " content", " selection", " +rows",       " -rows", " rows",      " id",
        " capture", " tip",       " font",        " scroll"};
    changes += std::to_string(window.GetDlgCtrlID()) + kNames[static_cast<int>(change)];
    if (range != ChangedRange()) Add(range);
    changes += ' ';
  }
  void OnMenuChange(HMENU, MenuChange change, const ChangedRange& range) override {
    if (!menus) return;
    static constexpr const char* kNames[] = {"+items", "-items", "items", "menu gone"};
    changes += kNames[static_cast<int>(change)];
    Add(range);
    changes += ' ';
  }
  CRect GetFrameWidths(const CWnd&) override { return frame_widths; }
  std::string Take() {
    detail::TellRows();
    return std::exchange(changes, {});
  }
  void Add(const ChangedRange& range) {
    changes += '@' + std::to_string(range.first) + '*' + std::to_string(range.count);
  }

  /// The ids of the windows and what has changed.
  std::string changes;
  /// Whether menus are among them.
  bool menus = false;
  /// Of windows that are made, or ask anew.
  CRect frame_widths;
  WindowObserver* const former = SetWindowObserver(this);
};

/// One for which keys are held.
struct HeldKeys : RecordingObserver {
  int GetKeyState(int key) override { return held.contains(key) ? kKeyDown : 0; }
  std::set<int> held;
};

/// Gives a window a frame.
inline void SetFrameWidths(CWnd& window, const CRect& widths) {
  RecordingObserver layer;
  layer.frame_widths = widths;
  window.UpdateFrameWidths();
}

/// A window with one control of each kind, which keeps what they notify. Lists and combo boxes have
/// the rows "One", "Two", "Three"; the second radio button begins no group, the third does.
struct ControlDialog : CWnd {
  enum Id { kStatic = 1, kEdit, kSpin, kCheck, kRadio, kRadio2, kRadio3, kPush };
  enum RowsId { kList = 20, kMany, kMarks, kCombo, kDropList, kMissing };

  ControlDialog() {
    CreateWnd("Dialog");
    const auto pattern = ReadDialogTemplate(
        "size 9 9\ntext 1 \"\" 0 0 1 1\nedit 2 \"\" 0 0 1 1 multiline\n"
        "spin 3 \"\" 0 0 1 1 buddy\ncheck 4 \"\" 0 0 1 1\nradio 5 \"\" 0 0 1 1 group\n"
        "radio 6 \"\" 0 0 1 1\nradio 7 \"\" 0 0 1 1 group\nlist 20 \"\" 0 0 1 1\n"
        "checklist 22 \"\" 0 0 1 1\ncombo 23 \"\" 10 20 80 40\ncombo 24 \"\" 0 0 1 1 droplist\n"
        "button 8 \"\" 0 0 1 1\nlist 21 \"\" 0 0 1 1 multiple\n");
    detail::MakeControls(pattern.value(), *this, controls);
    Get<CButton>(kCheck).SetKind(ButtonKind::kThreeState);
    for (const int id : {kList, kMany, kMarks, kCombo, kDropList}) {
      for (const char* text : {"One", "Two", "Three"}) Get<RowControl>(id).AddString(text);
    }
    codes.clear();
  }
  ~ControlDialog() override { DestroyWindow(); }
  BOOL OnCommand(WPARAM wparam, LPARAM) override {
    codes.emplace_back(LoWord(wparam), HiWord(wparam));
    if (handler) handler(LoWord(wparam));
    return 1;
  }

  template <typename Class>
  Class& Get(int id) {
    return *dynamic_cast<Class*>(GetDlgItem(id));
  }
  CEdit& edit() { return Get<CEdit>(kEdit); }
  CSpinButtonCtrl& spin() { return Get<CSpinButtonCtrl>(kSpin); }
  CListBox& list() { return Get<CListBox>(kList); }
  CComboBox& combo() { return Get<CComboBox>(kCombo); }

  /// Ids and codes of the notifications.
  std::vector<std::pair<int, int>> codes;
  /// Called with each.
  std::function<void(int id)> handler;
  std::vector<std::unique_ptr<CWnd>> controls;
};

/// "left,top-right,bottom".
inline std::string Text(const CRect& rect) {
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

}  // namespace dq::test
