// The machine and the user.

#pragma once

#include "dqlib/framework/base/c_string.h"

namespace dq {

/// Facts about the machine and the user.
class CDQSystemInfo {
 public:
  virtual ~CDQSystemInfo();

  /// True: the platform has users, rights and network shares as the NT family has.
  static bool IsWindowsNT();

  /// The machine's name with two backslashes before it, as names of shares begin with.
  static CString GetComputerName();
};

}  // namespace dq
