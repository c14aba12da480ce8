// dqtool dialog: runs a dialog of the library at the terminal or by a script.

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "apps/common/content.h"
#include "apps/common/dialogs.h"
#include "apps/dqtool/command.h"
#include "dqlib/platform/ascii.h"
#include "dqlib/platform/dialog_script.h"
#include "dqlib/platform/platform.h"

namespace dqtool {
namespace {

using dq::platform::DialogControl;
using dq::platform::DialogControlKind;
using dqapps::LibraryDialog;

/// Answers dialogs by the script, and message boxes by their default buttons.
class ScriptPrompts : public dq::platform::Prompts {
 public:
  explicit ScriptPrompts(dq::platform::DialogScript script) : script_(std::move(script)) {}

  int Show(std::string_view, std::string_view text, dq::UINT type, dq::UINT) override {
    ComplainInLines(text);
    return dq::DefaultBoxButton(type);
  }
  void RunDialog(dq::platform::DialogView& dialog) override { script_.Play(dialog); }

  const dq::platform::DialogScript& script() const { return script_; }

 private:
  dq::platform::DialogScript script_;
};

int List(const Arguments& arguments) {
  Listing listing(arguments);
  for (const LibraryDialog& dialog : dqapps::LibraryDialogs()) {
    listing.Add({{"id", dialog.id}, {"caption", dialog.Caption()}});
  }
  return listing.End();
}

/// By its id or its caption, in any case.
const LibraryDialog& FindDialog(const std::string& word) {
  std::vector<std::string> names;
  for (const LibraryDialog& dialog : dqapps::LibraryDialogs()) {
    names.push_back(dialog.Caption());
    if (word == std::to_string(dialog.id) || dq::platform::EqualIgnoringCase(word, names.back())) {
      return dialog;
    }
  }
  throw WrongUsage("no dialog '" + word + "', as --list shows" + DidYouMean(word, names));
}

/// Runs the dialog and tells how it was left, and with what.
int RunAndTell(const Arguments& arguments, const LibraryDialog& dialog) {
  const dqapps::DialogOutcome outcome = dialog.Run();
  if (!outcome.is_opened) return Complain("it could not be opened");
  Fields fields = {{"result", outcome.is_ok ? "ok" : "cancel"}};
  if (outcome.is_ok && !outcome.answer.empty()) fields.emplace_back("answer", outcome.answer);
  return PrintAnswer(arguments, outcome.Lines(), fields, outcome.is_ok ? kYes : kNo);
}

int RunByScript(const Arguments& arguments, const LibraryDialog& dialog, const std::string& path) {
  const std::optional<std::string> text = dqapps::ReadContent(path);
  if (!text) return kNo;
  const std::string name = dqapps::NameOfInput(path);
  const auto tell = [&name](const dq::platform::DialogScript::Problem& problem) {
    return Complain(name + ":" + std::to_string(problem.line) + ": " + problem.text);
  };
  dq::platform::DialogScript script;
  if (const auto problem = dq::platform::DialogScript::Read(*text, script)) return tell(*problem);
  ScriptPrompts prompts(std::move(script));
  dq::platform::Platform services = dq::platform::Current();
  services.prompts = &prompts;
  const dq::platform::ScopedPlatform scope(services);
  const int status = RunAndTell(arguments, dialog);
  if (const auto& problem = prompts.script().problem()) return tell(*problem);
  if (prompts.script().IsDone()) return status;
  return Complain(name + ": the dialog was closed before the script's end");
}

/// Shows what a dialog has instead of answering it.
class ControlLister : public ScriptPrompts {
 public:
  explicit ControlLister(Listing& listing) : ScriptPrompts({}), listing_(listing) {}

  void RunDialog(dq::platform::DialogView& dialog) override {
    // A list that other controls come and go with is one of pages.
    const std::vector<DialogControl> first = dialog.Controls();
    const auto pages = std::ranges::find_if(first, [](const DialogControl& control) {
      return control.kind == DialogControlKind::kList && control.visible && !control.multiple;
    });
    List(first, true);
    if (pages != first.end()) {
      for (std::size_t page = 1; page <= pages->items.size(); ++page) {
        if (dialog.Enter(pages->id, std::to_string(page))) List(dialog.Controls(), true);
      }
      // The page that is shown last is kept, so it is the one that was.
      dialog.Enter(pages->id, pages->value);
    }
    List(dialog.Controls(), false);
  }

