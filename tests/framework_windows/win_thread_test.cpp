#include <atomic>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

#include "dqlib/framework/windows/win_app.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

class CountingWnd : public CWnd {
 public:
  int count = 0;

 private:
  LRESULT WindowProc(UINT message, WPARAM, LPARAM) override {
    return message == WM_CREATE ? 0 : ++count;
  }
};

/// Modules that put the program at a path of the test's.
class ProgramAt : public platform::Modules {
 public:
  explicit ProgramAt(std::string path) : path_(std::move(path)) {}
  std::string FileName(const platform::Module*) override { return path_; }
  const platform::Module& System() override { return platform::System().modules->System(); }

 private:
  std::string path_;
};

TEST(WinApp, IsTheThreadsObjectWhileItLives) {
  EXPECT_EQ(AfxGetApp(), nullptr);
  EXPECT_EQ(AfxGetThread(), nullptr);
  EXPECT_EQ(AfxGetMainWnd(), nullptr);
  {
    CWinApp app("Job  Runner");
    EXPECT_EQ(AfxGetApp(), &app);
    EXPECT_EQ(AfxGetThread(), &app);
    EXPECT_EQ(AfxGetMainWnd(), nullptr);
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

TEST(WinApp, NameRegistryKeyAndPathAreThreeThings) {
  CWinApp app(" Job  Runner ");
  EXPECT_STREQ(app.GetAppName(), " Job  Runner ");
  app.SetRegistryKey("Maker");
  EXPECT_STREQ(app.GetRegistryKeyName(), "Maker");
  EXPECT_EQ(app.GetExecutablePath(), platform::System().modules->FileName(nullptr).c_str());
  app.SetExecutablePath("C:\\Tools\\other.exe");
  EXPECT_STREQ(app.GetExecutablePath(), "C:\\Tools\\other.exe");
  EXPECT_STREQ(app.GetAppName(), " Job  Runner ");
}

TEST(WinApp, WithoutANameItHasTheExecutablesBaseName) {
  const struct {
    const char* path;
    const char* name;
  } rows[] = {{"/usr/bin/tool", "tool"},
              {"/opt/v1.2/my tool.bin", "my tool"},
              {"C:\\Tools\\Job.Runner.exe", "Job.Runner"},
              {"tool.", "tool"},
              {"", ""}};
  for (const auto& row : rows) {
    ProgramAt modules(row.path);
    platform::Platform services = platform::System();
    services.modules = &modules;
    const platform::ScopedPlatform scope(services);
    EXPECT_STREQ(CWinApp().GetAppName(), row.name) << row.path;
  }
}

TEST(WorkerThread, SendsToTheMainWindowOfTheThreadThatBeganItWhileThatJoins) {
  CWinApp app("Test");
  CountingWnd window;
  window.CreateWnd("Main");
  app.m_pMainWnd = &window;
  WorkerThread worker = AfxBeginThread(
      [](void* parameter) -> UINT {
        EXPECT_EQ(AfxGetMainWnd(), parameter);
        EXPECT_NE(AfxGetThread(), nullptr);
        EXPECT_NE(AfxGetThread(), AfxGetApp());
        for (int round = 1; round <= 50; ++round)
          EXPECT_EQ(AfxGetMainWnd()->SendMessage(WM_APP), round);
        return 0;
      },
      &window);
  EXPECT_TRUE(worker);
  worker.Join();
  EXPECT_FALSE(worker);
  worker.Join();
  EXPECT_EQ(window.count, 50);
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
