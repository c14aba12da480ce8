// What is kept of windows: where they lie, in the profile, and those of a workspace, in a stream.

#include "dqlib/framework/windows/win_app.h"
#include "dqlib/workspace/window_info.h"
#include "dqlib/workspace/window_state.h"
#include "tests/support/own_settings.h"

namespace dq {
namespace {

constexpr int kMin = std::numeric_limits<int>::min();
constexpr int kMax = std::numeric_limits<int>::max();
constexpr CRect kPlace{100, 120, 500, 420};

struct Window : CWnd {
  Window() { CreateWnd({.class_name = "Main", .place = kPlace}); }
};

struct WindowState : ::testing::Test {
  void Put(const char* section, const std::map<std::string, int>& values) {
    for (const auto& [name, value] : values) {
      app.WriteProfileInt(section, ("wp." + name).c_str(), value);
    }
  }
  CWinApp app{"window state"};
  Window window;
};

TEST_F(WindowState, PlacementComesBackFromTenValues) {
  const WINDOWPLACEMENT wanted{44, 2, SW_SHOWMAXIMIZED, {-5, -6}, {7, 8}, {-10, 20, 300, 400}};
  ASSERT_TRUE(window.SetWindowPlacement(&wanted));
  DQLIB_SaveWindowPlacement("Main", &window);
  EXPECT_THAT(
      test::own_settings.directory.Get("velmora/window state.ini"),
      ::testing::HasSubstr("[Main]\r\nwp.showCmd=3\r\nwp.flags=2\r\nwp.ptMinPosition.x=-5\r\n"
                           "wp.ptMinPosition.y=-6\r\nwp.ptMaxPosition.x=7\r\n"
                           "wp.ptMaxPosition.y=8\r\nwp.left=-10\r\nwp.right=300\r\n"
                           "wp.top=20\r\nwp.bottom=400\r\n"));
  Window other;
  EXPECT_TRUE(DQLIB_RestoreWindowPlacement("Main", &other));
  WINDOWPLACEMENT restored, partly;
  other.GetWindowPlacement(&restored);
  EXPECT_EQ(restored, wanted);
  Put("Partly", {{"top", 55}});
  DQLIB_GetWindowPlacement("Partly", &partly);
  EXPECT_EQ(partly, (WINDOWPLACEMENT{.rcNormalPosition = {0, 55, 0, 0}}));
}

TEST_F(WindowState, WindowIsNeverRestoredOffScreen) {
  const test::Rows<CRect, bool> rows = {{{1920, 0, 1929, 9}, false},
                                        {{1919, 1079, 1929, 1089}, true},
                                        {{-9, -9, 0, 5}, false},
                                        {{-9, -9, 1, 1}, true},
                                        {{5, 5, 5, 9}, false},
                                        {{0, 1080, 9, 1089}, false},
                                        {{kMax, kMax, kMin, kMin}, false},
                                        {{kMin, kMin, kMax, kMax}, true}};
  for (const auto& [at, restored] : rows) {
    window.MoveWindow(kPlace);
    Put("Off", {{"left", at.left}, {"right", at.right}, {"top", at.top}, {"bottom", at.bottom}});
    EXPECT_EQ(DQLIB_RestoreWindowPlacement("Off", &window), restored) << at.left;
    EXPECT_EQ(window.GetPlace() == kPlace, !restored) << at.left;
  }
  window.MoveWindow(kPlace);
  EXPECT_TRUE(DQLIB_RestoreWindowPlacement("No such section", &window));
  EXPECT_EQ(window.GetPlace(), kPlace);
  CWnd none;
  for (const auto& [section, bad] :
       test::Rows<const char*, CWnd*>{{"None", nullptr}, {"None", &none}, {nullptr, &window}}) {
    DQLIB_SaveWindowPlacement(section, bad);
    EXPECT_FALSE(DQLIB_RestoreWindowPlacement(section, bad));
  }
}

TEST_F(WindowState, CreateStructKeepsWhatIsntStored) {
  CREATESTRUCT create{.x = kMin, .y = 20, .cx = kMin, .cy = 40};
  const auto place = [&create] { return CRect{create.x, create.y, create.cx, create.cy}; };
  DQLIB_SetCreateStructPlacement("No such section", &create);
  EXPECT_EQ(place(), (CRect{kMin, 20, kMin, 40})) << "the system chooses, still";
  Put("Create", {{"left", 5}, {"right", 25}, {"top", 10}});
  DQLIB_SetCreateStructPlacement("Create", &create);
  EXPECT_EQ(place(), (CRect{5, 10, 20, 50})) << "the bottom edge stays";
}

TEST(WindowStateWithoutApplication, DoesNothing) {
  Window window;
  CREATESTRUCT create{.cx = 3};
  WINDOWPLACEMENT placement;
  DQLIB_SaveWindowPlacement("Main", &window);
  DQLIB_GetWindowPlacement("Main", &placement);
  DQLIB_SetCreateStructPlacement("Main", &create);
  EXPECT_EQ(placement, WINDOWPLACEMENT());
  EXPECT_EQ(create.cx, 3);
  EXPECT_FALSE(DQLIB_RestoreWindowPlacement("Main", &window));
}

/// Loads the value from the bytes or stores it; the bytes afterwards.
std::string Archived(auto& value, CArchive::Mode mode, const std::string& bytes = {}) {
  struct : CMemFile {
    using CMemFile::m_bytes;
  } file;
  file.m_bytes.assign(bytes.begin(), bytes.end());
  CArchive archive(&file, mode);
  value.Serialize(archive);
  archive.Close();
  return {file.m_bytes.begin(), file.m_bytes.end()};
}

std::unique_ptr<CDQWindowInfo> Sample() {
  auto info = std::make_unique<CDQWindowInfo>(3, -2, "n");
  info->SetUserData("ab");
  info->SetWndPlacement({1, 2, SW_SHOWMAXIMIZED, {-1, 5}, {6, 7}, {8, 9, 10, 0x01020304}});
  info->SetActive(true);
  return info;
}

TEST(WindowInfo, FormIsExactAndItsLengthAlwaysThatOfAPlacement) {
  using namespace std::string_literals;
  const std::string expected =
      "\3\0\0\0\xFE\xFF\xFF\xFF\1n\2ab\0\x2C\0\0\0\2\0\0\0\3\0\0\0\xFF\xFF\xFF\xFF\5\0\0\0"
      "\6\0\0\0\7\0\0\0\x8\0\0\0\x9\0\0\0\xA\0\0\0\4\3\2\1\1"s;
  const auto info = Sample();
  EXPECT_EQ(Archived(*info, CArchive::store), expected);
  EXPECT_TRUE(info->Zoomed() && !info->Iconized());
  CDQWindowInfo loaded;
  Archived(loaded, CArchive::load, std::string(expected).replace(14, 1, "c"));
  EXPECT_EQ(Archived(loaded, CArchive::store), expected)
      << "whatever length is stored, it is 44 afterwards";
}

TEST(WindowInfoArray, RefusesTornStreamsAndWhatIsNoneOfItsRecords) {
  CDQWindowInfoArray infos, loaded;
  infos.Add(Sample());
  infos.Add(std::make_unique<CDQWindowInfo>());
  loaded.Add(Sample());
  const std::string bytes = Archived(infos, CArchive::store);
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    EXPECT_THROW(Archived(loaded, CArchive::load, bytes.substr(0, at)), CArchiveException) << at;
  }
  // The second object is the first one again, then null.
  const std::size_t second = bytes.size() - 58;
  ASSERT_EQ(bytes.substr(second, 2), "\x01\x80");
  for (const char tag : {'\2', '\0'}) {
    const std::string other = bytes.substr(0, second) + tag + std::string(70, '\0');
    EXPECT_THROW(Archived(loaded, CArchive::load, other), CArchiveException);
  }
  EXPECT_EQ(loaded.GetSize(), 1);
  Archived(loaded, CArchive::load, bytes);
  EXPECT_EQ(Archived(loaded, CArchive::store), bytes);
  loaded.RemoveAt(0);
  EXPECT_TRUE(loaded.GetSize() == 1 && loaded[0]->GetType() == -1);
}

}  // namespace
}  // namespace dq
