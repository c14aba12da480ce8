#include "dqlib/framework/base/error_text.h"

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/platform/platform.h"
#include "dqlib/platform/seam_texts.h"

namespace dq::detail {

namespace {

/// Strings of the framework.
constexpr UINT kNotFound = 61880;
constexpr UINT kInUse = 61881;
constexpr UINT kNumber = 61882;

std::string Shown(UINT id) { return std::string(AfxFindString(id).value_or("")); }

}  // namespace

std::string ErrorText(const platform::Error& error) {
  if (error.kind == platform::ErrorKind::kNotFound && error.code == 0) return Shown(kNotFound);
  // The system says that something is unavailable for a while.
  if (error.kind == platform::ErrorKind::kBusy) return Shown(kInUse);
  std::string text = platform::Current().system_errors->Describe(error.code).value_or("");
  text.resize(text.find_last_not_of("\r\n") + 1);
  return text.empty() ? platform::Filled(Shown(kNumber), {std::to_string(error.code)}) : text;
}

}  // namespace dq::detail
