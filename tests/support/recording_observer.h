// Keeps what windows tell their observer.
//
//   RecordingObserver observer;
//   edit.LimitText(3);
//   EXPECT_EQ(observer.Take(edit), std::vector{WindowChange::kContent});

#pragma once

#include "dqlib/framework/windows/wnd.h"
#include "tests/support/testing.h"

namespace dq::testing {

/// The calling thread's observer for its lifetime.
struct RecordingObserver : WindowObserver {
  ~RecordingObserver() override { SetWindowObserver(former); }
  void OnWindowChange(CWnd& window, WindowChange change) override {
    changes.emplace_back(&window, change);
  }

  /// The changes of one window, in order; all that was recorded is forgotten.
  std::vector<WindowChange> Take(const CWnd& window) {
    std::vector<WindowChange> taken;
    for (const auto& [changed, change] : std::exchange(changes, {})) {
      if (changed == &window) taken.push_back(change);
    }
    return taken;
  }

  std::vector<std::pair<const CWnd*, WindowChange>> changes;
  WindowObserver* const former = SetWindowObserver(this);
};

}  // namespace dq::testing
