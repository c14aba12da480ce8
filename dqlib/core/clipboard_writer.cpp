#include "dqlib/core/clipboard_writer.h"

#include "dqlib/platform/platform.h"

namespace dq {

CDQClipboardWriter::CDQClipboardWriter(CWnd* owner, UINT format)
    : m_pOwner(owner), m_nFormat(format) {}

CDQClipboardWriter::~CDQClipboardWriter() = default;

void CDQClipboardWriter::Write(const char* text) { m_strData += text; }

bool CDQClipboardWriter::PostData() {
  const std::string_view with_zero(m_strData, static_cast<std::size_t>(m_strData.GetLength()) + 1);
  if (!platform::Current().clipboard->Set(m_nFormat, with_zero).ok()) {
    OnFailedToOpenClipBoard();
    return false;
  }
  m_strData.Empty();
  return true;
}

void CDQClipboardWriter::OnFailedToOpenClipBoard() {}

}  // namespace dq
