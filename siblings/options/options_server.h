// The options server: what a user sets in option dialogs, by numeric id.
//
//   CDQOptionsServer& server = *CDQOptionsServer::GetObject();
//   if (server.GetBool(50256)) OpenLog(server.GetString(50255));
//
// Options are defined in options files (".dqo"; their form stands in docs/file-formats.md). Values
// that a user has set are kept in the registry under the application's root key, section "Options";
// an option without one has its default.

#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dqlib/platform/error.h"
#include "siblings/options/option.h"
#include "siblings/options/template_engine.h"

namespace dq {

/// The options of a process. For the user-interface thread.
///
/// What another process sets holds at once: a value is read from the registry each time, a number
/// each time that anything there has changed, so that inner loops may ask for it. A value
/// there that is none of the option's kind counts as absent. One that can't be read is answered as
/// if it were absent too, but the person is told, once until the registry can be read again or
/// fails in another way, and `GetReadError` has the reason. An id that isn't registered reads as
/// false, 0,
/// "" or no data, and setting it changes nothing.
class CDQOptionsServer {
 public:
  /// The process's one instance, made on first use, which lives until the process ends.
  static CDQOptionsServer* GetObject();

  /// A server with the options of the library's own file, "DQLib.dqo". A host has no need of one
  /// beside the process's.
  CDQOptionsServer();
  CDQOptionsServer(const CDQOptionsServer&) = delete;
  CDQOptionsServer& operator=(const CDQOptionsServer&) = delete;
  ~CDQOptionsServer();

  /// Directories in which options files without a directory are looked for, the first one first,
  /// and reads the library's own file anew from there. At first these are the program's directory,
  /// the one where the files are installed, "../share/dqlib/options" from there, and the one of the
  /// tree that the library was built from.
  void SetOptionsDirectories(std::vector<CString> directories);

  /// Registers the options of a file whose ids are in the range, ends included, and sets the file's
  /// variables. Registering twice is harmless. False, and no change, if the file can't be read,
  /// breaks the form, or has the id or name of an option of another file; the reason goes to the
  /// trace log. `required` false lets a missing file count as an empty one; `shared` keeps options
  /// and variables that are there already as they are instead of reading them anew.
  bool AddOptions(const char* file, int firstId, int lastId, bool required, bool shared);
  /// Undoes `AddOptions`, however often that was called. Values that the user has set stay kept.
  void RemoveOptions(const char* file, int firstId, int lastId);

  /// The current value. A bool reads as 0 or 1 and a number as whether it isn't 0; every value but
  /// a binary one reads as its text.
  bool GetBool(int id);
  int GetInt(int id);
  CString GetString(int id);
  /// Points `*data` to the bytes, valid until the next call for the option, and sets `*size`; null
  /// and 0 if there are none. True if there are.
  bool GetBinary(int id, BYTE** data, UINT* size);
  /// Change the value, of the very kind that the operation says or, with `SetString`, of one whose
  /// values are texts, and keep it. A value equal to the one in force is not written again. False,
  /// and no change, if there is no such option or it is no value for it. False too if the registry
  /// refuses: then the reason goes to the trace log and the value holds for this process alone.
  bool SetBool(int id, bool value);
  bool SetInt(int id, int value);
  bool SetString(int id, const char* value);
  bool SetBinary(int id, const BYTE* data, UINT size);
  /// The same for a value of any kind.
  OptionValue GetValue(int id);
  bool SetValue(int id, const OptionValue& value);

  /// Why the value that was read last is perhaps not the one that is kept; no error if it is.
  const platform::Error& GetReadError() const { return m_readError; }

  /// Takes back what was set, kept or held, so that the default holds again. False, and no change,
  /// if there is no such option or the registry refuses.
  bool UnsetValue(int id);

  /// Lets the value hold for this process alone, in place of the one that is kept, until another
  /// one is set and kept. False, and no change, if there is no such option or it is no value for
  /// it.
  bool HoldValue(int id, const OptionValue& value);

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

  /// Which platform's values are read and changed, of options that have one for each platform.
  /// Where a platform has none of its own, the one of `DBMS_NONE` holds.
  void SetPlatform(DBMS platform) { m_ePlatform = platform; }
  DBMS GetPlatform() const { return m_ePlatform; }

  /// What ends a command in the platform's scripts: "go", "/" or ";"; "" where there is none.
  CString GetCommandDelimiter(DBMS platform);

  /// The directory that the option names, variables resolved, with a separator at its end. If the
  /// option is empty: `subdirectory` below the user's application data for this application; "" if
  /// the user has none. It is made if `create`; if that fails the user is told, with `label` to say
  /// which directory it is, and the result is "".
  CString GetAppDirectory(int id, const char* subdirectory, const char* label, bool create);

 private:
  /// A call of `AddOptions` that succeeded.
  struct Registration {
    std::string file;
    int first;
    int last;
    bool operator==(const Registration&) const = default;
  };
  using OfPlatform = std::pair<int, DBMS>;

  bool ReadFile(const std::string& file, bool required, std::string& path, OptionsFile& contents);
  /// Why the file's options can't be registered; "" if they can.
  std::string FindConflict(const std::string& file, const OptionsFile& contents, int first,
                           int last, bool shared);
  void Register(const std::string& file, OptionsFile contents, int first, int last, bool shared);
  /// Takes out the file's options in the range but for some.
  void Unregister(std::string_view file, int first, int last, const std::set<int>& kept);
  void ForgetName(const CDQOption& option);
  void SetVariables(const OptionsFile& contents, const std::string& path, bool shared);
  OptionValue ValueOf(const CDQOption& option, DBMS platform) const;
  /// `ValueOf`, which adds to the error of this reading.
  OptionValue LookUp(const CDQOption& option, DBMS platform) const;
  int NumberOf(const CDQOption& option) const;
  void Hold(const CDQOption& option, DBMS platform, const OptionValue& value);
  /// The platform whose values the option has for a platform.
  static DBMS PlatformFor(const CDQOption& option, DBMS platform);
  bool SetOfKind(int id, OptionKind kind, const OptionValue& value);

  std::vector<CString> m_directories;
  std::map<int, std::unique_ptr<CDQOption>> m_options;
  /// Ids by lower-case names.
  std::map<std::string, int, std::less<>> m_ids;
  std::vector<Registration> m_registrations;
  /// Values that the registry refused, or that are not for it.
  std::map<OfPlatform, OptionValue> m_unkept;
  /// What `GetBinary` points to.
  std::map<int, OptionValue> m_binaries;
  CDQTemplateEngine m_engine;
  DBMS m_ePlatform = DBMS_NONE;
  mutable platform::Error m_readError;
};

}  // namespace dq
