// The options server: what a user sets in option dialogs, by numeric id.
//
//   CDQOptionsServer& server = *CDQOptionsServer::GetObject();
//   if (server.GetBool(50256)) OpenLog(server.GetString(50255));
//
// Options are defined in options files (".dqo"; their form stands in docs/file-formats.md). Values
// that a user has set are kept in the registry under the application's root key, section "Options";
// an option without one has its default.

#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "siblings/options/option.h"
#include "siblings/options/template_engine.h"

namespace dq {

/// The process-wide server. For the user-interface thread. An id that isn't registered reads as
/// false, 0, "" or no data, and setting it changes nothing.
class CDQOptionsServer {
 public:
  /// The one instance, made on first use. It has the options of the library's own file,
  /// "DQLib.dqo", from the start.
  static CDQOptionsServer* GetObject();

  CDQOptionsServer(const CDQOptionsServer&) = delete;
  CDQOptionsServer& operator=(const CDQOptionsServer&) = delete;
  ~CDQOptionsServer();

  /// Directories in which options files without a directory are looked for, the first one first. At
  /// first the program's directory and the directory that the build installed them to.
  void SetOptionsDirectories(std::vector<CString> directories);

  /// Registers the options of a file whose ids are in the range, ends included. Registering twice
  /// is harmless. False, and no change, if the file can't be read or breaks the form; the reason
  /// goes to the trace log. `required` false lets a missing file count as an empty one; `shared`
  /// keeps options that are registered already as they are instead of reading them anew.
  bool AddOptions(const char* file, int firstId, int lastId, bool required, bool shared);
  /// Undoes `AddOptions`. Values that the user has set stay kept.
  void RemoveOptions(const char* file, int firstId, int lastId);

  bool GetBool(int id);
  int GetInt(int id);
  CString GetString(int id);
  /// Points `*data` to the bytes, valid until the option changes, and sets `*size`; null and 0 if
  /// there are none. True if there are.
  bool GetBinary(int id, BYTE** data, UINT* size);
  /// Change the value and keep it. A value equal to the one in force is not written again.
  void SetBool(int id, bool value);
  void SetInt(int id, int value);
  void SetString(int id, const char* value);
  void SetBinary(int id, const BYTE* data, UINT size);

  /// The option, or null.
  CDQOption* GetOptionByID(int id);
  /// -1 for an unknown name, compared without regard to case; "" for an unknown id.
  int GetOptionIDByName(const char* name);
  CString GetOptionNameByID(int id);
  /// All registered ids in order.
  std::vector<int> GetOptionIDs() const;

  /// Variables of the form `$$name$$`; see `CDQTemplateEngine`.
  bool SetVariable(const char* name, const char* value);
  CString ResolveVariableString(const char* text);
  CDQTemplateEngine& GetTemplateEngine() { return m_engine; }

  /// Which platform's values are reported for options that have one for each.
  void SetPlatform(DBMS platform) { m_ePlatform = platform; }
  DBMS GetPlatform() const { return m_ePlatform; }

  /// What ends a command in the platform's scripts: "go", "/" or ";".
  CString GetCommandDelimiter(DBMS platform);

  /// The directory that the option names, variables resolved, with a separator at its end. If the
  /// option is empty: `subdirectory` below the user's application data. `label` names the directory
  /// to the user if it has to be made and can't be; it is made if `create`.
  CString GetAppDirectory(int id, const char* subdirectory, const char* label, bool create);

 private:
  CDQOptionsServer();

  struct Registration;

  std::vector<CString> m_directories;
  std::map<int, std::unique_ptr<CDQOption>> m_options;
  std::map<int, std::map<DBMS, OptionValue>> m_values;
  CDQTemplateEngine m_engine;
  DBMS m_ePlatform = DBMS_NONE;
};

}  // namespace dq
