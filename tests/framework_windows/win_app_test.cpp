// The application: its messages, timers and loop, worker threads, and its profile.

#include "tests/support/doubles.h"
#include "tests/support/own_settings.h"
#include "tests/support/registries.h"
#include "tests/support/windows.h"

namespace dq::test {
namespace {

/// A window that keeps what it is sent, as "message/first ", and answers by the test's handler.
struct LoopWnd : CWnd {
  using Handler = std::function<LRESULT(UINT, WPARAM, LPARAM)>;

  /// The handler gets neither the first messages nor the last one.
  explicit LoopWnd(Handler handler = {}) : on_message(std::move(handler)) { CreateWnd("Test"); }
  LRESULT WindowProc(UINT message, WPARAM first, LPARAM second) override {
    if (message <= WM_SIZE) return 0;
    got += std::to_string(message) + "/" + std::to_string(first) + " ";
    return on_message ? on_message(message, first, second) : 0;
  }

  std::string got;
  Handler on_message;
};

TEST(Handle, IsAliveUntilItsWindowEndsNeverUsedAgainAndGivesTheClassNameCutToTheBuffer) {
  std::set<HWND> handles;
  CWnd window;
  for (int round = 0; round < 100; ++round) {
    ASSERT_TRUE(!window.DestroyWindow() && window.CreateWnd("Edit"));
    const HWND handle = window.GetSafeHwnd();
    EXPECT_TRUE(handles.insert(handle).second && CWnd::FromHandle(handle) == &window);
    EXPECT_TRUE(!window.CreateWnd("Edit") && window.DestroyWindow());
    EXPECT_TRUE(window.GetSafeHwnd() == nullptr && CWnd::FromHandle(handle) == nullptr);
  }
  struct : CWnd {
    LRESULT WindowProc(UINT message, WPARAM, LPARAM) override { return message == 1 ? -1 : 0; }
  } refusing;
  EXPECT_FALSE(refusing.CreateWnd("Edit") || refusing.GetSafeHwnd() != nullptr);
  window.CreateWnd("Test");
  std::string names;
  const HWND made = window.GetSafeHwnd();
  for (const auto& [of, size] :
       Rows<HWND, int>{{made, 5}, {made, 4}, {made, 1}, {made, 0}, {made, -1}, {nullptr, 8}}) {
    char buffer[40] = "?";
    names += std::to_string(GetWindowClassName(of, buffer, size)) + buffer + " ";
  }
  EXPECT_EQ(names + std::to_string(GetWindowClassName(made, nullptr, 5)), "4Test 3Tes 0 0? 0? 0 0");
}

TEST(Send, OnTheOwnThreadIsACallThatIsAnsweredEvenIfItEndsTheWindow) {
  LoopWnd window([&](UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == 14) window.DestroyWindow();
    return static_cast<LRESULT>(message) * 100 + static_cast<LRESULT>(wparam) * 10 + lparam;
  });
  const HWND handle = window.GetSafeHwnd();
  EXPECT_TRUE(window.SendMessage(13, 2, 1) == 1321 && SendToWindow(handle, 14, 5, 6) == 1456);
  for (const HWND dead : {handle, HWND{nullptr}}) EXPECT_EQ(SendToWindow(dead, 1, 2, 3), 0);
}

TEST(Send, OneThatIsBeingHandledIsAnsweredAndTheOthersReleasedWhenTheWindowEnds) {
  for (int round = 0; round < 200; ++round) {
    const bool ends_unpumped = round % 2 == 0;
    std::atomic<int> answered = 0, sum = 0;
    LoopWnd window([&](UINT, WPARAM, LPARAM) { return window.DestroyWindow(), 7; });
    LoopWnd other([](UINT, WPARAM, LPARAM) { return 90; });
    const auto send = [&](HWND target) {
      sum += static_cast<int>(SendToWindow(target, WM_APP, 0, 0));
      ++answered;
    };
    std::vector<std::jthread> senders;
    for (CWnd* each : {&window, &window, &other}) senders.emplace_back(send, each->GetSafeHwnd());
    for (int wait = 0; wait < 10 * round; ++wait) std::this_thread::yield();
    if (ends_unpumped) window.DestroyWindow();
    while (answered < 3) PumpSentMessages();
    EXPECT_EQ(sum, ends_unpumped ? 90 : 97);
  }
}

TEST(Send, IsReleasedAndTheHandleDeadWhenTheThreadEnds) {
  for (int round = 0; round < 100; ++round) {
    CWnd window;
    std::atomic<HWND> handle = nullptr;
    std::thread owner([&] {
      window.CreateWnd("Test");
      handle = window.GetSafeHwnd();
      for (int wait = 0; wait < 10 * round; ++wait) std::this_thread::yield();
    });
    while (handle == nullptr) std::this_thread::yield();
    EXPECT_EQ(SendToWindow(handle, WM_APP, 0, 0), 0);
    owner.join();
    EXPECT_TRUE(CWnd::FromHandle(handle) == nullptr && !window.DestroyWindow());
    EXPECT_TRUE(window.CreateWnd("Test")) << "again, for this thread";
  }
}

TEST(Send, PumpLeavesWhatIsSentMeanwhileForTheNextCall) {
  // Each handling gives the other sender the time to send again.
  LoopWnd window([](UINT, WPARAM, LPARAM) {
    for (int wait = 0; wait < 300; ++wait) std::this_thread::yield();
    return 0;
  });
  const auto flood = [&] {
    for (int sent = 0; sent < 250; ++sent) window.SendMessage(WM_APP);
  };
  const std::jthread one(flood), other(flood);
  for (int total = 0; total < 500;) {
    const int handled = PumpSentMessages();
    EXPECT_LE(handled, 2);
    total += handled;
  }
}

TEST(Send, ExceptionOfAServedHandlerWaitsForTheAnswerToTheOwnSend) {
  std::atomic<HWND> partner = nullptr;
  LoopWnd window([](UINT, WPARAM, LPARAM) -> LRESULT { throw std::runtime_error("served"); });
  bool partner_answered = false;  // written before the answer, read after it
  const std::jthread other([&] {
    const LoopWnd mine([&](UINT, WPARAM, LPARAM) {
      EXPECT_EQ(window.SendMessage(WM_APP), 0);
      return partner_answered = true;
    });
    partner = mine.GetSafeHwnd();
    while (!partner_answered) PumpSentMessages();
  });
  while (partner == nullptr) std::this_thread::yield();
  EXPECT_THROW(SendToWindow(partner, WM_APP, 0, 0), std::runtime_error);
  EXPECT_TRUE(partner_answered);
}

/// Time is moved by hand.
struct MessageLoop : testing::Test {
  ManualClock clock{0xFFFFFFF0};  // it wraps meanwhile
  const platform::ScopedPlatform scope{With(&platform::Platform::clock, &clock)};
  LoopWnd window;
  /// When so much time has passed each time: how many messages have come, and those of the window.
  std::string Pump(std::initializer_list<DWORD> times = {0}) {
    std::string got;
    for (const DWORD passed : times) {
      clock.Advance(passed);
      got += std::to_string(PumpUntilIdle()) + ": ";
      got += std::exchange(window.got, {});
    }
    return got;
  }
};

TEST_F(MessageLoop, TimersComeByTheClockBehindPostedMessages) {
  // The second time acts as 10, the third as the longest there is.
  EXPECT_TRUE(window.SetTimer(1, 250) == 1 && window.SetTimer(2, 3) == 2);
  EXPECT_EQ(window.SetTimer(3, static_cast<UINT>(-1)), 3U);
  EXPECT_EQ(Pump({9, 1, 200, 9}), "0: 1: 275/2 1: 275/2 0: ") << "one that is late comes once";
  EXPECT_TRUE(window.PostMessage(WM_APP) && Pump({31}) == "3: 32768/0 275/2 275/1 ");
  // The first one starts anew.
  EXPECT_TRUE(window.SetTimer(1, 1000) == 1 && window.KillTimer(2) && !window.KillTimer(2));
  EXPECT_EQ(Pump({999, 1, 0x7FFFFFFF}), "0: 1: 275/1 2: 275/1 275/3 ");
  EXPECT_TRUE(window.DestroyWindow() && window.SetTimer(1, 10) == 0 && Pump({5000}) == "0: ");
}

TEST_F(MessageLoop, OneCallServesEachTimerOnceHoweverSlowTheHandlersAre) {
  bool first = true;
  window.on_message = [&](UINT, WPARAM timer, LPARAM) {
    clock.Advance(50);
    if (timer == 3) window.SetTimer(3, 10);
    if (timer == 4 && std::exchange(first, false)) window.SetTimer(5, 10);
    // Else a loop without end would hang the test.
    for (UINT each = 1; each < 6 && window.got.size() > 120; ++each) window.KillTimer(each);
    return 0;
  };
  UINT id = 0;
  // The second is due while the others are served.
  for (const UINT time : {10U, 90U, 20U, 20U}) window.SetTimer(++id, time);
  EXPECT_EQ(Pump({20, 0}), "4: 275/1 275/3 275/4 275/2 5: 275/1 275/3 275/4 275/5 275/2 ");
}

TEST_F(MessageLoop, MessagesAndTimersOfWindowsThatEndAreGoneAndThoseOfOthersComeInOrder) {
  // More than the queue keeps of dead windows, some of them taken out before.
  std::vector<std::unique_ptr<LoopWnd>> windows;
  for (WPARAM i = 0; i < 3000; ++i) {
    windows.push_back(std::make_unique<LoopWnd>());
    windows.back()->SetTimer(1, 10);
    EXPECT_TRUE(windows.back()->PostMessage(WM_APP, i));
    if (i % 1000 == 999) window.PostMessage(WM_APP + 1, i);
  }
  const HWND dead = windows[1]->GetSafeHwnd();
  for (const UINT timer : {1U, 2U}) window.SetTimer(timer, 10);
  windows.resize(1);
  EXPECT_FALSE(PostToWindow(dead, WM_APP, 0, 0) || CWnd().PostMessage(WM_APP));
  EXPECT_EQ(Pump({10}), "7: 32769/999 32769/1999 32769/2999 275/1 275/2 ");
  EXPECT_EQ(windows[0]->got, "32768/0 275/1 ");
}

/// An application that keeps how often it idles, and drops a message.
struct IdleApp : CWinApp {
  std::string idled;
  std::function<void()> on_last;

