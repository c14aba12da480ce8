#include "dqlib/dbvocab/identifier_name.h"

#include <string_view>
#include <utility>

#include "dqlib/dbvocab/version_string.h"
#include "dqlib/framework/base/text.h"

namespace dq {
namespace {

constexpr double kLastVersionWithQuotes = 6.5;

bool IsWrapped(std::string_view text, char first, char last) {
  return !text.empty() && text.front() == first && text.back() == last;
}

}  // namespace

bool IsWrappedWithChars(const char* text, char first, char last) {
  return IsWrapped(detail::OrEmpty(text), first, last);
}

CString RemoveWrappingChar(const char* text, char first, char last) {
  std::string_view inner = detail::OrEmpty(text);
  if (IsWrapped(inner, first, last)) {
    inner.remove_prefix(1);
    if (!inner.empty()) inner.remove_suffix(1);
  }
  return inner;
}

void GetIdentifierQuoteChars(const CDQDBVersionString& version, DBMS platform, char& open,
                             char& close) {
  switch (platform) {
    case DBMS_SQLSERVER:
      if (!(version <= CDQDBVersionString(kLastVersionWithQuotes, DBMS_SQLSERVER))) {
        open = '[';
        close = ']';
        return;
      }
      [[fallthrough]];
    case DBMS_SYBASE:
    case DBMS_DB2:
    case DBMS_ORACLE:
    case DBMS_DB2OS390:
      open = close = '"';
      return;
    case DBMS_NONE:
      return;
  }
}

CString ParseDelimString(CString& text, char delimiter) {
  const int at = text.Find(delimiter);
  if (at < 0) return {};
  CString head = text.Left(at);
  text = text.Mid(at + 1);
  return head;
}

bool GetThreePartName(const CString& name, CString& first, CString& second, CString& third) {
  CString rest = name;
  CString head = ParseDelimString(rest, '.');
  CString middle = ParseDelimString(rest, '.');
  if (head.IsEmpty() || middle.IsEmpty() || rest.IsEmpty()) return false;
  first = std::move(head);
  second = std::move(middle);
  third = std::move(rest);
  return true;
}

bool GetTwoPartName(const CString& name, CString& first, CString& second) {
  CString rest = name;
  CString head = ParseDelimString(rest, '.');
  if (rest.Find('.') >= 0) return false;
  const bool is_whole = !head.IsEmpty() && !rest.IsEmpty();
  first = std::move(head);
  second = std::move(rest);
  return is_whole;
}

}  // namespace dq
