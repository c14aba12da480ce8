// What is kept of windows: where they lie, in the profile, and those of a workspace, in a stream.

#include "tests/support/own_settings.h"

namespace dq::test {
namespace {

using namespace std::string_literals;

constexpr CRect kPlace{100, 120, 500, 420};

struct WindowState : testing::Test {
  WindowState() {
    for (CWnd* each : {&window, &other}) each->CreateWnd({.class_name = "Main", .place = kPlace});
  }
  /// Of the left, top, right and bottom edge those that aren't "-".
  void Put(const char* section, const std::string& edges) {
    std::istringstream rest(edges);
    for (const char* name : {"wp.left", "wp.top", "wp.right", "wp.bottom"}) {
      std::string value;
      if (rest >> value && value != "-") app->WriteProfileString(section, name, value.c_str());
    }
  }
  std::optional<CWinApp> app{"window state"};
  CWnd window, other;
};

TEST_F(WindowState, PlacementComesBackFromTenValues) {
  const WINDOWPLACEMENT wanted{44, 2, SW_SHOWMAXIMIZED, {-5, -6}, {7, 8}, {-10, 20, 300, 400}};
  ASSERT_TRUE(window.SetWindowPlacement(&wanted));
  DQLIB_SaveWindowPlacement("Main", &window);
  EXPECT_THAT(
      own_settings.directory.Get("velmora/window state.ini"),
      testing::HasSubstr("[Main]\r\nwp.showCmd=3\r\nwp.flags=2\r\nwp.ptMinPosition.x=-5\r\nwp."
                         "ptMinPosition.y=-6\r\nwp.ptMaxPosition.x=7\r\nwp.ptMaxPosition.y="
                         "8\r\nwp.left=-10\r\nwp.right=300\r\nwp.top=20\r\nwp.bottom=400\r\n"));
  EXPECT_TRUE(DQLIB_RestoreWindowPlacement("Main", &other));
  WINDOWPLACEMENT restored, partly;
  other.GetWindowPlacement(&restored);
  EXPECT_EQ(restored, wanted);
  Put("Partly", "- 55");
  DQLIB_GetWindowPlacement("Partly", &partly);
  EXPECT_EQ(partly, (WINDOWPLACEMENT{.rcNormalPosition = {0, 55, 0, 0}}));
}

TEST_F(WindowState, WindowIsNeverRestoredOffScreen) {
  for (const auto& [edges, on] : Cases<2>(R"(-2147483648 -2147483648 2147483647 2147483647 => 1
      1919 1079 1929 1089 => 1 ;; 5 5 5 9 => 0 ;; 2147483647 2147483647 -2147483648 -2147483648 => 0
      -9 -9 1 1 => 1 ;; 1920 0 1929 9 => 0 ;; -9 -9 0 5 => 0 ;; 0 1080 9 1089 => 0)")) {
    Put("Off", edges);
    window.MoveWindow(kPlace);
    EXPECT_EQ(DQLIB_RestoreWindowPlacement("Off", &window), on == "1") << edges;
    EXPECT_EQ(window.GetPlace() != kPlace, on == "1") << edges;
  }
  EXPECT_TRUE(DQLIB_RestoreWindowPlacement("No such section", &window));
  EXPECT_EQ(window.GetPlace(), kPlace);
}

TEST_F(WindowState, CreateStructKeepsWhatIsntStored) {
  constexpr int kMin = std::numeric_limits<int>::min();
  CREATESTRUCT create{.x = kMin, .y = 20, .cx = kMin, .cy = 40};
  const auto place = [&create] { return CRect{create.x, create.y, create.cx, create.cy}; };
  DQLIB_SetCreateStructPlacement("No such section", &create);
  EXPECT_EQ(place(), (CRect{kMin, 20, kMin, 40})) << "the system chooses, still";
  Put("Create", "5 10 25");
  DQLIB_SetCreateStructPlacement("Create", &create);
  EXPECT_EQ(place(), (CRect{5, 10, 20, 50})) << "the bottom edge stays";
}

TEST_F(WindowState, NothingHappensWithoutASectionAMadeWindowOrAnApplication) {
  Put("Set", "5 - 25");
  CWnd none;
  CREATESTRUCT create{.cx = 3};
  WINDOWPLACEMENT placement;
  for (const auto& [section, given] : Rows<const char*, CWnd*>{
           {"Set", nullptr}, {"Set", &none}, {nullptr, &window}, {"Set", &window}}) {
    const bool made = given == &window;
    if (made && section != nullptr) app.reset();
    DQLIB_SaveWindowPlacement(section, given);
    EXPECT_FALSE(DQLIB_RestoreWindowPlacement(section, given));
    DQLIB_GetWindowPlacement(section, made ? &placement : nullptr);
    DQLIB_SetCreateStructPlacement(section, made ? &create : nullptr);
  }
  EXPECT_TRUE(placement == WINDOWPLACEMENT() && create.x == 0 && create.cx == 3);
}

/// Loads the records from the bytes or stores them; the bytes afterwards.
std::string Archived(CDQWindowInfoArray& infos, CArchive::Mode mode, const std::string& from = {}) {
  struct : CMemFile {
    using CMemFile::m_bytes;
  } file;
  file.m_bytes.assign(from.begin(), from.end());
  CArchive archive(&file, mode);
  infos.Serialize(archive);
  archive.Close();
  return {file.m_bytes.begin(), file.m_bytes.end()};
}

TEST(WindowInfoArray, FormIsExactAndTornStreamsAndOtherObjectsAreRefused) {
  auto info = std::make_unique<CDQWindowInfo>(3, -2, "n");
  info->SetUserData("ab");
  info->SetWndPlacement({1, 2, SW_SHOWMAXIMIZED, {-1, 5}, {6, 7}, {8, 9, 10, 0x01020304}});
  info->SetActive(true);
  EXPECT_TRUE(info->Zoomed() && !info->Iconized());
  CDQWindowInfoArray infos, loaded;
  loaded.Add(std::make_unique<CDQWindowInfo>());
  EXPECT_TRUE(infos.Add(std::move(info)) == 0 && infos.Add(std::make_unique<CDQWindowInfo>()) == 1);
  const std::string numbers(16, '\xFF');
  const std::string bytes =
      "\2\0\xFF\xFF\1\0\xD\0CDQWindowInfo\3\0\0\0\xFE\xFF\xFF\xFF\1n\2ab\0\x2C\0\0\0\2\0\0\0"
      "\3\0\0\0\xFF\xFF\xFF\xFF\5\0\0\0\6\0\0\0\7\0\0\0\x8\0\0\0\x9\0\0\0\xA\0\0\0\4\3\2\1\1"
      "\1\x80"s +
      numbers.substr(8) + "\0\0\0\x2C\0\0\0\0\0\0\0\1\0\0\0"s + numbers + std::string(17, '\0');
  EXPECT_EQ(Archived(infos, CArchive::store), bytes);
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    EXPECT_THROW(Archived(loaded, CArchive::load, bytes.substr(0, at)), CArchiveException) << at;
  }
  // The second object is the first one again, then null.
  for (const char tag : {'\2', '\0'}) {
    const std::string other = bytes.substr(0, bytes.size() - 58) + tag + std::string(70, '\0');
    EXPECT_THROW(Archived(loaded, CArchive::load, other), CArchiveException);
  }
  EXPECT_EQ(loaded.GetSize(), 1);
  Archived(loaded, CArchive::load, std::string(bytes).replace(35, 1, "c"));
  EXPECT_EQ(Archived(loaded, CArchive::store), bytes) << "the length is that of a placement again";
  for (const int type : {7, 8}) loaded.Add(std::make_unique<CDQWindowInfo>(type, 0, ""));
  loaded.RemoveAt(1, 2);
  loaded.RemoveAt(0);
  EXPECT_TRUE(loaded.GetSize() == 1 && loaded[0]->GetType() == 8);
}

}  // namespace
}  // namespace dq::test
