#include "dqlib/framework/windows/wnd.h"

#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <set>
#include <stdexcept>
#include <thread>

#include "dqlib/framework/windows/win_thread.h"
#include "tests/support/rows.h"

namespace dq {
namespace {

/// A window whose handler the test gives.
struct TestWnd : CWnd {
  using Handler = std::function<LRESULT(UINT, WPARAM, LPARAM)>;

  /// The handler gets neither the first message nor the last one.
  explicit TestWnd(Handler handler = {}) {
    CreateWnd("Test");
    on_message = std::move(handler);
  }
  ~TestWnd() override {
    on_message = nullptr;
    DestroyWindow();
  }
  LRESULT WindowProc(UINT message, WPARAM first, LPARAM second) override {
    return on_message ? on_message(message, first, second) : 0;
  }

  Handler on_message;
};

template <typename Condition>
void WaitUntil(Condition condition) {
  while (!condition()) std::this_thread::yield();
}

/// Meanwhile what other threads send is handled.
template <typename Condition>
void PumpSentUntil(Condition condition) {
  WaitUntil([&] { return PumpSentMessages() == 0 && condition(); });
}

TEST(Wnd, HandleIsAliveFromCreationToDestructionAndNeverUsedAgain) {
  std::set<HWND> handles;
  CWnd window;
  EXPECT_FALSE(window.DestroyWindow());
  for (int round = 0; round < 100; ++round) {
    ASSERT_TRUE(window.CreateWnd("Edit"));
    const HWND handle = window.GetSafeHwnd();
    EXPECT_TRUE(handles.insert(handle).second);
    EXPECT_FALSE(window.CreateWnd("Edit"));
    EXPECT_EQ(CWnd::FromHandle(handle), &window);
    EXPECT_TRUE(window.DestroyWindow());
    EXPECT_EQ(window.GetSafeHwnd(), nullptr);
    EXPECT_EQ(CWnd::FromHandle(handle), nullptr);
  }
  EXPECT_EQ(CWnd::FromHandle(nullptr), nullptr);
}

TEST(Wnd, ClassNameIsCutToTheBuffer) {
  TestWnd window;
  const HWND handle = window.GetSafeHwnd();
  const test::Rows<int, int, const char*> rows = {
      {5, 4, "Test"}, {4, 3, "Tes"}, {1, 0, ""}, {0, 0, "???"}, {-1, 0, "???"}};
  for (const auto& [size, length, text] : rows) {
    char buffer[40] = "???";
    EXPECT_EQ(GetWindowClassName(handle, buffer, size), length) << size;
    EXPECT_STREQ(buffer, text) << size;
  }
  EXPECT_EQ(GetWindowClassName(handle, nullptr, 5), 0);
  char buffer[8] = "???";
  EXPECT_EQ(GetWindowClassName(nullptr, buffer, 8), 0);
  EXPECT_STREQ(buffer, "");
}

TEST(Wnd, SendOnTheOwnThreadIsACallThatIsAnsweredEvenIfItEndsTheWindow) {
  TestWnd window([&](UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == 4) window.DestroyWindow();
    return static_cast<LRESULT>(message) * 100 + static_cast<LRESULT>(wparam) * 10 + lparam;
  });
  const HWND handle = window.GetSafeHwnd();
  EXPECT_EQ(window.SendMessage(1, 2, 3), 123);
  EXPECT_EQ(SendToWindow(handle, 4, 5, 6), 456);
  EXPECT_EQ(window.SendMessage(1, 2, 3), 0);
  for (const HWND dead : {handle, HWND{nullptr}}) EXPECT_EQ(SendToWindow(dead, 1, 2, 3), 0);
}

TEST(Wnd, SendersAreReleasedWhenTheWindowEndsUnpumped) {
  for (int round = 0; round < 200; ++round) {
    TestWnd window;
    TestWnd other([](UINT, WPARAM, LPARAM) { return 9; });
    std::atomic<int> started = 0;
    std::atomic<int> answered = 0;
    const auto send = [&](HWND target, LRESULT answer) {
      ++started;
      EXPECT_EQ(SendToWindow(target, 1, 0, 0), answer);
      ++answered;
    };
    std::thread first(send, window.GetSafeHwnd(), 0);
    std::thread second(send, other.GetSafeHwnd(), 9);
    WaitUntil([&] { return started == 2; });
    for (int wait = 0; wait < round; ++wait) std::this_thread::yield();
    window.DestroyWindow();
    first.join();
    PumpSentUntil([&] { return answered == 2; });  // the other window answers still
    second.join();
  }
}

TEST(Wnd, SendThatIsBeingHandledIsAnsweredAndTheOthersReleasedWhenTheHandlerEndsTheWindow) {
  for (int round = 0; round < 50; ++round) {
    std::atomic<int> started = 0;
    TestWnd window([&](UINT, WPARAM, LPARAM) {
      WaitUntil([&] { return started == 3; });
      window.DestroyWindow();
      return 7;
    });
    const HWND handle = window.GetSafeHwnd();
    std::atomic<int> answered = 0;
    std::atomic<LRESULT> sum = 0;
    const auto send = [&] {
      ++started;
      sum += SendToWindow(handle, 1, 0, 0);
      ++answered;
    };
    std::thread senders[] = {std::thread(send), std::thread(send), std::thread(send)};
    PumpSentUntil([&] { return answered == 3; });
    for (std::thread& sender : senders) sender.join();
    EXPECT_EQ(sum, 7);
  }
}

TEST(Wnd, SendersAreReleasedAndHandlesDeadWhenTheThreadEnds) {
  for (int round = 0; round < 100; ++round) {
    CWnd window;
    std::atomic<HWND> handle = nullptr;
    std::atomic<bool> sending = false;
    std::thread owner([&] {
      window.CreateWnd("Test");
      handle = window.GetSafeHwnd();
      WaitUntil([&] { return sending.load(); });
      for (int wait = 0; wait < round; ++wait) std::this_thread::yield();
    });
    WaitUntil([&] { return handle != nullptr; });
    sending = true;
    EXPECT_EQ(SendToWindow(handle, 1, 0, 0), 0);
    owner.join();
    EXPECT_EQ(CWnd::FromHandle(handle), nullptr);
    EXPECT_FALSE(window.DestroyWindow());
    EXPECT_TRUE(window.CreateWnd("Test")) << "again, for this thread";
  }
}

TEST(Wnd, ThreadsThatSendToEachOtherServeEachOther) {
  struct Side {
    std::atomic<HWND> handle = nullptr;
    std::atomic<bool> done = false;
  };
  Side sides[2];
  // Each message is passed on to the other side with one hop less, and the answers count them.
  const auto run = [&](int mine) {
    Side& self = sides[mine];
    Side& other = sides[1 - mine];
    TestWnd window([&](UINT, WPARAM hops, LPARAM) -> LRESULT {
      return hops == 0 ? 1 : 1 + SendToWindow(other.handle, 0, hops - 1, 0);
    });
    self.handle = window.GetSafeHwnd();
    WaitUntil([&] { return other.handle != nullptr; });
    for (int round = 0; round < 200; ++round) EXPECT_EQ(SendToWindow(other.handle, 0, 5, 0), 6);
    self.done = true;
    PumpSentUntil([&] { return other.done.load(); });
  };
  std::thread left(run, 0);
  std::thread right(run, 1);
  left.join();
  right.join();
}

TEST(Wnd, PumpLeavesWhatIsSentMeanwhileForTheNextCall) {
  std::atomic<bool> stop = false;
  // Each handling gives the other sender the time to send again.
  TestWnd window([&](UINT, WPARAM, LPARAM) {
    for (int wait = 0; wait < 300; ++wait) std::this_thread::yield();
    return 0;
  });
  std::atomic<int> ended = 0;
  const auto flood = [&] {
    while (!stop) window.SendMessage(1);
    ++ended;
  };
  std::thread first(flood);
  std::thread second(flood);
  for (int total = 0; total < 500;) {
    const int handled = PumpSentMessages();
    EXPECT_LE(handled, 2);
    total += handled;
  }
  stop = true;
  PumpSentUntil([&] { return ended == 2; });
  first.join();
  second.join();
  EXPECT_EQ(PumpSentMessages(), 0);
}

TEST(Wnd, ExceptionOfAServedHandlerWaitsForTheAnswerToTheOwnSend) {
  std::atomic<HWND> partner = nullptr;
  std::atomic<bool> done = false;
  TestWnd window([](UINT, WPARAM, LPARAM) -> LRESULT { throw std::runtime_error("served"); });
  bool partner_answered = false;  // written before the answer, read after it
  std::thread other([&] {
    TestWnd mine([&](UINT, WPARAM, LPARAM) {
      EXPECT_EQ(window.SendMessage(1), 0);
      return partner_answered = true;
    });
    partner = mine.GetSafeHwnd();
    PumpSentUntil([&] { return done.load(); });
  });
  WaitUntil([&] { return partner != nullptr; });
  EXPECT_THROW(SendToWindow(partner, 1, 0, 0), std::runtime_error);
  EXPECT_TRUE(partner_answered);
  done = true;
  other.join();
}

}  // namespace
}  // namespace dq
