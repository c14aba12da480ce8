#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
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

TEST(MessageLoop, OneCallServesEachTimerOnceHoweverSlowTheHandlersAre) {
  testing::ManualClock clock;
  const platform::ScopedPlatform scope(test::With(&platform::Platform::clock, &clock));
  LoopWnd window;
  bool first = true;
  window.on_message = [&](UINT) {
    clock.Advance(50);
    if (window.got.back() == "275/3") window.SetTimer(3, 10);
    if (window.got.back() == "275/4" && std::exchange(first, false)) window.SetTimer(5, 10);
    // Else a loop without end would hang the test.
    for (UINT id = 1; id < 6 && window.got.size() > 20; ++id) window.KillTimer(id);
  };
  window.SetTimer(1, 10);
  window.SetTimer(2, 90);  // due while the others are served
  window.SetTimer(3, 20);
  window.SetTimer(4, 20);
  clock.Advance(20);
  EXPECT_EQ(PumpUntilIdle(), 4);
  EXPECT_EQ(window.got, (Got{"275/1", "275/3", "275/4", "275/2"}));
  window.got.clear();
  EXPECT_EQ(PumpUntilIdle(), 5);
  EXPECT_EQ(window.got, (Got{"275/1", "275/3", "275/4", "275/5", "275/2"}));
}

TEST(MessageLoop, MessagesAndTimersOfWindowsThatEndAreGoneAndThoseOfOthersStay) {
  testing::ManualClock clock;
  const platform::ScopedPlatform scope(test::With(&platform::Platform::clock, &clock));
  LoopWnd kept;
  // More than the queue keeps of dead windows, some of them taken out before.
  std::vector<std::unique_ptr<LoopWnd>> windows;
  for (WPARAM i = 0; i < 3000; ++i) {
    windows.push_back(std::make_unique<LoopWnd>());
    windows.back()->SetTimer(1, 10);
    windows.back()->PostMessage(WM_APP, i);
    if (i % 1000 == 999) kept.PostMessage(WM_APP, i);
  }
  kept.SetTimer(1, 10);
  kept.SetTimer(2, 10);
  windows.resize(1);
  clock.Advance(10);
  EXPECT_EQ(PumpUntilIdle(), 7);
  EXPECT_EQ(kept.got, (Got{"32768/999", "32768/1999", "32768/2999", "275/1", "275/2"}));
  EXPECT_EQ(windows[0]->got, (Got{"32768/0", "275/1"}));
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
  // The handler may end the main window; one of another thread isn't this thread's to update.
  auto dying = std::make_unique<LoopWnd>();
  app.m_pMainWnd = dying.get();
  dying->on_message = [&](UINT) { dying.reset(); };
  PumpUntilIdle();
  EXPECT_EQ(app.m_pMainWnd, nullptr);
  app.m_pMainWnd = &window;
  window.got.clear();
  std::thread([main = app.m_pMainWnd] {
    CWinThread worker;
    worker.m_pMainWnd = main;
    AfxSetThread(&worker);
    PumpUntilIdle();
  }).join();
  EXPECT_EQ(window.got, Got{});
  app.dropped = WM_APP + 1;
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
