#include "apps/dqtool/error_text.h"

#include "dqlib/platform/platform.h"

namespace dqtool {

std::string ErrorText(const dq::platform::Error& error) {
  using dq::platform::ErrorKind;
  if (error.kind == ErrorKind::kNotFound && error.code == 0) return "not found";
  std::string text = dq::platform::Current().system_errors->Describe(error.code).value_or("");
  text.resize(text.find_last_not_of("\r\n") + 1);
  return text.empty() ? "error " + std::to_string(error.code) : text;
}

}  // namespace dqtool
