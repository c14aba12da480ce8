// Static access to the items of a locale.

#pragma once

#include "dqlib/framework/base/c_string.h"
#include "dqlib/framework/base/object.h"
#include "dqlib/platform/locale.h"

namespace dq {

/// Items by `LocaleItem` and locale identifier. Any thread.
class CDQLocaleInfo : public CObject {
  DECLARE_DYNCREATE(CDQLocaleInfo)
  /// The item's text, possibly ""; `fallback` (null counts as "") if it can't be read.
  static CString GetInfo(DWORD item, const char* fallback, DWORD locale);

  /// The first byte of the text, 0 if it is empty.
  static char GetInfoChar(DWORD item, const char* fallback, DWORD locale);

  /// The number at the start of the text, so "3;0" is 3; `fallback` if the item can't be read.
  static int GetInfoInt(DWORD item, int fallback, DWORD locale);

  /// The user's date pattern `item` (`LOCALE_SSHORTDATE` or `LOCALE_SLONGDATE`), with a blank and
  /// the time pattern behind it if `with_time`.
  static CString GetDateFormat(DWORD item, bool with_time);

  /// The user's time pattern.
  static CString GetTimeFormat();
};

}  // namespace dq
