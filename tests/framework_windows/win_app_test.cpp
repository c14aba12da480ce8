// The application object with its profile, and worker threads.

#include "dqlib/framework/windows/win_app.h"

#include "dqlib/framework/base/registry_key.h"
#include "tests/support/main_window.h"
#include "tests/support/own_settings.h"
#include "tests/support/registry_dump.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using test::own_settings;

TEST(WinApp, IsTheThreadsObjectWhileItLives) {
  EXPECT_EQ(AfxGetApp(), nullptr);
  {
    CWinApp app("Job  Runner");
    EXPECT_EQ(AfxGetThread(), &app);
    // The framework doesn't know the other thread.
    std::thread([&] { EXPECT_TRUE(AfxGetThread() == nullptr && AfxGetApp() == &app); }).join();
    auto window = std::make_unique<CWnd>();
    app.m_pMainWnd = window.get();
    EXPECT_EQ(AfxGetMainWnd(), window.get());
    window.reset();
    EXPECT_EQ(AfxGetMainWnd(), nullptr);
  }
  EXPECT_TRUE(AfxGetApp() == nullptr && AfxGetThread() == nullptr);
}

TEST(WinApp, WithoutANameItHasTheExecutablesBaseName) {
  testing::ScriptedPlatform platform;
  for (const std::string row : {"tool: /usr/bin/tool", "my tool: /opt/v1.2/my tool.bin",
                                "tool: tool.", ": ", "Job.Runner: C:\\Tools\\Job.Runner.exe"}) {
    platform.modules.path = row.substr(row.find(": ") + 2);
    CWinApp app;
    const CString path = app.GetExecutablePath();
    app.SetExecutablePath("/bin/other");
    app.SetRegistryKey("Maker");
    EXPECT_EQ(app.GetAppName() + (": " + path), row.c_str());
  }
  EXPECT_STREQ(CWinApp(" Job  Runner ").GetAppName(), " Job  Runner ");
}

TEST(WorkerThread, SendsToTheMainWindowOfTheThreadThatBeganItWhileThatJoins) {
  testing::MainWindow main;
  WorkerThread worker = AfxBeginThread(
      [](void* parameter) -> UINT {
        EXPECT_EQ(AfxGetMainWnd(), parameter);
        EXPECT_TRUE(AfxGetThread() != nullptr && AfxGetThread() != AfxGetApp());
        for (int round = 0; round < 50; ++round) AfxGetMainWnd()->SendMessage(WM_APP);
        return 0;
      },
      static_cast<CWnd*>(&main));
  EXPECT_TRUE(worker);
  for (int twice = 0; twice < 2; ++twice) worker.Join();
  EXPECT_TRUE(!worker && main.messages.size() == 50);
}

TEST(WorkerThread, GoesOnByItselfWhenItIsDropped) {
  std::atomic<int> step = 0;
  const auto procedure = [](void* parameter) -> UINT {
    auto& shared = *static_cast<std::atomic<int>*>(parameter);
    while (shared == 0) std::this_thread::yield();
    shared = 2;
    return 0;
  };
  AfxBeginThread(procedure, &step);
  step = 1;
  while (step != 2) std::this_thread::yield();
  EXPECT_FALSE(AfxBeginThread(nullptr, nullptr));
}

/// The profile in the registry (true) or, without a registry key, in a profile file.
struct Profile : ::testing::TestWithParam<bool> {
  Profile() {
    if (GetParam()) app.SetRegistryKey("Velmora");
    std::filesystem::create_directory(own_settings.directory / "velmora");
  }
  ~Profile() override {
    DeleteRegistryTree(kCurrentUser, "Software\\Velmora");
    std::filesystem::remove(own_settings.directory / "velmora/tool.ini");
  }
  std::string Text(const char* section, const char* entry) {
    return std::string(app.GetProfileString(section, entry, "gone"));
  }
  std::string Binary(const char* section, const char* entry) {
    BYTE* data = nullptr;
    UINT size = 1;
    const BOOL found = app.GetProfileBinary(section, entry, &data, &size);
    EXPECT_EQ(found != 0, data != nullptr);
    const std::unique_ptr<BYTE[]> owner(data);
    return data != nullptr ? std::string(data, data + size) : "gone";
  }
  CWinApp app{"tool"};
};
INSTANTIATE_TEST_SUITE_P(Stores, Profile, ::testing::Bool());

