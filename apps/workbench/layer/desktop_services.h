// What the platform asks of a desktop: questions to the person, the clipboard, and its colours.

#pragma once

#include <memory>

#include "apps/workbench/layer/desktop_colors.h"
#include "dqlib/platform/platform.h"

namespace workbench {

class Layer;

/// Puts the desktop's services in place of the platform's for its lifetime. The layer outlives it.
/// Once the display is gone, questions take their default answers and are told on standard error,
/// the clipboard is empty and takes nothing, and colours are the usual ones.
class DesktopServices {
 public:
  explicit DesktopServices(Layer& layer);
  DesktopServices(const DesktopServices&) = delete;
  DesktopServices& operator=(const DesktopServices&) = delete;
  ~DesktopServices();

 private:
  class DesktopPrompts;
  class DesktopClipboard;

  std::unique_ptr<DesktopPrompts> prompts_;
  std::unique_ptr<DesktopClipboard> clipboard_;
  DesktopColors colors_;
  std::unique_ptr<dq::platform::ScopedPlatform> scope_;
};

}  // namespace workbench
