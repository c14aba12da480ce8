// Facts about the machine and its user.

#pragma once

#include "dqlib/platform/types.h"

namespace dq {

/// Numbers of the system colours that pictures are mapped to.
enum SystemColor : int {
  SYSTEM_COLOR_FACE = 15,
  SYSTEM_COLOR_SHADOW = 16,
  SYSTEM_COLOR_LIGHT = 22,
};

namespace platform {

/// Facts about the machine and its user. Any thread.
class SystemFacts {
 public:
  SystemFacts() = default;
  SystemFacts(const SystemFacts&) = delete;
  SystemFacts& operator=(const SystemFacts&) = delete;
  virtual ~SystemFacts();

  /// The screen's pixels per inch, downwards; at least 1.
  virtual int VerticalPixelsPerInch() = 0;

  /// A colour of the desktop's scheme, by `SystemColor`; black for a number it doesn't know.
  virtual COLORREF Color(int index) = 0;
};

}  // namespace platform
}  // namespace dq
