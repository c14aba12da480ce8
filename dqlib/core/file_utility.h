// The library's bag of file operations.

#pragma once

#include <memory>

#include "dqlib/core/dq_string.h"
#include "dqlib/framework/base/file.h"
#include "dqlib/framework/base/string_collections.h"

namespace dq {

/// A failed file operation with its path.
class CDQFileException : public CFileException {
 public:
  explicit CDQFileException(int cause = none, LONG os_error = -1, const char* file_name = nullptr)
      : CFileException(cause, os_error, file_name) {}
};

/// Static operations on files and paths; an object cuts one path into its parts. Both separators
/// cut paths, and added ones are of the path's form (see `platform/paths.h`). Null texts count as
/// "".
class CDQFileUtility {
 public:
  CDQFileUtility() = default;
  /// Cuts the path.
  explicit CDQFileUtility(const char* path);
  void SetFullPath(const char* path);
  const CString& GetDrive() const { return m_strDrive; }
  const CString& GetDirectory() const { return m_strDirectory; }
  const CString& GetFileName() const { return m_strFileName; }
  const CString& GetExtension() const { return m_strExtension; }
  const CString& GetFullPath() const { return m_strFullPath; }

  /// Bytes of a file; 0 for one that can't be opened.
  static long long GetFileSize(const char* path);

  /// The full path of a file that the platform's search finds, or "".
  static CString SearchPath(const char* name);
  static CString GetFullPath(const char* name);
  /// With a separator at its end.
  static CString GetTempDirectory();

  /// The path as other machines of the network know it. One without a colon comes back as it is; a
  /// local one with a drive gets the form of the drive's administrative share; one without a drive,
  /// in which a colon means nothing, comes back too.
  static CString GetUniversalName(const char* path);

  /// Name for a temporary file in `directory`, or in the platform's if that is null or empty.
  /// Without an extension (null or empty) the platform makes the empty file, and a null prefix
  /// counts as "TMP". With one only the name is made, with a random number, of a file that doesn't
  /// exist, and an empty prefix counts as "TMP" too. "" if the platform refuses.
  static CString CreateTempFile(const char* prefix, const char* directory = nullptr,
                                const char* extension = nullptr);

  /// Makes a directory with all that lead to it. True if it exists then, or is nothing but a drive.
  /// Asks first if told to, and a no is false; `created`, if given, gets the full path of each one
  /// made, outermost first. One that can't be made is told to the user.
  static bool CreateDirectory(const char* path, bool ask, CStringArray* created = nullptr);

  /// Makes an empty file, or empties the one that is there.
  static bool CreateFile(const char* path);
  /// The same with writers kept out; a failure is told to the user.
  static bool EmptyFile(const char* path);

  static CString MakePath(const char* drive, const char* directory, const char* file,
                          const char* extension);

  /// Replaces the file's contents by the text. Returns its length; 0 for a failure, which is told
  /// to the user.
  static int WriteFile(const char* path, CString& text);
  /// Writes `length` bytes (all up to the zero if below 0): in place of the contents, or behind
  /// them if `replace` is false; then CR LF if `addLineEnd`. Returns the length without the line
  /// end, so 0 for an empty text too. Contents are replaced in one step, and a failure leaves the
  /// former ones; in a directory that takes no new file they are written over, and put back after a
  /// failure. A file that others hold open for writing can't be opened.
  static int WriteFile(const char* path, const char* text, int length, bool replace,
                       bool addLineEnd);

  /// The whole file. False, and "", if it can't be read.
  static bool ReadFile(CString& text, const char* path);

  /// Adds the names of the entries that match the pattern and have at least one of the attribute
  /// bits at the list's tail, without "." and "..". True if the search found anything, even if no
  /// name was added; false for an empty pattern.
  static bool ListFiles(const char* pattern, CStringList& list, DWORD attributes);

  /// What to tell the user about a failed file operation, with the path in it: the cause, if it is
  /// one that has a text, else the string with the id. `saving` says what was tried.
  static CString GetExceptionErrorMessage(const char* path, const CException* exception,
                                          bool saving, UINT stringId);

  /// Shortens a path in place for display in `length` characters: it stays if it fits, else it is
  /// the root, "\...\" and as many of the last directories as fit. If not even the file name fits,
  /// it is the file name all the same if `atLeastName`, else "".
  static void AbbreviateName(char* path, int length, int atLeastName);

  /// The path relative to a base directory, in lower case: "." and what follows the base; or ".."
  /// for the base's drive and what follows that; or the path itself. Callers store such paths, so
  /// ".." is the drive and not a parent directory. The base is looked for anywhere in the path. In
  /// the POSIX form nothing is lower-cased, and comparison is exact.
  static CString AbsolutePathToRelative(const char* base, const char* path);
  /// The opposite.
  static CString RelativePathToAbsolute(const char* base, const char* path);

  /// Enters a file type, so that the desktop opens files with the extension in this program. False
  /// for a type without an id, and at the first write that fails; what was written before stays.
  static bool RegisterFileType(const char* typeId, const char* typeName, const char* extension);

  /// Deletes a directory, with all that is in it if `recursive`; read-only files too. A link to a
  /// directory is deleted, and what it leads to stays. False if the directory is still there.
  static bool DeleteDirectory(const CString& path, bool recursive);
  /// Deletes the matching files that have at least one of the attribute bits, read-only ones too.
  /// False if one could not be deleted, while the others are, or if they could not be searched for.
  static bool DeleteFiles(const CString& pattern, DWORD attributes);

  /// Opens a file, or returns null, and tells the user if asked to.
  static std::unique_ptr<CFile> OpenFile(const char* path, UINT flags, bool showMessage);

 private:
  CString m_strDrive;
  CString m_strDirectory;
  CString m_strFileName;
  CString m_strExtension;
  CString m_strFullPath;
};

/// True when the file's status can be read.
bool DQLIB_FileExists(const char* path);
/// Its read-only attribute.
bool DQLIB_FileReadOnly(const char* path);

/// The module's path before its last, or before its first, separator; without one the output stays.
void DQLIB_GetModuleDirectory(HINSTANCE module, CString& directory);
void DQLIB_GetModuleDriveSpec(HINSTANCE module, CString& drive);

/// Index of the last character of the first run of line ends (line feed, carriage return, form
/// feed, character 26); without one that of the text's last character, so -1 for an empty text. The
/// console programs have a scanner of the same name with other results.
int GetEndOfLinePosition(const char* text);

}  // namespace dq
