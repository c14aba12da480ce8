// The window layer of the workbench, by what every layer keeps to. Needs a display.

#include "apps/workbench/layer/layer.h"
#include "tests/support/layer_conformance.h"

namespace dq::test {
namespace {

TEST(WorkbenchLayer, Conforms) {
  workbench::Layer layer({});
  CheckLayer(layer);
}

TEST(WorkbenchLayer, ComesAfterWindowsAndGoesBeforeThem) {
  CFrameWnd frame;
  frame.Create("F", "Frame", {50, 60, 250, 160});
  ControlDialog dialog;
  Spread(dialog);
  // One after the other, for there is one toolkit in a process.
  for (int count = 0; count < 2; ++count) {
    workbench::Layer layer({});
    dialog.ShowWindow(SW_SHOW);
    frame.SetWindowText("Shown");
    LetLayerWork();
    frame.SetWindowText("Shown again");
  }
  EXPECT_TRUE(dialog.IsWindowVisible() && frame.GetWindowText() == "Shown again");
}

}  // namespace
}  // namespace dq::test
