// Windows without a control of the toolkit's, and labels.

#pragma once

#include <wx/bitmap.h>

#include "apps/workbench/layer/mirror.h"

namespace workbench {

/// A window that others may lie in: a page of a dialog, a view, the place of child frames, and any
/// of a class that the layer doesn't know. It gets the mouse and the keys as messages, draws itself
/// on a picture, which is shown, and may have scroll bars; all that within `Inside`.
class PlainMirror : public Mirror {
 public:
  using Mirror::Mirror;
  wxWindow* Inside() override { return native(); }
  bool IsControl() const override { return false; }
  bool Serves(const dq::CWnd& window) const override;
  void Apply(const Changes& changes) override;

 protected:
  wxWindow* DoMake(wxWindow* parent) override;
  void ShowContent(const Changes& changes) override;

 private:
  void ShowBar(dq::ScrollBar bar);
  void OnScroll(wxScrollWinEvent& event);
  /// As an act: the window draws what is to be drawn.
  void Paint(dq::CWnd& window);

  bool has_bars_ = false;
  bool paints_ = false;
  wxBitmap picture_;
};

/// How much of a window its scroll bars take, in pixels at 96 dots to the inch.
dq::CRect ScrollBarWidths(const dq::CWnd& window);

/// A label.
class LabelMirror : public Mirror {
 public:
  using Mirror::Mirror;
  wxWindow* Focusable() override { return nullptr; }

 protected:
  wxWindow* DoMake(wxWindow* parent) override;
  void ShowText() override;
};

/// The icon of a message box: a label whose text names it.
class IconMirror : public Mirror {
 public:
  using Mirror::Mirror;
  wxWindow* Focusable() override { return nullptr; }

 protected:
  wxWindow* DoMake(wxWindow* parent) override;
};

}  // namespace workbench
