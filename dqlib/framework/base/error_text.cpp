#include "dqlib/framework/base/error_text.h"

#include "dqlib/platform/platform.h"

namespace dq::detail {

std::string ErrorText(const platform::Error& error) {
  if (error.kind == platform::ErrorKind::kNotFound && error.code == 0) return "not found";
  // The system says that something is unavailable for a while.
  if (error.kind == platform::ErrorKind::kBusy) return "in use by another program";
  std::string text = platform::Current().system_errors->Describe(error.code).value_or("");
  text.resize(text.find_last_not_of("\r\n") + 1);
  return text.empty() ? "error " + std::to_string(error.code) : text;
}

}  // namespace dq::detail
