#include "dqlib/frame/output_message.h"

#include <new>
#include <utility>

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/base/trace.h"
#include "dqlib/framework/windows/win_thread.h"

namespace dq {
CDQOutputMessage::CDQOutputMessage(OutputMessageType type, const char* text, bool auto_delete)
    : m_eType(KnownOutputMessageType(type)), m_strText(text), m_bAutoDelete(auto_delete) {}

CDQOutputMessage::~CDQOutputMessage() = default;

CDQOutputMessage* CDQOutputMessage::CreateOutputMessage(OutputMessageType type, const char* text,
                                                        bool auto_delete) {
  try {
    return new CDQOutputMessage(type, text, auto_delete);
  } catch (const std::bad_alloc&) {
    // The text is read in place: there may be no memory for a copy.
    AfxTrace(AfxFindString(IDS_OUTPUT_MESSAGE_OUT_OF_MEMORY).value_or(""));
    return nullptr;
  }
}

void CDQOutputMessage::SendInfoMessage(UINT id) { SendInfoMessage(detail::LoadText(id)); }

void CDQOutputMessage::SendInfoMessage(const char* text) {
  m_strText = text;
  m_eType = OUTPUT_PROGRAM_INFO;
  Send(0);
}

void CDQOutputMessage::SendErrorMessage(UINT id, const char* target) {
  SendErrorMessage(detail::LoadText(id), target);
}

void CDQOutputMessage::SendErrorMessage(const char* text, const char* target) {
  // Either may be the text or the target that the message has.
  CString new_text(text);
  if (target != nullptr) m_strTarget = target;
  m_strText = std::move(new_text);
  m_eType = OUTPUT_PROGRAM_ERROR;
  Send(target != nullptr ? 1 : 0);
}

void CDQOutputMessage::SetType(OutputMessageType type) { m_eType = KnownOutputMessageType(type); }

void CDQOutputMessage::SetText(const char* text) { m_strText = text; }

// The receiver may delete an auto-delete message, so nothing may touch the object after the send.
void CDQOutputMessage::Send(WPARAM first) {
  if (CWnd* main_window = AfxGetMainWnd()) {
    main_window->SendMessage(DQM_ADD_OUTPUT_MESSAGE, first, reinterpret_cast<LPARAM>(this));
  }
}

}  // namespace dq
