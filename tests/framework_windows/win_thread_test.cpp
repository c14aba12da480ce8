#include <atomic>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

#include "dqlib/framework/windows/win_app.h"
#include "tests/support/main_window.h"
#include "tests/support/rows.h"
#include "tests/support/scripted_platform.h"

namespace dq {
namespace {

TEST(WinApp, IsTheThreadsObjectWhileItLives) {
  EXPECT_EQ(AfxGetApp(), nullptr);
  {
    CWinApp app("Job  Runner");
    EXPECT_EQ(AfxGetThread(), &app);
    std::thread([&] {
      EXPECT_EQ(AfxGetThread(), nullptr) << "a thread that the framework doesn't know";
      EXPECT_EQ(AfxGetApp(), &app);
    }).join();
    auto window = std::make_unique<CWnd>();
    app.m_pMainWnd = window.get();
    EXPECT_EQ(AfxGetMainWnd(), window.get());
    window.reset();
    EXPECT_EQ(AfxGetMainWnd(), nullptr);
  }
  EXPECT_EQ(AfxGetApp(), nullptr);
  EXPECT_EQ(AfxGetThread(), nullptr);
}

TEST(WinApp, WithoutANameItHasTheExecutablesBaseName) {
  testing::ScriptedPlatform platform;
  for (const auto& [path, name] :
       test::Rows<const char*, const char*>{{"/usr/bin/tool", "tool"},
                                            {"/opt/v1.2/my tool.bin", "my tool"},
                                            {"C:\\Tools\\Job.Runner.exe", "Job.Runner"},
                                            {"tool.", "tool"},
                                            {"", ""}}) {
    platform.modules.path = path;
    CWinApp app;
    EXPECT_STREQ(app.GetExecutablePath(), path);
    app.SetExecutablePath("/bin/other");
    app.SetRegistryKey("Maker");
    EXPECT_STREQ(app.GetAppName(), name);
  }
  EXPECT_STREQ(CWinApp(" Job  Runner ").GetAppName(), " Job  Runner ");
}

TEST(WorkerThread, SendsToTheMainWindowOfTheThreadThatBeganItWhileThatJoins) {
  testing::MainWindow main;
  WorkerThread worker = AfxBeginThread(
      [](void* parameter) -> UINT {
        EXPECT_EQ(AfxGetMainWnd(), parameter);
        EXPECT_NE(AfxGetThread(), nullptr);
        EXPECT_NE(AfxGetThread(), AfxGetApp());
        for (int round = 0; round < 50; ++round) AfxGetMainWnd()->SendMessage(WM_APP);
        return 0;
      },
      static_cast<CWnd*>(&main));
  EXPECT_TRUE(worker);
  for (int twice = 0; twice < 2; ++twice) worker.Join();
  EXPECT_FALSE(worker);
  EXPECT_EQ(main.messages.size(), 50U);
}

TEST(WorkerThread, GoesOnByItselfWhenItIsDropped) {
  std::atomic<int> step = 0;
  const auto procedure = [](void* parameter) -> UINT {
    auto& shared = *static_cast<std::atomic<int>*>(parameter);
    while (shared == 0) std::this_thread::yield();
    shared = 2;
    return 0;
  };
  WorkerThread worker = AfxBeginThread(procedure, &step);
  worker = WorkerThread();
  step = 1;
  while (step != 2) std::this_thread::yield();
  EXPECT_FALSE(AfxBeginThread(nullptr, nullptr));
}

}  // namespace
}  // namespace dq
