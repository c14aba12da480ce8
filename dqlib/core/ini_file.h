// Private profile files.

#pragma once

#include "dqlib/core/dq_string.h"

namespace dq {

/// A profile file by path. Every call reads or writes the file itself, so several objects on one
/// file see each other's writes at once. Nothing reports a failure.
class CDQIniFile {
 public:
  CDQIniFile() = default;
  explicit CDQIniFile(const char* path) : m_strIniFile(path) {}

  void SetIniFile(const char* path) { m_strIniFile = path; }
  const CString& GetIniFile() const { return m_strIniFile; }

  /// Writes a value; null values and names are ignored. A value of several lines fits on one: each
  /// line feed is written as "</N/>", and carriage returns are dropped.
  void WriteKey(const char* section, const char* key, const char* value);
  void WriteKey(const char* section, const char* key, int value);

  /// Reads a value, of which at most 2,047 bytes count, with line feeds for "</N/>"; the carriage
  /// returns don't come back. `fallback` for a key that isn't there.
  void ReadKey(const char* section, const char* key, CString& value, const char* fallback);

  /// Reads the decimal digits at the start of a value, with an optional sign; 0 if there are none,
  /// `fallback` for a key that isn't there.
  void ReadIntKey(const char* section, const char* key, int& value, int fallback);

  /// Removes the section with all its keys.
  void DeleteSection(const char* section);

  /// Writes the number 0 to the key: a deletion is a reset here, because readers take an absent key
  /// for one that was never set.
  void DeleteKey(const char* section, const char* key);

  /// Add names at the tail of the list, which isn't emptied. None for a file that isn't there or is
  /// empty. That is asked of the path as it stands, while a profile file without a directory is one
  /// among the user's settings: enumerations are for files that callers name by their whole path.
  void EnumSections(CStringList& sections);
  void EnumKeys(const char* section, CStringList& keys);

  /// Adds the zero-ended names of a buffer that ends in two zeros at the tail of the list; an empty
  /// name ends it too. Nothing for null.
  static void ParseIniBuffer(const char* buffer, CStringList& names);

 private:
  CString m_strIniFile;
};

}  // namespace dq
