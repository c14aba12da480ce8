// Puts text on the clipboard.

#pragma once

#include "dqlib/framework/base/c_string.h"
#include "dqlib/platform/clipboard.h"

namespace dq {

class CWnd;

/// Collects text and puts it on the clipboard in one go. For the user-interface thread.
class CDQClipboardWriter {
 public:
  /// `owner` may be null and must outlive the writer; `format` is a `ClipboardFormat` or another
  /// number that readers know.
  explicit CDQClipboardWriter(CWnd* owner, UINT format = CLIPBOARD_TEXT);
  virtual ~CDQClipboardWriter();

  void Write(const char* text);
  /// Replaces what is on the clipboard by what was written, with a zero behind it, and forgets it
  /// here. False, after `OnFailedToOpenClipBoard`, if someone else holds the clipboard; then it is
  /// kept.
  bool PostData();

 protected:
  /// Where a writer tells its user that the clipboard can't be had. The base does nothing.
  virtual void OnFailedToOpenClipBoard();
  /// The window that such a message belongs to, or null.
  CWnd* GetOwner() const { return m_pOwner; }

 private:
  CWnd* m_pOwner;
  UINT m_nFormat;
  CString m_strData;
};

}  // namespace dq
