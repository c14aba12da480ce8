#include "dqlib/core/guid.h"

#include <cstring>

namespace dq {
namespace {

/// Hexadecimal digits and dashes of the written form.
constexpr std::string_view kForm = "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX";

int DigitValue(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return -1;
}

}  // namespace

void CDQGuid::SetGUID(const GUID& guid) {
  m_guid = guid;
  m_strText = GetRegistryString();
}

void CDQGuid::SetGUID(const char* text) {
  const std::string_view form = text == nullptr ? "" : text;
  if (form.size() != kForm.size()) return;
  BYTE bytes[16] = {};
  int digits = 0;
  for (std::size_t i = 0; i < form.size(); ++i) {
    if (kForm[i] == '-') {
      if (form[i] != '-') return;
      continue;
    }
    const int value = DigitValue(form[i]);
    if (value < 0) return;
    bytes[digits / 2] = static_cast<BYTE>(bytes[digits / 2] << 4 | value);
    ++digits;
  }
  GUID guid;
  guid.Data1 = DWORD{bytes[0]} << 24 | DWORD{bytes[1]} << 16 | DWORD{bytes[2]} << 8 | bytes[3];
  guid.Data2 = static_cast<WORD>(bytes[4] << 8 | bytes[5]);
  guid.Data3 = static_cast<WORD>(bytes[6] << 8 | bytes[7]);
  std::memcpy(guid.Data4, bytes + 8, sizeof guid.Data4);
  SetGUID(guid);
}

CString CDQGuid::GetODLString() const {
  CString text;
  const BYTE* const d = m_guid.Data4;
  text.Format("%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X", m_guid.Data1, m_guid.Data2,
              m_guid.Data3, d[0], d[1], d[2], d[3], d[4], d[5], d[6], d[7]);
  return text;
}

CString CDQGuid::GetStructString() const {
  CString text;
  const BYTE* const d = m_guid.Data4;
  text.Format(
      "0x%08x, 0x%04x, 0x%04x, 0x%02x, 0x%02x, 0x%02x, 0x%02x, 0x%02x, 0x%02x, 0x%02x, 0x%02x",
      m_guid.Data1, m_guid.Data2, m_guid.Data3, d[0], d[1], d[2], d[3], d[4], d[5], d[6], d[7]);
  text.MakeUpper();
  return text;
}

CString CDQGuid::GetRegistryString() const {
  CString text;
  text.Format("{%s}", static_cast<const char*>(GetODLString()));
  return text;
}

}  // namespace dq
