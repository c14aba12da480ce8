// Windows that keep what they are sent, and an observer that keeps what windows tell it.
//
//   RecordingObserver observer;
//   edit.LimitText(3);
//   EXPECT_EQ(observer.Take(), "2 content ");

#pragma once

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
  void OnWindowChange(CWnd& window, WindowChange change) override {
    static constexpr const char* kNames[] = {
        " created ", " destroyed ", " replaced ", " text ",        " rectangle ",
        " shown ",   " enabled ",   " focus ",    " invalidated ", " order ",
        " menu ",    " active ",    " content ",  " selection "};
    changes += std::to_string(window.GetDlgCtrlID()) + kNames[static_cast<int>(change)];
  }
  std::string Take() { return std::exchange(changes, {}); }

  /// The ids of the windows and what has changed.
  std::string changes;
  WindowObserver* const former = SetWindowObserver(this);
};

}  // namespace dq::test