TEST_P(Profile, ValuesComeBackAndAbsentOnesGiveTheFallback) {
  EXPECT_EQ(app.GetProfileInt("s", "n", -7), static_cast<UINT>(-7));
  EXPECT_EQ(Text("s", "n") + Binary("s", "n"), "gonegone");
  EXPECT_EQ(app.GetProfileString("s", "n"), "");
  for (const int number : {0, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    EXPECT_TRUE(app.WriteProfileInt("s", "n", number));
    EXPECT_EQ(app.GetProfileInt("S", "N", 5), static_cast<UINT>(number));
  }
  EXPECT_TRUE(app.WriteProfileString("Search\\Find What", "Find0", "a=b \xC3\xA4"));
  EXPECT_EQ(Text("Search\\Find What", "Find0"), "a=b \xC3\xA4");
  for (const std::string& bytes :
       {std::string(), std::string("\0\x1F\xFF", 3), std::string(7681, '\xA5')}) {
    EXPECT_TRUE(app.WriteProfileBinary("s", "b", reinterpret_cast<const BYTE*>(bytes.data()),
                                       static_cast<UINT>(bytes.size())));
    EXPECT_EQ(Binary("s", "b"), bytes);
  }
}

TEST_P(Profile, NullsDeleteAnEntryOrASectionAndNeverAllOfIt) {
  for (const char* section : {"a", "b"}) {
    for (const char* entry : {"x", "y"}) app.WriteProfileString(section, entry, "2");
  }
  app.WriteProfileString("a\\deep", "z", "3");
  const auto remove = [&](const char* entry) {
    return app.WriteProfileString("a", entry, nullptr) != 0;
  };
  EXPECT_TRUE(remove("x") && remove("x"));
  EXPECT_EQ(Text("a", "x") + Text("a", "y"), "gone2");
  EXPECT_TRUE(remove(nullptr) && remove(nullptr));
  // In the registry a section nests; in a file its name is only a name.
  EXPECT_EQ(Text("a", "y") + Text("a\\deep", "z"), GetParam() ? "gonegone" : "gone3");
  for (const char* nothing : {static_cast<const char*>(nullptr), "", "\\"}) {
    EXPECT_FALSE(app.WriteProfileString(nothing, nullptr, nullptr));
  }
  EXPECT_EQ(Text("b", "y"), "2");
}

TEST_P(Profile, HasTheFormsThatOtherReadersKnow) {
  app.WriteProfileInt("s", "n", -2);
  app.WriteProfileString("s", "t", "x");
  app.WriteProfileBinary("s", "b", reinterpret_cast<const BYTE*>("y"), 1);
  if (!GetParam()) {
    EXPECT_EQ(own_settings.directory.Get("velmora/tool.ini"), "[s]\r\nn=-2\r\nt=x\r\nb=JH\r\n");
    own_settings.directory.Put(
        "velmora/tool.ini",
        "[s]\r\nn= -12x\r\nm=x\r\np=+9:\r\nw=4294967297\r\nb=A\r\nc=Az\r\nd=QA\r\n");
    for (const auto& [entry, number] :
         test::Rows<const char*, int>{{"n", -12}, {"m", 0}, {"p", 9}, {"w", 1}}) {
      EXPECT_EQ(app.GetProfileInt("s", entry, 5), static_cast<UINT>(number)) << entry;
    }
    EXPECT_EQ(Binary("s", "b") + Binary("s", "c") + Binary("s", "d"), "gonegonegone");
    return;
  }
  EXPECT_EQ(AppRegistryRoot(), "Software\\Velmora\\tool\\");
  platform::Registry& registry = *platform::Current().registry;
  const HKEY key = registry.OpenKey(kCurrentUser, (AppRegistryRoot() + "s").View()).value;
  EXPECT_EQ(test::Dump(registry, key),
            (test::RegistryDump{{"",
                                 {{"n", {REGISTRY_DWORD, "\xFE\xFF\xFF\xFF"}},
                                  {"t", {REGISTRY_STRING, std::string("x\0", 2)}},
                                  {"b", {REGISTRY_BINARY, "y"}}}}}));
  registry.CloseKey(key);
  EXPECT_EQ(app.GetProfileInt("s", "t", 3), 3U) << "a value of another kind isn't there";
  EXPECT_EQ(Text("s", "n"), "gone");
  EXPECT_EQ(own_settings.directory.Mode("velmora/registry/hkcu.journal"), 0600U);
}

}  // namespace
}  // namespace dq
