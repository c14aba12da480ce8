// A main window that keeps the messages it is sent.

#pragma once

#include "dqlib/frame/output_message.h"
#include "dqlib/framework/windows/win_app.h"
#include "tests/support/testing.h"

namespace dq::testing {

struct SentMessage {
  UINT message;
  WPARAM first;
  LPARAM second;
};

/// The program's application object and, for its lifetime, the main window of the calling thread.
struct MainWindow : CWnd {
  MainWindow() {
    CreateWnd("TestMainWindow");
    app.m_pMainWnd = this;
  }
  LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
    if (message < WM_USER) return CWnd::WindowProc(message, wparam, lparam);
    messages.push_back({message, wparam, lparam});
    on_message(messages.back());
    return 0;
  }
  /// The output message of a send that is under way.
  static CDQOutputMessage& Output(const SentMessage& sent) {
    return *reinterpret_cast<CDQOutputMessage*>(sent.second);
  }

  CWinApp app{"test"};
  /// Those of applications.
  std::vector<SentMessage> messages;
  /// Called while the sender waits.
  std::function<void(const SentMessage&)> on_message = [](const SentMessage&) {};
};

}  // namespace dq::testing
