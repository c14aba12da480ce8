// Dialog templates: what a dialog looks like when it opens, as data of a resource module.
//
// A template is a text, the data of a resource of type 5:
//
//   caption "Object Type Information"
//   size 260 120
//   text -1 "&Type:" 8 10 60 14
//   combo 2754 "" 72 8 120 90 dropdown
//   edit 2757 "" 72 48 120 14 limit=30
//   defbutton 1 "OK" 200 8 50 14
//
// A control's line is: its word, id, text, left, top, width, height in pixels of the client area,
// then any of the flags. Texts are in quotes, with `\n`, `\t`, `\"` and `\\` in them. Empty lines
// and those that begin with `#` are nothing. Words of controls, with the window
// class that each makes: text (Static), group and button, defbutton, check, radio (Button), edit
// (Edit), list (ListBox), checklist (CheckListBox), combo (ComboBox), spin (Spin), progress
// (Progress), hotkey (HotKey), datetime (DateTime), and `class "Name"` before the id for any other.
//
// Flags: hidden, disabled, group (a group of radio buttons begins here), password, multiline,
// readonly, number (digits only), sorted, multiple, dropdown (a combo box without an edit part:
// droplist), droplist, buddy (a spin that belongs to the control before it), time and optional (a
// date and time control for a time of day, or that may have none), limit=N (bytes), picture=N (the
// bitmap of a button).

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/framework/base/geometry.h"
#include "dqlib/platform/types.h"

namespace dq {

/// One control of a template.
struct ControlTemplate {
  std::string window_class;
  int id = 0;
  std::string text;
  CRect place;
  /// Which of the words made it: "defbutton".
  std::string word;
  /// As in the text: "limit=30".
  std::vector<std::string> flags;
  /// The rows that a list or a combo box has at first. Templates that are made in code have them.
  std::vector<std::string> items = {};

  bool Has(std::string_view flag) const;
  /// The number of a flag `name=N`; `fallback` without it.
  int Number(std::string_view name, int fallback) const;
};

/// A template.
struct DialogTemplate {
  std::string caption;
  CSize size;
  std::vector<ControlTemplate> controls;
};

/// Reads a template. No value if the text breaks the form: then `error`, if not null, takes the
/// line, from 1, and why. Any bytes are safe.
std::optional<DialogTemplate> ReadDialogTemplate(std::string_view text,
                                                 std::string* error = nullptr);

/// The template with the id by the chain of resource modules. No value if there is none or it
/// breaks the form.
std::optional<DialogTemplate> FindDialogTemplate(UINT id);

/// Makes the window objects of a window class.
using WindowFactory = std::unique_ptr<class CWnd> (*)(const ControlTemplate& control);

/// Enters a window class for templates; the name's case counts. A later one replaces an earlier
/// one. Before dialogs are opened, on the user-interface thread.
void RegisterControlClass(std::string_view window_class, WindowFactory make);

}  // namespace dq
