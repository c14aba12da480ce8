// The row of tabs by which a person chooses a page.

#pragma once

#include "dqlib/framework/controls/row_control.h"

namespace dq {

/// A row of tabs. Window class "TabStrip"; the rows of its base are the labels of the tabs. Which
/// one is current, its parent decides: a person only wishes.
class CDQTabStrip : public RowControl {
  DECLARE_DYNAMIC(CDQTabStrip)
  enum Notification : int {
    /// A person wishes for the tab `GetWished`. The parent agrees by `SetCurSel`.
    kTabWished = 1,
  };

  CDQTabStrip() : RowControl(false) {}

  /// The tab's label; "" if there is no such tab.
  CString GetLabel(int index) const { return CString(rows_.Text(index)); }
  /// The current tab, or -1.
  int GetCurSel() const { return current_; }
  /// Makes a tab the current one, or none with -1. False, and no change, if there is no such tab.
  bool SetCurSel(int index);
  /// Tabs are enabled at first. A person can't wish for others.
  bool IsTabEnabled(int index) const;
  void EnableTab(int index, bool enable);
  int GetWished() const { return wished_; }

  /// A person wishes for the tab; whether it is the current one then.
  bool Choose(int index);

  void Describe(platform::DialogControl& control) const override;
  /// By the label or by number from 1.
  bool Enter(std::string_view value) override;

 private:
  int wished_ = -1;
};

namespace detail {
/// Enters the window class, once.
void RegisterTabStrip();
}  // namespace detail

}  // namespace dq
