// A main window that keeps the messages it is sent.

#pragma once

#include "dqlib/framework/windows/win_app.h"
#include "tests/support/testing.h"

namespace dq::testing {

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

}  // namespace dq::testing