  BOOL OnIdle(LONG count) override {
    idled += std::to_string(count);
    CWinApp::OnIdle(count);
    if (count == 2 && on_last) on_last();
    return count < 2 ? 1 : 0;
  }
  BOOL PreTranslateMessage(MSG* message) override {
    return message->message == WM_APP + 9 ? 1 : CWinApp::PreTranslateMessage(message);
  }
};

TEST_F(MessageLoop, IdlesUntilItWantsNoMoreAndAnewAfterAMessage) {
  IdleApp app;
  app.m_pMainWnd = &window;
  EXPECT_EQ(Pump() + app.idled, "0: 867/1 012") << "what shows commands is updated";
  EXPECT_TRUE(window.PostMessage(WM_APP + 9) && window.PostMessage(WM_APP + 2));
  EXPECT_EQ(Pump(), "2: 32770/0 867/1 ");
  // One of another thread isn't this thread's to update; and the handler may end the main window.
  AfxBeginThread([](void*) { return static_cast<UINT>(PumpUntilIdle()); }, nullptr).Join();
  EXPECT_EQ(window.got, "");
  auto dying = std::make_unique<LoopWnd>();
  app.m_pMainWnd = dying.get();
  dying->on_message = [&](UINT, WPARAM, LPARAM) { return dying.reset(), 0; };
  PumpUntilIdle();
  EXPECT_EQ(AfxGetMainWnd(), nullptr);
}

TEST_F(MessageLoop, EndsWithTheCodeBehindPostedMessagesAndLeavesNestedLoops) {
  IdleApp app;
  app.on_last = [&] { window.PostMessage(app.idled == "012" ? WM_APP + 2 : WM_APP); };
  window.on_message = [&](UINT message, WPARAM, LPARAM) {
    if (message != WM_APP) return 0;
    PostQuitMessage(7);
    window.PostMessage(WM_APP + 1);
    EXPECT_FALSE(PumpUntil([] { return false; }));
    return 0;
  };
  EXPECT_TRUE(app.Run() == 7 && window.got + app.idled == "32770/0 32768/0 32769/0 012012");
}

TEST(WinApp, IsTheThreadsObjectWhileItLivesAndHasTheExecutablesBaseNameWithoutAnother) {
  ScriptedPlatform platform;
  platform.modules.path = "/opt/v1.2/my tool.bin";
  std::optional<CWinApp> app(std::in_place);
  EXPECT_EQ(app->GetAppName() + ("|" + app->GetExecutablePath()), "my tool|/opt/v1.2/my tool.bin");
  app->SetExecutablePath("/bin/other");
  app->SetRegistryKey("Maker");
  EXPECT_EQ(app->GetAppName() + ("|" + app->GetExecutablePath()), "my tool|/bin/other");
  // The framework doesn't know the other thread.
  std::thread([&] { EXPECT_TRUE(AfxGetThread() == nullptr && AfxGetApp() == &*app); }).join();
  app.reset();
  EXPECT_TRUE(AfxGetApp() == nullptr && AfxGetThread() == nullptr);
  EXPECT_STREQ(CWinApp(" Job  Runner ").GetAppName(), " Job  Runner ");
}

TEST(WorkerThread, SendsAndPostsToTheMainWindowOfTheThreadThatBeganItAndMayBeDropped) {
  MainWindow main;
  IdleApp app;
  app.m_pMainWnd = &main;
  const auto send = [](void* parameter) -> UINT {
    EXPECT_EQ(AfxGetMainWnd(), parameter);
    EXPECT_TRUE(AfxGetThread() != nullptr && AfxGetThread() != AfxGetApp());
    for (int round = 0; round < 50; ++round) AfxGetMainWnd()->SendMessage(WM_APP);
    for (int round = 0; round < 2000; ++round) AfxGetMainWnd()->PostMessage(WM_APP);
    return 0;
  };
  WorkerThread worker = AfxBeginThread(send, static_cast<CWnd*>(&main));
  EXPECT_TRUE(worker);
  // Those that are dropped go on.
  for (int other = 0; other < 3; ++other) AfxBeginThread(send, static_cast<CWnd*>(&main));
  for (int twice = 0; twice < 2; ++twice) worker.Join();
  EXPECT_TRUE(!worker && PumpUntil([&] { return main.messages.size() == 8200; }));
  // When the time is up, and it has idled before it waits.
  EXPECT_TRUE(!PumpUntil([] { return false; }, 20) && app.idled.ends_with("012"));
  EXPECT_FALSE(AfxBeginThread(nullptr, nullptr));
}

TEST(WorkerThread, AsksForIdlePriorityBeforeItsProcedureRuns) {
  struct CountingThreads : platform::Threads {
    platform::Error SetPriority(platform::ThreadPriority priority) override {
      idle += priority == platform::ThreadPriority::kIdle ? 1 : 100;
      return {platform::ErrorKind::kAccessDenied, 1};
    }
    std::atomic<int> idle = 0;
  } threads;
  const platform::ScopedPlatform scope(With(&platform::Platform::threads, &threads));
  const auto check = [](void* counting) -> UINT {
    EXPECT_EQ(static_cast<CountingThreads*>(counting)->idle, 1);
    return 0;
  };
  AfxBeginThread([](void*) -> UINT { return 0; }, nullptr).Join();
  AfxBeginThread(check, &threads, THREAD_PRIORITY_IDLE).Join();
  AfxBeginThread(check, &threads, THREAD_PRIORITY_NORMAL).Join();
}

/// The profile in the registry (true) or, without a registry key, in a profile file.
struct Profile : testing::TestWithParam<bool> {
  Profile() {
    if (GetParam()) app.SetRegistryKey("Velmora");
  }
  ~Profile() override {
    DeleteRegistryTree(kCurrentUser, "Software\\Velmora");
    std::filesystem::remove(own_settings.directory / "velmora/tool.ini");
  }
  int Int(const char* entry, int fallback = 5) {
    return static_cast<int>(app.GetProfileInt("s", entry, fallback));
  }
  std::string Text(const char* section, const char* entry) {
    return std::string(app.GetProfileString(section, entry, "gone"));
  }
  std::string Binary(const char* entry) {
    BYTE* data = nullptr;
    UINT size = 1;
    const BOOL found = app.GetProfileBinary("s", entry, &data, &size);
    const std::unique_ptr<BYTE[]> owner(data);
    EXPECT_TRUE(found != 0 ? data != nullptr : data == nullptr && size == 0);
    return found != 0 ? std::string(data, data + size) : "gone";
  }
  CWinApp app{"tool"};
};
INSTANTIATE_TEST_SUITE_P(Stores, Profile, testing::Bool());

TEST_P(Profile, ValuesComeBackAndAbsentOnesGiveTheFallback) {
  EXPECT_TRUE(Int("n", -7) == -7 && app.GetProfileString("s", "n") == "");
  EXPECT_EQ(Text("s", "n") + Binary("n"), "gonegone");
  for (const int number : {0, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    EXPECT_TRUE(app.WriteProfileInt("S", "n", number) && Int("N") == number) << number;
  }
  EXPECT_TRUE(app.WriteProfileString("Search\\Find What", "Find0", "a=b \xC3\xA4"));
  EXPECT_EQ(Text("Search\\Find What", "Find0"), "a=b \xC3\xA4");
  for (const std::string& blob : {std::string(), std::string("\xF0\xF"), std::string(7681, '\0')}) {
    EXPECT_TRUE(app.WriteProfileBinary("s", "b", reinterpret_cast<const BYTE*>(blob.data()),
                                       static_cast<UINT>(blob.size())));
    EXPECT_EQ(Binary("b"), blob);
  }
}

TEST_P(Profile, NullsDeleteAnEntryOrASectionAndNeverAllOfIt) {
  for (const char* entry : {"x", "y"}) app.WriteProfileString("a", entry, "2");
  app.WriteProfileString("b", "y", "2");
  app.WriteProfileString("a\\deep", "z", "3");
  // In the registry a section nests; in a file its name is only a name.
  for (const auto& [name, left] : Rows<const char*, const char*>{
           {"x", "gone2 3"}, {nullptr, GetParam() ? "gonegone gone" : "gonegone 3"}}) {
    for (int twice = 0; twice < 2; ++twice) EXPECT_TRUE(app.WriteProfileString("a", name, nullptr));
    EXPECT_EQ(Text("a", "x") + Text("a", "y") + " " + Text("a\\deep", "z"), left);
  }
  for (const char* nothing : {static_cast<const char*>(nullptr), "", "\\"}) {
    EXPECT_FALSE(app.WriteProfileString(nothing, nullptr, nullptr));
  }
  EXPECT_EQ(Text("b", "y"), "2");
}

TEST_P(Profile, HasTheFormsThatOtherReadersKnow) {
  EXPECT_TRUE(app.WriteProfileInt("s", "n", -2) && app.WriteProfileString("s", "t", "x"));
  app.WriteProfileBinary("s", "b", reinterpret_cast<const BYTE*>("y"), 1);
  if (!GetParam()) {
    EXPECT_EQ(own_settings.directory.Get("velmora/tool.ini"), "[s]\r\nn=-2\r\nt=x\r\nb=JH\r\n");
    own_settings.directory.Put(
        "velmora/tool.ini",
        "[s]\r\nn= -12x\r\nm=x\r\np=+9:\r\nw=4294967297\r\nb=A\r\nc=Az\r\nd=QA\r\n");
    EXPECT_TRUE(Int("n") == -12 && Int("m") == 0 && Int("p") == 9 && Int("w") == 1);
    EXPECT_EQ(Binary("b") + Binary("c") + Binary("d"), "gonegonegone");
    ScriptedPrompts prompts;
    own_settings.directory.Put("velmora/tool.ini", "\xFF\xFE[");
    EXPECT_EQ(Text("s", "n") + Binary("n"), "gonegone");
    EXPECT_EQ(prompts.shown.size(), 1u) << "that it can't be read is told once";
    return;
  }
  EXPECT_EQ(AppRegistryRoot(), "Software\\Velmora\\tool\\");
  using testing::Pair;
  EXPECT_THAT(
      Dump(*platform::Current().registry)["Software\\Velmora\\tool\\s"],
      testing::ElementsAre(Pair("b", Pair(3U, "y")), Pair("n", Pair(4U, "\xFE\xFF\xFF\xFF")),
                           Pair("t", Pair(1U, std::string("x\0", 2)))));
  EXPECT_TRUE(Int("t") == 5 && Text("s", "n") == "gone") << "it is of another kind";
  EXPECT_EQ(own_settings.directory.Mode("velmora/registry/hkcu.journal"), 0600U);
}

}  // namespace
}  // namespace dq::test