 private:
  /// Those that weren't before.
  void List(const std::vector<DialogControl>& controls, bool visible) {
    for (const DialogControl& control : controls) {
      const char* const kind = KindOf(control);
      if (kind == nullptr || control.visible != visible) continue;
      if (!listed_.insert(control.id).second) continue;
      const char* const state = !visible ? "hidden" : control.enabled ? "shown" : "disabled";
      const std::string value = control.secret ? std::string() : control.value;
      listing_.Add({{"id", control.id},
                    {"kind", kind},
                    {"label", control.label},
                    {"value", value},
                    {"state", state},
                    {"items", control.items}});
    }
  }

  /// Null for what a script has nothing to do with.
  static const char* KindOf(const DialogControl& control) {
    switch (control.kind) {
      case DialogControlKind::kButton:
        return "button";
      case DialogControlKind::kCheck:
        return "check";
      case DialogControlKind::kRadio:
        return "radio";
      case DialogControlKind::kEdit:
        return control.multiple ? "lines" : "text";
      case DialogControlKind::kList:
        return control.multiple ? "choices" : "list";
      case DialogControlKind::kCombo:
        return control.editable ? "combo" : "list";
      case DialogControlKind::kText:
      case DialogControlKind::kOther:
        break;
    }
    return nullptr;
  }

  Listing& listing_;
  std::set<int> listed_;
};

int ListControls(const Arguments& arguments, const LibraryDialog& dialog) {
  Listing listing(arguments);
  ControlLister prompts(listing);
  dq::platform::Platform services = dq::platform::Current();
  services.prompts = &prompts;
  const dq::platform::ScopedPlatform scope(services);
  if (!dialog.Run().is_opened) return Complain("it could not be opened");
  return listing.End();
}

int RunDialog(const Arguments& arguments) {
  const bool lists = arguments.Has("--list");
  const bool controls = arguments.Has("--controls");
  const std::string* const script = arguments.Find("--script");
  if (lists && (controls || script != nullptr || !arguments.words.empty())) {
    throw WrongUsage("--list stands alone");
  }
  if (lists) return List(arguments);
  if (arguments.words.empty()) throw WrongUsage("a DIALOG or --list is needed");
  const LibraryDialog& dialog = FindDialog(arguments.words[0]);
  if (controls && script != nullptr) throw WrongUsage("either --controls or --script");
  if (controls) return ListControls(arguments, dialog);
  return script == nullptr ? RunAndTell(arguments, dialog)
                           : RunByScript(arguments, dialog, *script);
}

const Command kDialog{
    "dialog",
    "Runs a dialog of the library.",
    "DIALOG is an id or a caption, as '--list' shows them in lines ID<TAB>CAPTION. It is answered\n"
    "at the terminal or by a script; where there is neither, it is cancelled. Prints 'ok', with\n"
    "status 0, or 'cancel', with status 1, as the dialog was left. Behind the 'ok' of the\n"
    "date-time format builder, the next line is the format in display notation.\n"
    "\n"
    "A script has one step on a line; lines that begin with '#' are nothing:\n"
    "\n"
    "  ID=VALUE   enters VALUE into the control, with '\\n', '\\t' and '\\\\' in it: 0 or 1 for a\n"
    "             mark, the text or number from 1 of a row for a list\n"
    "  press ID   presses the button; 1 is OK and 2 is Cancel\n"
    "\n"
    "A step that the dialog doesn't take ends the script, and what is open is cancelled. Message\n"
    "boxes are left by their default buttons, and their texts go to standard error.\n"
    "\n"
    "'--controls' opens the dialog, prints a line\n"
    "ID<TAB>KIND<TAB>LABEL<TAB>VALUE<TAB>STATE<TAB>ITEM... for each control, and cancels it.\n"
    "A KIND is button, check, radio, text, lines, list, choices (a list of which several rows can\n"
    "be chosen) or combo (a list that takes other texts too). Of a dialog with pages the list of\n"
    "pages comes first, and its controls come page by page: a script enters the page before them.\n"
    "A STATE is shown, disabled or hidden; other steps, as the press of a button, may change it.\n"
    "\n"
    "JSON: --list [{\"id\", \"caption\"}], --controls [{\"id\", \"kind\", \"label\", \"value\",\n"
    "\"state\", \"items\"}], else {\"result\"} with \"ok\" or \"cancel\", and the format as\n"
    "\"answer\".\n",
    {{"[DIALOG]",
      RunDialog,
      {{"--list", "", "list the dialogs"},
       {"--controls", "", "list the controls of the dialog"},
       {"--script", "FILE", "answer the dialog by the script in FILE"},
       kJson}}}};

}  // namespace
}  // namespace dqtool
