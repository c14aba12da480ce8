// What strips of tabs know of the windows that a person chooses by them.

#pragma once

#include <vector>

#include "dqlib/framework/base/drawing.h"
#include "dqlib/framework/controls/tab_layout.h"
#include "dqlib/framework/windows/wnd.h"

namespace dq {

/// What every strip knows of its tabs. Indexes count from 0; for a tab that isn't there operations
/// do nothing and answer false, 0, null or "". The observer is told of tabs as of rows.
class SECTabControlBase : public CWnd {
  DECLARE_DYNAMIC(SECTabControlBase)
  enum Notification : int {
    /// A person has turned to a tab, which is the active one now; it may have been before.
    kTabActivated = 1,
  };

  SECTabControlBase() = default;
  ~SECTabControlBase() override;

  int GetTabCount() const { return static_cast<int>(tabs_.size()); }
  bool HasTab(int index) const { return index >= 0 && index < GetTabCount(); }

  /// Adds a tab before another one, or behind all; false for any other index. `window` is the one
  /// that it stands for, or null. No handler is called. A null label counts as "".
  bool InsertTab(int index, const char* label, HWND window = nullptr);
  /// Takes a tab out; its window stays. Where it was the active one, none is. No handler is called.
  bool RemoveTab(int index);

  /// The tab's label, shown as it stands, cut where it is too wide.
  CString GetTabLabel(int index) const;
  bool SetTabLabel(int index, const char* label);
  /// The number of its icon, 0 for none. The icon is found by the chain of resource modules and
  /// shown 16 by 16 pixels large; a number without one shows nothing.
  UINT GetTabIcon(int index) const;
  bool SetTabIcon(int index, UINT icon);
  /// The window it stands for; null if that has ended.
  CWnd* GetTabWindow(int index) const;
  HWND GetTabHandle(int index) const;
  /// Anything of the program's, which must outlive the tab; null at first.
  const void* GetTabExtra(int index) const;
  bool SetTabExtra(int index, const void* extra);
  /// The tab of a window, or -1; null is no window.
  int FindTab(HWND window) const;
  /// All of it. False, and nothing changed, if there is no such tab.
  bool GetTabInfo(int index, CString& label, bool& selected, CWnd*& window,
                  const void*& extra) const;

  /// The active tab, or -1.
  int GetActiveTab() const { return active_; }
  /// Makes a tab the active one, or none with -1. It gets the mark of the selected tab, which the
  /// former one loses.
  bool ActivateTab(int index);
  /// Whether a tab is drawn as the selected one, in front of the others.
  bool IsTabSelected(int index) const;
  void SetTabSelected(int index, bool selected);

  /// Turns to a tab as a person does, and notifies the parent.
  void Choose(int index);

 protected:
  struct Tab {
    CString label;
    UINT icon_id = 0;
    HICON icon = nullptr;
    HWND window = nullptr;
    const void* extra = nullptr;
    bool selected = false;
  };

  const Tab& TabAt(int index) const { return tabs_[static_cast<std::size_t>(index)]; }
  /// Right after a tab has come in at an index (`by` 1), or gone from there (-1): indexes that the
  /// class holds follow. It mustn't call handlers.
  virtual void OnTabsShift(int index, int by);
  /// How wide a tab is to be, in pixels. Asked again when its label or its icon has changed.
  virtual int MeasureTab(const Tab& tab) const = 0;
  /// Where the tabs lie.
  detail::TabLayout& layout() { return layout_; }
  const detail::TabLayout& layout() const { return layout_; }
  /// Has all tabs measured anew.
  void MeasureTabs();
  /// Tells the observer, and has the strip drawn anew.
  void Tell(WindowChange change, const ChangedRange& range = {});

 private:
  Tab* Find(int index);

  std::vector<Tab> tabs_;
  int active_ = -1;
  detail::TabLayout layout_{*this, [this](int index) { return MeasureTab(TabAt(index)); }};
};

}  // namespace dq
