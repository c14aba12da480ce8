// The window classes of the controls, as dialog templates name them.

#include "dqlib/framework/controls/control_classes.h"

#include <algorithm>

#include "dqlib/framework/controls/bitmap_button.h"
#include "dqlib/framework/controls/button.h"
#include "dqlib/framework/controls/combo_box.h"
#include "dqlib/framework/controls/date_time_ctrl.h"
#include "dqlib/framework/controls/edit.h"
#include "dqlib/framework/controls/hot_key.h"
#include "dqlib/framework/controls/list_box.h"
#include "dqlib/framework/controls/progress.h"
#include "dqlib/framework/controls/sft_tabs.h"
#include "dqlib/framework/controls/sft_tree.h"
#include "dqlib/framework/controls/spin_button.h"
#include "dqlib/framework/controls/static.h"
#include "dqlib/framework/controls/tool_tip.h"

namespace dq {
namespace {

/// The most bytes that may be entered; 0 for any.
UINT Limit(const ControlTemplate& control) {
  return static_cast<UINT>(std::max(0, control.Number("limit", 0)));
}

/// A control with what all have alike.
template <typename Class, typename... Arguments>
std::unique_ptr<Class> Make(const ControlTemplate& from, Arguments... arguments) {
  auto control = std::make_unique<Class>(arguments...);
  control->SetBeginsGroup(from.Has("group"));
  return control;
}

std::unique_ptr<CWnd> MakeStatic(const ControlTemplate& from) { return Make<CStatic>(from); }

std::unique_ptr<CWnd> MakeButton(const ControlTemplate& from) {
  static constexpr struct {
    std::string_view word;
    ButtonKind kind;
  } kKinds[] = {
      {"group", ButtonKind::kGroup},
      {"defbutton", ButtonKind::kDefault},
      {"check", ButtonKind::kCheck},
      {"radio", ButtonKind::kRadio},
  };
  ButtonKind kind = ButtonKind::kPush;
  for (const auto& row : kKinds) {
    if (row.word == from.word) kind = row.kind;
  }
  return Make<CButton>(from, kind);
}

std::unique_ptr<CWnd> MakeEdit(const ControlTemplate& from) {
  auto edit = Make<CEdit>(from, EditStyle{.multi_line = from.Has("multiline"),
                                          .password = from.Has("password"),
                                          .read_only = from.Has("readonly"),
                                          .number = from.Has("number")});
  edit->LimitText(Limit(from));
  return edit;
}

/// A control with rows, and those that it has at first.
template <typename Class, typename Style>
std::unique_ptr<Class> MakeWithRows(const ControlTemplate& from, const Style& style) {
  auto control = Make<Class>(from, style);
  for (const std::string& item : from.items) control->AddString(item.c_str());
  return control;
}

ListStyle ListStyleOf(const ControlTemplate& from) {
  return {.sorted = from.Has("sorted"), .multiple = from.Has("multiple")};
}

std::unique_ptr<CWnd> MakeList(const ControlTemplate& from) {
  return MakeWithRows<CListBox>(from, ListStyleOf(from));
}

std::unique_ptr<CWnd> MakeCheckList(const ControlTemplate& from) {
  return MakeWithRows<CCheckListBox>(from, ListStyleOf(from));
}

std::unique_ptr<CWnd> MakeCombo(const ControlTemplate& from) {
  auto combo = MakeWithRows<CComboBox>(
      from, ComboStyle{.list_only = from.Has("droplist"), .sorted = from.Has("sorted")});
  combo->LimitText(static_cast<int>(Limit(from)));
  return combo;
}

std::unique_ptr<CWnd> MakeSpin(const ControlTemplate& from) {
  return Make<CSpinButtonCtrl>(from, from.Has("buddy"));
}

std::unique_ptr<CWnd> MakeBitmapButton(const ControlTemplate& from) {
  auto button = Make<CBitmapButton>(from);
  const int picture = from.Number("picture", 0);
  if (picture != 0) button->LoadBitmaps(static_cast<UINT>(picture));
  return button;
}

std::unique_ptr<CWnd> MakeDateTime(const ControlTemplate& from) {
  return Make<CDateTimeCtrl>(
      from, DateTimeStyle{.time = from.Has("time"), .optional = from.Has("optional")});
}

std::unique_ptr<CWnd> MakeHotKey(const ControlTemplate& from) { return Make<CHotKeyCtrl>(from); }

std::unique_ptr<CWnd> MakeProgress(const ControlTemplate& from) {
  return Make<CProgressCtrl>(from);
}

std::unique_ptr<CWnd> MakeTabs(const ControlTemplate& from) { return Make<CSftTabs>(from); }

/// Its rows are the items, in a list without columns.
std::unique_ptr<CWnd> MakeTree(const ControlTemplate& from) {
  auto tree = Make<CSftTree>(from);
  tree->SetMultiSelection(from.Has("multiple"));
  for (const std::string& item : from.items) tree->AddRow(item.c_str());
  return tree;
}

std::unique_ptr<CWnd> MakeToolTip(const ControlTemplate& from) { return Make<CToolTipCtrl>(from); }

}  // namespace

bool detail::RegisterControlClasses() {
  RegisterControlClass("Static", &MakeStatic);
  RegisterControlClass("Edit", &MakeEdit);
  RegisterControlClass("Button", &MakeButton);
  RegisterControlClass("ListBox", &MakeList);
  RegisterControlClass("CheckListBox", &MakeCheckList);
  RegisterControlClass("ComboBox", &MakeCombo);
  RegisterControlClass("Spin", &MakeSpin);
  RegisterControlClass("BitmapButton", &MakeBitmapButton);
  RegisterControlClass("DateTime", &MakeDateTime);
  RegisterControlClass("HotKey", &MakeHotKey);
  RegisterControlClass("Progress", &MakeProgress);
  RegisterControlClass("TabStrip", &MakeTabs);
  RegisterControlClass("ToolTip", &MakeToolTip);
  RegisterControlClass("SftTree", &MakeTree);
  return true;
}

}  // namespace dq

extern "C" {
const bool dqlib_controls = dq::detail::RegisterControlClasses();
}
