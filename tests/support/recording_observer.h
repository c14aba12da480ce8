// Keeps what windows tell their observer.
//
//   RecordingObserver observer;
//   edit.LimitText(3);
//   EXPECT_EQ(observer.Take(), "2 content ");

#pragma once

#include "dqlib/framework/windows/wnd.h"
#include "tests/support/testing.h"

namespace dq::testing {

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

}  // namespace dq::testing
