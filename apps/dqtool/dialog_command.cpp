// dqtool dialog: runs a dialog of the library at the terminal or by a script.

#include <charconv>
#include <cstdio>
#include <optional>
#include <string>

#include "apps/dqtool/command.h"
#include "dqlib/datetime/data_type.h"
#include "dqlib/datetime/format_dialog.h"
#include "dqlib/dbvocab/object_info_dialog.h"
#include "dqlib/frame/library.h"
#include "dqlib/frame/switch_resource_handle.h"
#include "dqlib/platform/dialog_script.h"
#include "dqlib/platform/platform.h"
#include "dqlib/toolkit/library_options_dialog.h"

namespace dqtool {
namespace {

/// A dialog that can be run: the id of its template, and how it is run with its result. What it
/// gives the host is put into `answer`, if it is more than what is kept.
struct DialogRow {
  unsigned id;
  int (*run)(std::string& answer);
};

/// The dialog on an object that is none yet, of no platform.
int NameObject(std::string&) {
  dq::CDBObjectInfo object;
  return dq::CDBObjectInfoDlg(&object, dq::DBMS_NONE, 0, "", false, "").DoModal();
}

/// The dialog on the user's own format of dates with times, which no option keeps.
int BuildFormat(std::string& answer) {
  constexpr int kCode = dq::DATATYPE_DATETIME;
  constexpr dq::UINT kNoOption = 0;
  dq::CLGOracleDateTimeFormat format(kNoOption, 0);
  const int result = dq::CLGDateTimeFormatDlg(&format, kCode).DoModal();
  answer = format.GetDispDateTimeFmt(kCode, dq::CLGDateTimeFormat::DFK_CURRENT).View();
  return result;
}

constexpr DialogRow kDialogs[] = {
    {dq::CDBObjectInfoDlg::kTemplateId, NameObject},
    {dq::CDQLibraryOptionsDlg::kTemplateId,
     [](std::string&) { return dq::CDQLibraryOptionsDlg().DoModal(); }},
    {dq::CLGDateTimeFormatDlg::kTemplateId, BuildFormat},
};

/// Answers dialogs by the script, and message boxes by their default buttons.
class ScriptPrompts : public dq::platform::Prompts {
 public:
  explicit ScriptPrompts(dq::platform::DialogScript script) : script_(std::move(script)) {}

  int Show(std::string_view, std::string_view text, dq::UINT type, dq::UINT) override {
    Complain(text);
    return dq::DefaultBoxButton(type);
  }
  void RunDialog(dq::platform::DialogView& dialog) override { script_.Play(dialog); }

  const dq::platform::DialogScript& script() const { return script_; }

 private:
  dq::platform::DialogScript script_;
};

/// "ID<TAB>CAPTION" for each dialog.
int List() {
  const dq::CDQSwitchResourceHandle scope(dq::DQLIB_GetInstanceHandle());
  for (const DialogRow& row : kDialogs) {
    const std::optional<dq::DialogTemplate> found = dq::FindDialogTemplate(row.id);
    PrintLine(std::to_string(row.id) + "\t" + OnOneLine(found ? found->caption : ""));
  }
  return kYes;
}

const DialogRow& FindDialog(const std::string& word) {
  unsigned id = 0;
  const char* const end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, id);
  if (error == std::errc() && stop == end) {
    for (const DialogRow& row : kDialogs) {
      if (row.id == id) return row;
    }
  }
  throw WrongUsage("no dialog " + word + ", as --list shows");
}

/// What the file, or standard input for "-", holds; no value, which has been said, if it can't be
/// read.
std::optional<std::string> ReadScript(const std::string& path) {
  std::string text;
  if (path == "-") {
    char buffer[4096];
    std::size_t size = 0;
    while ((size = std::fread(buffer, 1, sizeof(buffer), stdin)) > 0) text.append(buffer, size);
    if (std::ferror(stdin) == 0) return text;
    Complain("dialog: cannot read standard input");
    return std::nullopt;
  }
  const dq::platform::Error error = dq::platform::Current().files->ReadAll(path, text);
  if (error.ok()) return text;
  const auto reason = dq::platform::Current().system_errors->Describe(error.code);
  std::string complaint = "dialog: cannot read " + path + ": " + reason.value_or("");
  Complain(complaint.erase(complaint.find_last_not_of("\r\n: ") + 1));
  return std::nullopt;
}

/// Runs the dialog and tells how it was left, and with what.
int RunAndTell(const DialogRow& dialog) {
  std::string answer;
  const int result = dialog.run(answer);
  if (result == -1) return Complain("dialog: it could not be opened");
  PrintLine(result == dq::IDOK ? "ok" : "cancel");
  if (result != dq::IDOK) return kNo;
  if (!answer.empty()) PrintLine(answer);
  return kYes;
}

int RunByScript(const DialogRow& dialog, const std::string& path) {
  const std::optional<std::string> text = ReadScript(path);
  if (!text) return kNo;
  const std::string name = path == "-" ? "standard input" : path;
  const auto tell = [&name](const dq::platform::DialogScript::Problem& problem) {
    return Complain("dialog: " + name + ":" + std::to_string(problem.line) + ": " + problem.text);
  };
  dq::platform::DialogScript script;
  if (const auto problem = dq::platform::DialogScript::Read(*text, script)) return tell(*problem);
  ScriptPrompts prompts(std::move(script));
  dq::platform::Platform services = dq::platform::Current();
  services.prompts = &prompts;
  const dq::platform::ScopedPlatform scope(services);
  const int status = RunAndTell(dialog);
  if (const auto& problem = prompts.script().problem()) return tell(*problem);
  if (prompts.script().IsDone()) return status;
  return Complain("dialog: " + name + ": the dialog was closed before the script's end");
}

int RunDialog(Words words) {
  if (words.size() == 1 && words[0] == "--list") return List();
  if (words.empty()) throw WrongUsage("an ID or --list is needed");
  if (words[0].starts_with('-')) RefuseOption(words[0]);
  const DialogRow& dialog = FindDialog(words[0]);
  if (words.size() == 1) return RunAndTell(dialog);
  if (words[1] != "--script") {
    if (words[1].starts_with('-')) RefuseOption(words[1]);
    throw WrongUsage("one ID is needed");
  }
  if (words.size() != 3) throw WrongUsage("--script needs one FILE");
  return RunByScript(dialog, words[2]);
}

const Command kDialog{
    "dialog", "--list | ID [--script FILE]", "Runs a dialog of the library.",
    "'--list' prints a line ID<TAB>CAPTION for each dialog. A dialog is answered at the terminal,\n"
    "or by the script in FILE ('-' is standard input); where there is neither, it is cancelled.\n"
    "Prints 'ok', with status 0, or 'cancel', with status 1, as the dialog was left. Behind the\n"
    "'ok' of the date-time format builder, the next line is the format in display notation.\n"
    "\n"
    "A script has one step on a line; lines that begin with '#' are nothing:\n"
    "\n"
    "  ID=VALUE   enters VALUE into the control, with '\\n', '\\t' and '\\\\' in it: 0 or 1 for a\n"
    "             mark, the text or number from 1 of a row for a list\n"
    "  press ID   presses the button; 1 is OK and 2 is Cancel\n"
    "\n"
    "A step that the dialog doesn't take ends the script, and what is open is cancelled. Message\n"
    "boxes are left by their default buttons, and their texts go to standard error.\n",
    RunDialog};

}  // namespace
}  // namespace dqtool
