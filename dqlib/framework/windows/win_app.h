// The application object.

#pragma once

#include <memory>
#include <string_view>

#include "dqlib/framework/windows/win_thread.h"

namespace dq {

class CDocManager;
class CDocTemplate;
class CDocument;
class CRecentFileList;

/// The application object: who the program is. The thread that makes it is the user-interface
/// thread. A program has one; it is dropped on the thread that made it.
class CWinApp : public CWinThread {
  DECLARE_DYNAMIC(CWinApp)
  /// The application's name; null takes the executable's base name without extension.
  explicit CWinApp(const char* name = nullptr);
  ~CWinApp() override;

  /// Sets the name under which the program's settings stand in the registry, "" at first.
  void SetRegistryKey(const char* key);

  /// The registry key name: the maker's name in the settings tree.
  const char* GetRegistryKeyName() const { return registry_key_; }
  /// The application's name, blanks kept.
  const char* GetAppName() const { return app_name_; }
  /// Full path of the executable. A host that stands for another program may set it.
  const CString& GetExecutablePath() const { return executable_path_; }
  void SetExecutablePath(const char* path) { executable_path_ = path; }

  /// Takes over a template for the manager, which is made if there is none.
  void AddDocTemplate(CDocTemplate* document_template);
  /// Opens a file as the manager does; null without one.
  virtual CDocument* OpenDocumentFile(const char* name);
  /// Asks each open document to save what has been changed; false if the person cancels.
  virtual BOOL SaveAllModified();
  /// Closes all documents, without questions. `end_session`: the person's session ends.
  virtual void CloseAllDocuments(bool end_session = false);
  /// See `CDocManager::DoPromptFileName`; without a manager all files are offered.
  virtual bool DoPromptFileName(CString& path, UINT title_id, DWORD flags, bool open,
                                CDocTemplate* document_template);

  /// Puts a file at the front of the recent ones, if there is such a list, and keeps the list in
  /// the profile.
  virtual void AddToRecentFileList(const char* path);
  /// Reads the list of recent files from the profile; no list for a count of 0, 16 at most.
  void LoadStdProfileSettings(int count = 4);
  void SaveStdProfileSettings();

  /// The documents' own idle time follows the windows'.
  BOOL OnIdle(LONG count) override;

  /// The program's profile: values by section and entry under its root key in the registry,
  /// "Software\<registry key name>\<application's name>", where sections are keys and `\` in one
  /// nests keys. Without a registry key name they stand in the profile file "<application's
  /// name>.ini". A read gives `fallback` for a value that isn't there or has another kind; a null
  /// fallback counts as "". Writes return 1, or 0 if the store refuses.
  UINT GetProfileInt(const char* section, const char* entry, int fallback);
  BOOL WriteProfileInt(const char* section, const char* entry, int value);
  CString GetProfileString(const char* section, const char* entry, const char* fallback = nullptr);
  /// A null value deletes the entry, a null entry the section with all below it; a section without
  /// a name, which would be all of the program's settings, isn't deleted.
  BOOL WriteProfileString(const char* section, const char* entry, const char* value);
  /// Points `*data` to the bytes, which the caller frees with `delete[]`, and sets `*size`; null, 0
  /// and the result 0 if there are none.
  BOOL GetProfileBinary(const char* section, const char* entry, BYTE** data, UINT* size);
  BOOL WriteProfileBinary(const char* section, const char* entry, const BYTE* data, UINT size);

  /// Null until a template is added. A host that has a manager of its own sets it before.
  std::unique_ptr<CDocManager> m_pDocManager;
  /// Null without a list.
  std::unique_ptr<CRecentFileList> m_pRecentFileList;

 protected:
  /// The commands New and Open, if there is a document manager, those of the recent files, if there
  /// is a list, and Exit.
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;
  virtual void OnFileNew();
  virtual void OnFileOpen();
  /// Closes the main window, which asks about documents.
  virtual void OnAppExit();
  /// Opens a recent file. One that is gone is told, and leaves the list.
  virtual void OnOpenRecentFile(UINT id);
  void OnUpdateRecentFileMenu(CCmdUI* ui);

 private:
  CString ProfileKey(const char* section) const;
  CString ProfileFile() const;

  CString registry_key_;
  CString app_name_;
  CString executable_path_;
};

namespace detail {
/// What a profile file's text is as a number: an optional sign and the decimal digits behind it; 0
/// if there are none. One that is too large wraps.
int ProfileNumber(std::string_view text);
}  // namespace detail

/// The program's application object, or null. Any thread.
CWinApp* AfxGetApp();
/// Its name; "" without it.
const char* AfxGetAppName();

/// "Software\Velmora\<application's name>\": the path below the current user under which the
/// library keeps its settings; "" instead of the name without an application object. It is the
/// program's profile root too, if the host sets the registry key name "Velmora".
CString AppRegistryRoot();

}  // namespace dq
