// Identifiers of 128 bits, in the forms that tools write them.

#pragma once

#include <compare>
#include <concepts>

#include "dqlib/framework/base/c_string.h"

namespace dq {

struct GUID {
  DWORD Data1 = 0;
  WORD Data2 = 0;
  WORD Data3 = 0;
  BYTE Data4[8] = {};

  friend bool operator==(const GUID&, const GUID&) = default;
};

/// One identifier and its texts. Compares with another, and with a text, by the registry form.
class CDQGuid {
 public:
  CDQGuid() = default;
  explicit CDQGuid(const GUID& guid) { SetGUID(guid); }
  explicit CDQGuid(const char* text) { SetGUID(text); }

  void SetGUID(const GUID& guid);
  /// Reads the form "01234567-89AB-CDEF-0123-456789ABCDEF", in either case. Any other text, null
  /// included, leaves the value.
  void SetGUID(const char* text);
  const GUID& GetGUID() const { return m_guid; }

  /// That form, in upper case.
  CString GetODLString() const;
  /// The members as for a structure's initialiser, all in upper case: "0X01234567, 0X89AB, ...".
  CString GetStructString() const;
  /// "{" + `GetODLString()` + "}".
  CString GetRegistryString() const;
  /// The registry form; valid until the object changes.
  operator const char*() const { return m_strText; }

  template <std::convertible_to<const char*> Text>
  friend bool operator==(const CDQGuid& left, const Text& right) {
    return left.m_strText == static_cast<const char*>(right);
  }
  template <std::convertible_to<const char*> Text>
  friend std::strong_ordering operator<=>(const CDQGuid& left, const Text& right) {
    return left.m_strText <=> static_cast<const char*>(right);
  }

 private:
  GUID m_guid;
  CString m_strText{"{00000000-0000-0000-0000-000000000000}"};
};

}  // namespace dq
