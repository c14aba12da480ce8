// One option: what an options file tells of it, and its values.

#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "dqlib/dbvocab/dbms.h"
#include "dqlib/framework/base/c_string.h"

namespace dq {

enum class OptionKind { kBool, kInt, kString, kBinary, kDirectory, kColor };

/// A value in the form in which it is kept: "0" or "1", decimal digits, the text itself, bytes, a
/// path, or a colour as six hexadecimal digits rrggbb.
using OptionValue = std::string;

/// An option of an options file. Owned by the options server; valid until its file is removed.
class CDQOption {
 public:
  virtual ~CDQOption();

  int GetID() const { return m_nID; }
  OptionKind GetKind() const { return m_eKind; }
  /// The name by which programs look it up.
  const CString& GetName() const { return m_strName; }
  /// The label that dialogs show.
  const CString& GetShortName() const { return m_strShortName; }

  /// The current value for the platform in force; see `CDQOptionsServer`.
  bool GetBool() const;
  int GetInt() const;
  CString GetString() const;

 private:
  friend class CDQOptionsServer;

  int m_nID = 0;
  OptionKind m_eKind = OptionKind::kString;
  CString m_strName;
  CString m_strShortName;
  OptionValue m_default;
  /// Whether the option has a value of its own for each platform.
  bool m_bPerPlatform = false;
  std::map<DBMS, OptionValue> m_platformDefaults;
};

/// A text option by its id, to be read at once.
class CDQStringOption {
 public:
  explicit CDQStringOption(int id) : m_nID(id) {}

  /// Reads the current value. False if there is no such option or it holds no value.
  bool Load();
  const CString& GetString() const { return m_strValue; }
  /// The value as a colour ("rrggbb" in hexadecimal); `fallback` if it is none.
  COLORREF GetColorRef(COLORREF fallback) const;

 private:
  int m_nID;
  CString m_strValue;
};

}  // namespace dq
