#include "dqlib/framework/windows/message_box.h"

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/platform/platform.h"

namespace dq {

int AfxMessageBox(const char* text, UINT type, UINT help_id) {
  return platform::Current().prompts->Show(text == nullptr ? "" : text, type, help_id);
}

int AfxMessageBox(UINT id, UINT type, UINT help_id) {
  return platform::Current().prompts->Show(AfxFindString(id).value_or(""), type,
                                           help_id == kNoHelp ? id : help_id);
}

}  // namespace dq
