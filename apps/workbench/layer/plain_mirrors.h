// Windows without a control of the toolkit's, and labels.

#pragma once

#include "apps/workbench/layer/mirror.h"

namespace workbench {

/// A window that others may lie in: a page of a dialog, a view, the place of child frames, and any
/// of a class that the layer doesn't know. It gets the mouse and the keys as messages.
class PlainMirror : public Mirror {
 public:
  using Mirror::Mirror;
  wxWindow* Inside() override { return native(); }
  bool IsControl() const override { return false; }

 protected:
  wxWindow* DoMake(wxWindow* parent) override;
};

/// A label.
class LabelMirror : public Mirror {
 public:
  using Mirror::Mirror;
  wxWindow* Focusable() override { return nullptr; }

 protected:
  wxWindow* DoMake(wxWindow* parent) override;
  void ShowText() override;
};

}  // namespace workbench
