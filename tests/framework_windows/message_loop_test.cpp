#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "dqlib/framework/windows/win_app.h"
#include "tests/support/manual_clock.h"
#include "tests/support/own_service.h"

namespace dq {
namespace {

using Got = std::vector<std::string>;

struct LoopWnd : CWnd {
  LoopWnd() { CreateWnd("Test"); }
  ~LoopWnd() override { DestroyWindow(); }
  LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM) override {
    if (message != WM_CREATE && message != WM_DESTROY) {
      got.push_back(std::to_string(message) + "/" + std::to_string(wparam));
      on_message(message);
    }
    return 0;
  }

  Got got;
  std::function<void(UINT)> on_message = [](UINT) {};
};

TEST(MessageLoop, PostedMessagesComeInOrderAndOnlyToLiveWindows) {
  LoopWnd window;
  LoopWnd other;
  for (const UINT message : {WM_APP + 1U, WM_APP + 2U}) {
    EXPECT_TRUE(window.PostMessage(message, 5) && other.PostMessage(message));
  }
  const HWND dead = other.GetSafeHwnd();
  other.DestroyWindow();
  EXPECT_FALSE(PostToWindow(dead, WM_APP, 0, 0) || other.PostMessage(WM_APP));
  EXPECT_EQ(window.got, Got{});
  EXPECT_EQ(PumpUntilIdle(), 2);
  EXPECT_EQ(window.got, (Got{"32769/5", "32770/5"}));
  EXPECT_EQ(other.got, Got{});
}

TEST(MessageLoop, TimersComeByTheClockBehindPostedMessages) {
  testing::ManualClock clock(0xFFFFFFF0);  // the clock wraps meanwhile
  const platform::ScopedPlatform scope(test::With(&platform::Platform::clock, &clock));
  LoopWnd window;
  EXPECT_EQ(window.SetTimer(1, 250), 1U);
  EXPECT_EQ(window.SetTimer(2, 3), 2U) << "acts as 10";
  EXPECT_EQ(window.SetTimer(3, static_cast<UINT>(-1)), 3U) << "acts as the longest";
  const auto pumped = [&](DWORD passed) {
    clock.Advance(passed);
    PumpUntilIdle();
    return std::exchange(window.got, {});
  };
  EXPECT_EQ(pumped(9), Got{});
  EXPECT_EQ(pumped(1), Got{"275/2"});
  EXPECT_EQ(pumped(200), Got{"275/2"}) << "one that is late comes once";
  window.PostMessage(WM_APP);
  EXPECT_EQ(pumped(40), (Got{"32768/0", "275/2", "275/1"}));
  EXPECT_EQ(window.SetTimer(1, 1000), 1U) << "starts it anew";
  EXPECT_TRUE(window.KillTimer(2));
  EXPECT_FALSE(window.KillTimer(2));
  EXPECT_EQ(pumped(999), Got{});
  EXPECT_EQ(pumped(1), Got{"275/1"});
  EXPECT_EQ(pumped(std::numeric_limits<std::int32_t>::max()), (Got{"275/1", "275/3"}));
  window.DestroyWindow();
  EXPECT_EQ(window.SetTimer(1, 10), 0U);
  EXPECT_EQ(pumped(5000), Got{});
}

/// An application that counts how often it idles.
struct IdleApp : CWinApp {
  IdleApp() : CWinApp("idle") {}
  std::vector<LONG> idled;
  LONG until = 2;
  UINT dropped = 0;

  BOOL OnIdle(LONG count) override {
    idled.push_back(count);
    CWinApp::OnIdle(count);
    return count < until ? 1 : 0;
  }
  BOOL PreTranslateMessage(MSG* message) override {
    return message->message == dropped ? 1 : CWinApp::PreTranslateMessage(message);
  }
};

TEST(MessageLoop, IdlesUntilItWantsNoMoreAndAnewAfterAMessage) {
  IdleApp app;
  LoopWnd window;
  app.m_pMainWnd = &window;
  PumpUntilIdle();
  EXPECT_EQ(app.idled, (std::vector<LONG>{0, 1, 2}));
  EXPECT_EQ(window.got, Got{"867/1"}) << "what shows commands is brought up to date";
  app.dropped = WM_APP + 1;
  window.got.clear();
  window.PostMessage(WM_APP + 1);
  window.PostMessage(WM_APP + 2);
  EXPECT_EQ(PumpUntilIdle(), 2);
  EXPECT_EQ(window.got, (Got{"32770/0", "867/1"}));
}

TEST(MessageLoop, EndsWithTheCodeBehindPostedMessagesAndLeavesNestedLoops) {
  IdleApp app;
  app.until = 0;
  LoopWnd window;
  bool nested_ended = false;
  window.on_message = [&](UINT message) {
    if (message != WM_APP) return;
    PostQuitMessage(7);
    window.PostMessage(WM_APP + 1);
    nested_ended = !PumpUntil([] { return false; });
  };
  window.PostMessage(WM_APP);
  EXPECT_EQ(app.Run(), 7);
  EXPECT_TRUE(nested_ended);
  EXPECT_EQ(window.got, (Got{"32768/0", "32769/0"}));
}

TEST(MessageLoop, WaitsForWhatOtherThreadsPostAndSend) {
  IdleApp app;
  LoopWnd window;
  constexpr int kMessages = 2000;
  int posted = 0;
  int sent = 0;
  window.on_message = [&](UINT message) { ++(message == WM_APP ? posted : sent); };
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&window] {
      for (int at = 0; at < kMessages; ++at) window.PostMessage(WM_APP);
      for (int at = 0; at < 50; ++at) window.SendMessage(WM_APP + 1);
    });
  }
  EXPECT_TRUE(PumpUntil([&] { return posted == 4 * kMessages && sent == 200; }));
  for (std::thread& thread : threads) thread.join();
  EXPECT_FALSE(PumpUntil([] { return false; }, 20)) << "the time is up";
}

}  // namespace
}  // namespace dq
