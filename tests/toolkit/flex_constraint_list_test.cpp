#include "dqlib/toolkit/flex_constraint_list.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>

#include "dqlib/framework/windows/wnd.h"
#include "dqlib/toolkit/flex_host.h"
#include "tests/support/rows.h"
#include "tests/support/scripted_platform.h"

namespace dq {
namespace {

TEST(FlexPlace, EachEdgeMovesByItsOwnTruncatedShareOfTheGrowth) {
  constexpr LONG kMax = std::numeric_limits<LONG>::max();
  constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
  const test::Rows<float, float, LONG, LONG, LONG> rows = {
      {0, 1, 10, 7, 19},           {0.5, 0.5, 10, 12, 14}, {-0.5, 2, 3, 6, 15},
      {0.7f, 0.3f, 10, 13, 12},    {kNan, kNan, 10, 7, 9}, {1e30f, 1, kMax, kMax, kMax},
      {-1e30f, 1, 1, 7 - kMax, 10}};
  for (const auto& [first, second, growth, near, far] : rows) {
    const CRect moved = FlexPlace({7, 7, 9, 9}, {first, second}, {first, second}, {growth, growth});
    EXPECT_EQ(moved, (CRect{near, near, far, far})) << first << " " << growth;
  }
}

/// Exact: a float is a whole number of 24 bits times a power of two.
long long ExactProduct(float fraction, int growth) {
  int exponent = 0;
  const auto mantissa = static_cast<long long>(std::ldexp(std::frexp(fraction, &exponent), 24));
  return (mantissa * growth) >> (24 - exponent);
}

TEST(FlexPlace, ProductsAreExactWhereSinglePrecisionWouldRoundUp) {
  int rounded_up = 0;
  for (int parts = 1; parts <= 12; ++parts) {
    for (int part = 1; part <= parts; ++part) {
      const float fraction = static_cast<float>(part) / static_cast<float>(parts);
      for (int growth = 0; growth < 1200; ++growth) {
        const CRect moved = FlexPlace({}, {fraction, 0}, {0, fraction}, {growth, growth});
        ASSERT_EQ(moved.left, ExactProduct(fraction, growth)) << part << "/" << parts << growth;
        ASSERT_EQ(moved.bottom, moved.left);
        const volatile float single = fraction * static_cast<float>(growth);
        rounded_up += static_cast<int>(single) != moved.left;
      }
    }
  }
  EXPECT_GT(rounded_up, 200);
}

TEST(FlexGrowth, IsNeverNegative) {
  constexpr LONG kMin = std::numeric_limits<LONG>::min();
  constexpr LONG kMax = std::numeric_limits<LONG>::max();
  EXPECT_EQ(FlexGrowth({100, 50}, {101, 49}), (CSize{1, 0}));
  EXPECT_EQ(FlexGrowth({100, 50}, {0, 50}), (CSize{0, 0}));
  EXPECT_EQ(FlexGrowth({kMin, kMax}, {kMax, kMin}), (CSize{kMax, 0}));
}

struct Control : CWnd {
  LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override {
    if (message == CB_GETDROPPEDCONTROLRECT)
      reinterpret_cast<CRect*>(lparam)->SetRect(0, 5, 10, 45);
    if (message == WM_MOVE && on_move) on_move();
    return CWnd::WindowProc(message, wparam, lparam);
  }
  std::function<void()> on_move;
};

/// A host of 100 by 100 at 1000, 1000 with controls 1 to 3, the last of which has a child.
struct Host : detail::FlexHost<CWnd> {
  Host() {
    CreateWnd({.class_name = "Host", .place = {1000, 1000, 1100, 1100}});
    for (int i = 0; i < 3; ++i) {
      controls[i].CreateWnd({.class_name = i == 1 ? "ComboBox" : "combobox",
                             .place = {10, 10, 20, 20},
                             .parent = this,
                             .id = i + 1});
    }
    inner.CreateWnd({.class_name = "Edit", .place = {0, 0, 5, 5}, .parent = &controls[2]});
  }
  ~Host() override { DestroyWindow(); }

