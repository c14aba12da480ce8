#include "dqlib/core/locale_info.h"

#include "dqlib/core/dq_string.h"
#include "dqlib/platform/platform.h"

namespace dq {

IMPLEMENT_DYNCREATE(CDQLocaleInfo, CObject)

CString CDQLocaleInfo::GetInfo(DWORD item, const char* fallback, DWORD locale) {
  const auto text = platform::Current().locale->Item(item, locale);
  return text ? CString(*text) : CString(fallback);
}

char CDQLocaleInfo::GetInfoChar(DWORD item, const char* fallback, DWORD locale) {
  return GetInfo(item, fallback, locale).GetAt(0);
}

int CDQLocaleInfo::GetInfoInt(DWORD item, int fallback, DWORD locale) {
  const auto text = platform::Current().locale->Item(item, locale);
  return text ? CDQString(CString(*text)).Int() : fallback;
}

CString CDQLocaleInfo::GetDateFormat(DWORD item, bool with_time) {
  const CString date = GetInfo(item, "", LOCALE_USER_DEFAULT);
  return with_time ? date + ' ' + GetTimeFormat() : date;
}

CString CDQLocaleInfo::GetTimeFormat() {
  return GetInfo(LOCALE_STIMEFORMAT, "", LOCALE_USER_DEFAULT);
}

}  // namespace dq
