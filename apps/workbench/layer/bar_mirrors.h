// Tool bars and status bars.

#pragma once

#include <vector>

#include "apps/workbench/layer/mirror.h"

class wxDC;

namespace dq {
class CStatusBar;
class CToolBar;
}  // namespace dq

namespace workbench {

/// Where what a person drags of a window would come to lie, on the screen: a bar, or the bars of a
/// splitter.
std::vector<dq::CRect> DraggedPlaces(const dq::CWnd& window);

/// A tool bar: buttons where the library has them, with the host's pictures.
class ToolBarMirror : public Mirror {
 public:
  using Mirror::Mirror;
  wxWindow* Focusable() override { return nullptr; }
  void Trace(TraceLine& line) const override;

 protected:
  wxWindow* DoMake(wxWindow* parent) override;
  void ShowContent(const Changes& changes) override;

 private:
  dq::CToolBar* bar() const;
  int ButtonAt(const wxPoint& at) const;
  void OnPaint();
  void DrawGrips(wxDC& context);
  void OnPointer(int button);
  void OnRelease(int button);

  /// The one under the pointer, and the one held down; -1 for none.
  int pointed_ = -1;
  int held_ = -1;
};

/// A status bar.
class StatusBarMirror : public Mirror {
 public:
  using Mirror::Mirror;
  wxWindow* Focusable() override { return nullptr; }

 protected:
  wxWindow* DoMake(wxWindow* parent) override;
  void ShowContent(const Changes& changes) override;

 private:
  void OnPaint();
};

}  // namespace workbench
