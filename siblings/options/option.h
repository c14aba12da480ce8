// One option of an options file.

#pragma once

#include <cstdint>
#include <string>

#include "dqlib/framework/base/c_string.h"
#include "siblings/options/options_file.h"

namespace dq {

class CDQOptionsServer;

/// An option of an options file. Owned by the options server; valid until its file is removed.
/// Another reading of the file changes it in place, or drops it if the file has it no longer.
class CDQOption {
 public:
  CDQOption(CDQOptionsServer& server, OptionDefinition definition, CString file);
  CDQOption(const CDQOption&) = delete;
  CDQOption& operator=(const CDQOption&) = delete;
  virtual ~CDQOption();

  int GetID() const { return m_definition.id; }
  OptionKind GetKind() const { return m_definition.kind; }
  /// The name by which programs look it up.
  const CString& GetName() const { return m_strName; }
  /// The label that dialogs show.
  const CString& GetShortName() const { return m_strShortName; }
  /// Whether it has a value of its own for each platform.
  bool IsPerPlatform() const { return !m_definition.platform_fallbacks.empty(); }
  /// What the file says.
  const OptionDefinition& GetDefinition() const { return m_definition; }
  /// The file, as it was named to the server.
  const CString& GetFile() const { return m_strFile; }

  /// The current value for the platform in force, as the server's operations of the same names.
  bool GetBool() const;
  int GetInt() const;
  CString GetString() const;

 private:
  friend class CDQOptionsServer;
  /// Takes over what a new reading of the file says.
  void SetDefinition(OptionDefinition definition);

  /// A number that was read, and what it holds for.
  struct Reading {
    /// The registry's; 0 for no reading.
    std::uint64_t stamp = 0;
    DBMS platform = DBMS_NONE;
    std::string root;
    int value = 0;
  };

  CDQOptionsServer& m_server;
  OptionDefinition m_definition;
  CString m_strName;
  CString m_strShortName;
  CString m_strFile;
  mutable Reading m_lastReading;
};

/// A text option by its id, to be read at once.
class CDQStringOption {
 public:
  explicit CDQStringOption(int id) : m_nID(id) {}

  /// Reads the current value. False if there is no such option or it holds no value.
  bool Load();
  const CString& GetString() const { return m_strValue; }
  /// The value as a colour ("rrggbb" in hexadecimal); `fallback`, black by itself, if it is none.
  COLORREF GetColorRef(COLORREF fallback = 0) const;

 private:
  int m_nID;
  CString m_strValue;
};

}  // namespace dq
