#include <gtest/gtest.h>
#include <vector>

#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/tool_bar.h"
#include "tests/support/recording_observer.h"

namespace dq {
namespace {

using enum WindowChange;
constexpr CRect kWidths{1, 1, 1, 1};

/// A frame with the windows 1 and 2, and 3 below 1.
struct Tree {
  Tree() {
    frame.CreateWnd({.class_name = "Frame", .place = {0, 0, 100, 100}});
    first.CreateWnd({.class_name = "Test", .place = {0, 0, 10, 10}, .parent = &frame, .id = 1});
    second.CreateWnd({.class_name = "Test", .parent = &frame, .id = 2});
    inner.CreateWnd({.class_name = "Test", .parent = &first, .id = 3});
    inner.SetFocus();
  }
  ~Tree() { frame.DestroyWindow(); }

  CFrameWnd frame;
  CWnd first;
  CWnd second;
  CWnd inner;
  CWnd other;
  CMenu menu;
};

TEST(WindowObserver, IsToldOfEveryChangeInTheOrderOfTheChanges) {
  const struct {
    void (*act)(Tree&);
    CWnd Tree::*window;
    std::vector<WindowChange> told;
  } rows[] = {
      {[](Tree& t) { t.other.CreateWnd("Test"); }, &Tree::other, {kCreated}},
      {[](Tree& t) { t.frame.DestroyWindow(); }, &Tree::inner, {kDestroyed}},
      {[](Tree& t) { t.other.SubclassDlgItem(1, &t.frame); }, &Tree::other, {kReplaced}},
      {[](Tree& t) { t.first.SetWindowText("x"); }, &Tree::first, {kText}},
      {[](Tree& t) { t.first.MoveWindow(0, 0, 10, 10, false); }, &Tree::first, {}},
      {[](Tree& t) { t.first.MoveWindow(1, 0, 12, 10); }, &Tree::first, {kRectangle, kInvalidated}},
      {[](Tree& t) { t.first.SetFrameWidths(kWidths); }, &Tree::first, {kRectangle}},
      {[](Tree& t) { t.first.ShowWindow(SW_SHOWMAXIMIZED); }, &Tree::first, {kRectangle}},
      {[](Tree& t) { t.first.ShowWindow(SW_HIDE); }, &Tree::inner, {kFocus}},
      {[](Tree& t) { t.inner.ShowWindow(SW_HIDE); }, &Tree::inner, {kShown, kFocus}},
      {[](Tree& t) { t.inner.EnableWindow(false); }, &Tree::inner, {kEnabled, kFocus}},
      {[](Tree& t) { t.inner.EnableWindow(); }, &Tree::inner, {}},
      {[](Tree& t) { t.second.SetFocus(); }, &Tree::inner, {kFocus}},
      {[](Tree& t) { t.second.SetFocus(); }, &Tree::second, {kFocus}},
      {[](Tree& t) { t.first.Invalidate(); }, &Tree::first, {kInvalidated}},
      {[](Tree& t) { t.first.SetWindowOrder(&t.second); }, &Tree::first, {kOrder}},
      {[](Tree& t) { t.inner.SetParent(&t.second); }, &Tree::inner, {kOrder}},
      {[](Tree& t) { t.first.SetMenu(&t.menu); }, &Tree::first, {kMenu}},
      {[](Tree& t) { t.first.SetActiveWindow(); }, &Tree::first, {kActive}},
  };
  for (const auto& row : rows) {
    Tree tree;
    testing::RecordingObserver observer;
    row.act(tree);
    EXPECT_EQ(observer.Take(tree.*row.window), row.told) << &row - rows;
  }
  Tree tree;
  testing::RecordingObserver observer;
  for (int twice = 0; twice < 2; ++twice) tree.frame.SetActiveView(&tree.first);
  tree.frame.SetMessageText("ready");
  EXPECT_EQ(observer.Take(tree.frame), (std::vector{kActive, kContent}));
  CMDIFrameWnd frame;
  ASSERT_TRUE(frame.Create("Frame", "", {}));
  CMDIChildWnd children[2];
  for (CMDIChildWnd& child : children) ASSERT_TRUE(child.Create("Child", "", {}, &frame));
  observer.changes.clear();
  for (int twice = 0; twice < 2; ++twice) children[0].MDIActivate();
  EXPECT_EQ(observer.Take(frame), std::vector{kActive});
}

TEST(WindowObserver, IsToldNothingOfWhatIsNoWindow) {
  Tree tree;
  testing::RecordingObserver observer;
  CWnd window;
  window.SetWindowText("x");
  window.MoveWindow(1, 2, 3, 4);
  window.ShowWindow(SW_SHOW);
  window.EnableWindow(false);
  window.Invalidate();
  CToolBar bar;
  bar.SetPictureSize({4, 4});
  CFrameWnd frame;
  frame.SetActiveView(&tree.first);
  EXPECT_TRUE(observer.changes.empty());
}

}  // namespace
}  // namespace dq
