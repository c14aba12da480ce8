// A control that only shows a text.

#pragma once

#include "dqlib/framework/controls/control.h"

namespace dq {

/// A label. Window class "Static".
class CStatic : public Control {
  DECLARE_DYNAMIC(CStatic)
  void Describe(platform::DialogControl& control) const override;
  bool IsTabStop() const override { return false; }

 protected:
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
};

}  // namespace dq
