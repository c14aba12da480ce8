// A control bar with windows on tabs.

#pragma once

#include "dqlib/toolkit/flex_tab.h"

namespace dq {

/// The tab window of a bar.
class CDQTabControlBarTab : public CDQFlexTab {
  DECLARE_DYNCREATE(CDQTabControlBarTab)
  CDQTabControlBarTab() = default;
  ~CDQTabControlBarTab() override;
};

/// A bar that is filled by a tab window, which is made with it. Operations are those of the tab
/// window, and do nothing before the bar is made.
class CDQTabControlBar : public CControlBar {
  DECLARE_DYNCREATE(CDQTabControlBar)
  CDQTabControlBar() : CDQTabControlBar(DockSide::kBottom) {}
  explicit CDQTabControlBar(DockSide side) : CControlBar(side) {}
  ~CDQTabControlBar() override;

  /// Makes the bar in a frame. False if it is made already, or it or its tab window can't be.
  bool Create(CFrameWnd* frame, int id);

  /// Add a tab, behind all or before the one with the index, with a label or the string with an id
  /// as the chain of resource modules has it ("" if it has none): for a window that is there, or
  /// one that is made by its class. The tab's index, or -1; see `SEC3DTabWnd`.
  int AddTab(CWnd* window, const char* label);
  int AddTab(CWnd* window, UINT label_id);
  int AddTab(const CRuntimeClass* window_class, const char* label,
             const CCreateContext* context = nullptr);
  int AddTab(const CRuntimeClass* window_class, UINT label_id,
             const CCreateContext* context = nullptr);
  int InsertTab(int index, CWnd* window, const char* label);
  int InsertTab(int index, CWnd* window, UINT label_id);
  int InsertTab(int index, const CRuntimeClass* window_class, const char* label,
                const CCreateContext* context = nullptr);
  int InsertTab(int index, const CRuntimeClass* window_class, UINT label_id,
                const CCreateContext* context = nullptr);
  /// Ends a tab with its window. False if there is no such tab, or its document refuses.
  bool DeleteTab(int index) { return m_wndTab.CloseFlexTab(index, true); }
  bool ActivateTab(int index) { return m_wndTab.ActivateTab(index); }
  void ScrollToTab(int index) { m_wndTab.ScrollToTab(index); }
  /// The active tab, or -1, and its window.
  int GetCurrentTab() const { return m_wndTab.GetActiveTab(); }
  CWnd* GetCurrentTabWnd() const { return GetTabWnd(GetCurrentTab()); }
  int GetTabCount() const { return m_wndTab.GetTabCount(); }
  CWnd* GetTabWnd(int index) const { return m_wndTab.GetTabWindow(index); }
  /// Hides the strip, or shows it. The end of the last tab but one hides it, and the next one that
  /// comes in shows it again, unless it was hidden here.
  void ShowTabs(bool show);
  CDQTabControlBarTab& GetTabs() { return m_wndTab; }

 protected:
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  void LayOutInside() override;
  /// Makes the tab window. False refuses, and the bar ends.
  virtual bool CreateTabWnd();

  CDQTabControlBarTab m_wndTab;

 private:
  int ShowStripFor(int inserted);

  bool m_bTabsWanted = true;
};

}  // namespace dq
