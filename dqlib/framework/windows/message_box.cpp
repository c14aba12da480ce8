#include "dqlib/framework/windows/message_box.h"

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/base/text.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

using detail::OrEmpty;

int Show(std::string_view caption, std::string_view text, UINT type, UINT help_id) {
  return platform::Current().prompts->Show(caption, text, type, help_id);
}

}  // namespace

int AfxMessageBox(const char* text, UINT type, UINT help_id) {
  return Show(AfxGetAppName(), OrEmpty(text), type, help_id);
}

int AfxMessageBoxWithCaption(const char* text, const char* caption, UINT type) {
  return Show(OrEmpty(caption), OrEmpty(text), type, 0);
}

int AfxMessageBox(UINT id, UINT type, UINT help_id) {
  return Show(AfxGetAppName(), AfxFindString(id).value_or(""), type,
              help_id == kNoHelp ? id : help_id);
}

}  // namespace dq
