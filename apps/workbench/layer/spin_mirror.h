// Spin buttons.

#pragma once

#include <wx/timer.h>

#include "apps/workbench/layer/mirror.h"

namespace workbench {

/// Two arrows above one another. The toolkit's own are as wide as a finger.
class SpinMirror : public Mirror {
 public:
  using Mirror::Mirror;
  wxWindow* Focusable() override { return nullptr; }

 protected:
  wxWindow* DoMake(wxWindow* parent) override;

 private:
  void OnPaint();
  void Press(int step);
  void Release();
  void Step();

  /// What is held down: 1 the upper arrow, -1 the lower one, 0 none.
  int held_ = 0;
  wxTimer again_;
};

}  // namespace workbench