  void Add(UINT id) { AddFlexConstraint(id, NSFlexShiftRight, NSFlexExpandDown); }
  void Resize(int cx, int cy) { MoveWindow(1000, 1000, cx, cy, false); }
  using FlexHost::InitFlex;

  Control controls[3];
  Control inner;
};

constexpr CRect kDesign{10, 10, 20, 20};
constexpr CRect kMoved{40, 10, 50, 70};

TEST(FlexConstraintList, NothingMovesBeforeTheDesignSizeIsSetAndAllControlsAreThere) {
  Host host;
  for (const UINT id : {1u, 9u, 2u}) host.Add(id);
  host.Resize(130, 150);
  host.Resize(100, 100);
  host.InitFlex();
  host.Resize(130, 150);
  EXPECT_EQ(host.controls[0].GetPlace(), kDesign);
  Control late;
  late.CreateWnd({.class_name = "Edit", .place = {0, 0, 1, 1}, .parent = &host, .id = 9});
  host.Resize(131, 150);
  host.Resize(130, 150);
  EXPECT_EQ(host.controls[0].GetPlace(), kMoved);
  EXPECT_EQ(late.GetPlace(), (CRect{30, 0, 31, 51}));
  host.Add(3);
  late.DestroyWindow();
  host.Resize(50, 50);
  EXPECT_EQ(host.controls[1].GetPlace(), kDesign);
  host.Resize(130, 150);
  EXPECT_EQ(host.controls[1].GetPlace(), kMoved);
  EXPECT_EQ(host.controls[2].GetPlace(), kDesign) << "added after the rectangles were taken";
}

TEST(FlexConstraintList, ControlsAndTheirChildrenAreErasedAndMinimisedHostsLeftAlone) {
  Host host;
  host.Add(3);
  host.InitFlex();
  bool erase = false;
  host.SendMessage(WM_SIZE, SIZE_MINIMIZED, MakeLParam(130, 150));
  EXPECT_EQ(host.controls[2].GetPlace(), kDesign);
  host.SendMessage(WM_SIZE, SIZE_RESTORED, MakeLParam(130, 150));
  EXPECT_EQ(host.controls[2].GetPlace(), kMoved);
  for (const CWnd* window : {&host.controls[2], &host.inner}) {
    EXPECT_EQ(window->GetUpdateRect(&erase), window->GetClientRect());
    EXPECT_TRUE(erase);
  }
  EXPECT_TRUE(host.controls[0].GetUpdateRect().IsRectEmpty());
  EXPECT_EQ(host.GetUpdateRect(&erase), host.GetClientRect());
  MINMAXINFO info{};
  host.SendMessage(WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
  EXPECT_EQ(info.ptMinTrackSize, (CPoint{100, 100}));
}

TEST(FlexConstraintList, ComboBoxesTakeTheirListsAlongOnOldPlatforms) {
  testing::ScriptedPlatform platform;
  for (const DWORD major : {3u, 4u}) {
    platform.facts.version = platform::SystemVersion{.major = major};
    Host host;
    host.Add(1);
    host.Add(2);
    host.InitFlex();
    host.Resize(130, 150);
    EXPECT_EQ(host.controls[0].GetPlace(), kMoved) << "the class's case counts";
    EXPECT_EQ(host.controls[1].GetPlace().bottom, kMoved.bottom + (major == 3 ? 40 : 0));
  }
}

TEST(FlexConstraintList, HandlersMayEndControlsAndTheHostInAPass) {
  for (const bool whole : {false, true}) {
    Host host;
    for (const UINT id : {1u, 2u, 3u}) host.Add(id);
    host.InitFlex();
    host.controls[0].on_move = [&host, whole] {
      if (whole) host.DestroyWindow();
      for (Control* control : {&host.controls[0], &host.controls[1]}) control->DestroyWindow();
    };
    host.Resize(130, 150);
    EXPECT_EQ(host.GetSafeHwnd() == nullptr, whole);
    EXPECT_EQ(host.controls[2].GetPlace(), whole ? kDesign : kMoved);
  }
}

}  // namespace
}  // namespace dq
