// What an error of the platform seam is in words.

#pragma once

#include <string>

#include "dqlib/platform/error.h"

namespace dqtool {

/// The system's text for the error, without a line end; never "".
std::string ErrorText(const dq::platform::Error& error);

}  // namespace dqtool
