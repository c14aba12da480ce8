// The system's error numbers and their texts.

#pragma once

#include <optional>
#include <string>

#include "dqlib/platform/types.h"

namespace dq::platform {

/// Access to the system's error numbers. Any thread.
class SystemErrors {
 public:
  SystemErrors() = default;
  SystemErrors(const SystemErrors&) = delete;
  SystemErrors& operator=(const SystemErrors&) = delete;
  virtual ~SystemErrors();

  /// The number of the calling thread's last failed system call.
  virtual DWORD LastError() = 0;

  /// The system's own text for the number with CR LF behind it, as callers expect it; no value for
  /// a number the system has no description for.
  virtual std::optional<std::string> Describe(DWORD code) = 0;
};

}  // namespace dq::platform
