// The desktop's colours, by its theme.

#pragma once

#include "dqlib/platform/color_scheme.h"

namespace workbench {

class Layer;

/// The colours of the theme, or the usual ones once the display is gone. Tells all windows when the
/// person takes another theme. The layer outlives it.
class DesktopColors : public dq::platform::ColorScheme {
 public:
  explicit DesktopColors(Layer& layer);
  ~DesktopColors() override;

  dq::COLORREF Color(int index) override;

 private:
  Layer& layer_;
};

}  // namespace workbench
