#include "dqlib/workspace/window_state.h"

#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/win_app.h"
#include "tests/support/own_settings.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

constexpr int kMin = std::numeric_limits<int>::min();
constexpr int kMax = std::numeric_limits<int>::max();
constexpr CRect kPlace{100, 120, 500, 420};

struct WindowState : ::testing::Test {
  WindowState() { window.CreateWnd({.class_name = "Main", .place = kPlace}); }

  void Put(const char* section, const std::map<std::string, int>& values) {
    for (const auto& [name, value] : values) {
      app.WriteProfileInt(section, ("wp." + name).c_str(), value);
    }
  }

  CWinApp app{"window state"};
  CWnd window;
};

TEST_F(WindowState, PlacementComesBackFromTenValues) {
  const WINDOWPLACEMENT wanted{.flags = 2,
                               .showCmd = SW_SHOWMAXIMIZED,
                               .ptMinPosition = {-5, -6},
                               .ptMaxPosition = {7, 8},
                               .rcNormalPosition = {-10, 20, 300, 400}};
  ASSERT_TRUE(window.SetWindowPlacement(&wanted));
  DQLIB_SaveWindowPlacement("Main", &window);
  std::string stored;
  for (const char* entry :
       {"showCmd", "flags", "ptMinPosition.x", "ptMinPosition.y", "ptMaxPosition.x",
        "ptMaxPosition.y", "left", "top", "right", "bottom"}) {
    const UINT value = app.GetProfileInt("Main", (std::string("wp.") + entry).c_str(), 999);
    stored += std::to_string(static_cast<int>(value)) + ' ';
  }
  EXPECT_EQ(stored, "3 2 -5 -6 7 8 -10 20 300 400 ");
  CWnd other;
  other.CreateWnd({.class_name = "Main", .place = kPlace});
  EXPECT_TRUE(DQLIB_RestoreWindowPlacement("Main", &other));
  WINDOWPLACEMENT restored;
  other.GetWindowPlacement(&restored);
  EXPECT_EQ(restored, wanted);
  WINDOWPLACEMENT partly;
  Put("Partly", {{"top", 55}});
  DQLIB_GetWindowPlacement("Partly", &partly);
  WINDOWPLACEMENT expected;
  expected.rcNormalPosition.top = 55;
  EXPECT_EQ(partly, expected);
}

TEST_F(WindowState, WindowIsNeverRestoredOffScreen) {
  const CSize screen = GetScreenSize();
  const test::Rows<CRect, bool> rows = {
      {{screen.cx, 0, screen.cx + 9, 9}, false},
      {{screen.cx - 1, screen.cy - 1, screen.cx + 9, screen.cy + 9}, true},
      {{-9, -9, 0, 5}, false},
      {{-9, -9, 1, 1}, true},
      {{5, 5, 5, 9}, false},
      {{kMax, kMax, kMin, kMin}, false},
      {{kMin, kMin, kMax, kMax}, true}};
  for (const auto& [stored, restored] : rows) {
    window.MoveWindow(kPlace);
    Put("Off", {{"left", stored.left},
                {"right", stored.right},
                {"top", stored.top},
                {"bottom", stored.bottom}});
    EXPECT_EQ(DQLIB_RestoreWindowPlacement("Off", &window), restored) << stored.left;
    EXPECT_EQ(window.GetPlace() == kPlace, !restored) << stored.left;
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
  CWnd window;
  window.CreateWnd({.class_name = "Main", .place = kPlace});
  CREATESTRUCT create{.x = 1, .y = 2, .cx = 3, .cy = 4};
  WINDOWPLACEMENT placement;
  DQLIB_SaveWindowPlacement("Main", &window);
  DQLIB_GetWindowPlacement("Main", &placement);
  DQLIB_SetCreateStructPlacement("Main", &create);
  EXPECT_EQ(placement, WINDOWPLACEMENT());
  EXPECT_EQ(create.cx, 3);
  EXPECT_FALSE(DQLIB_RestoreWindowPlacement("Main", &window));
}

}  // namespace
}  // namespace dq
