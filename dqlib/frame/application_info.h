// Which application hosts the library.
//
//   CDQApplicationInfo::SetAppCode("Quillbase");   // the host's first act
//   CDQApplicationInfo info;
//   info.GetOptionsFile();                          // "Quill.dqo"

#pragma once

#include "dqlib/frame/version_info.h"

namespace dq {

/// The host's identity. Values are computed when they are first asked for and kept in the object,
/// except where told otherwise. The application code belongs to the whole process, so that the
/// `IsApp...` tests need no object; set it before any call that depends on it. No locks.
class CDQApplicationInfo : public CDQVersionInfo {
 public:
  CDQApplicationInfo();
  CDQApplicationInfo(const CDQApplicationInfo&) = delete;
  /// Copies the fields of this class; file and version block of the base stay what they are here.
  CDQApplicationInfo& operator=(const CDQApplicationInfo& other);
  ~CDQApplicationInfo() override;

  /// The application code: one of the texts that the `IsApp...` tests know.
  static void SetAppCode(const char* code) { AppCode() = code; }
  static const CString& GetAppCode() { return AppCode(); }

  /// The title; from string 57344 of the host's resources if none is set.
  CString GetTitle();
  void SetTitle(const char* title) { m_strTitle = title; }

  /// Path of the executable, at most 259 bytes, from the application object; of the program itself
  /// if there is none.
  CString GetExecutablePath();

  /// Its directory, without a separator at the end; "" if the path has none.
  CString GetExecutableDirectory();

  /// True if the executable's drive is remote, unknown or has no root, as it is for a network path;
  /// for a path without drives, if the volume it lies on is. Asked anew each time.
  bool RunningFromNetwork();

  /// The name of the options file, without a directory: the options server knows where. From the
  /// application code, or else from the executable's name.
  CString GetOptionsFile();
  void SetOptionsFile(const char* name) { m_strOptionsFile = name; }

  /// The executable's name without directory and extension. Not the name under which settings are
  /// kept, which is the application object's.
  CString GetRegistryKey();

  CString GetProductName() override;

  UINT GetSplashIDB() const { return m_nSplashIDB; }
  void SetSplashIDB(UINT id) { m_nSplashIDB = id; }

  /// Of a version "7.1.2.3": "7.1.2.3", "7.1.2" and "7.1". Those for which there are too few dots
  /// are "".
  const CString& GetLongVersionNumber() const { return m_strLongVersion; }
  const CString& GetMediumVersionNumber() const { return m_strMediumVersion; }
  const CString& GetShortVersionNumber() const { return m_strShortVersion; }

  /// Of a version "7.1.2.3": 7, 1 and 3. Of a minor version of two digits only the last is read, as
  /// stored settings of earlier releases have it: "7.12.0.0" gives 2.
  int GetMajorVersionNumber() const { return m_nMajorVersion; }
  int GetMinorVersionNumber() const { return m_nMinorVersion; }
  int GetBuildNumber() const { return m_nBuildNumber; }

  /// Whether the application code is that of the application, case ignored. The codes stand in the
  /// library's string table.
  static bool IsAppLumenSql();
  static bool IsAppDeltaKeeper();
  static bool IsAppQuillbase();
  static bool IsAppDQPacer();

 private:
  static CString GetRegistryKeyOf(const CString& path);
  static CString& AppCode();
  void RetrieveVersionInfo();

  CString m_strTitle;
  CString m_strExecutablePath;
  CString m_strExecutableDirectory;
  CString m_strRegistryKey;
  CString m_strOptionsFile;
  UINT m_nSplashIDB = 0;
  CString m_strLongVersion;
  CString m_strShortVersion;
  CString m_strMediumVersion;
  int m_nMajorVersion = 0;
  int m_nMinorVersion = 0;
  int m_nBuildNumber = 0;
  CString m_strProductName;
};

}  // namespace dq
