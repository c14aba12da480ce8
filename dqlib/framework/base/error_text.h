// Errors of the system in words.

#pragma once

#include <string>

#include "dqlib/platform/error.h"

namespace dq::detail {

/// The system's own text for the error without a line end; "in use by another program" where a lock
/// was waited for in vain or a file is held, for which the system has worse ones; for one that it
/// has no text for "not found", if the error says no more than that, or "error" and its number.
std::string ErrorText(const platform::Error& error);

}  // namespace dq::detail
