// Windows with tabs that can be closed, take a new name, and be dragged from one frame to another.
//
//   CDQFlexTab& tabs = *frame.GetTabWnd();
//   tabs.AddFlexTab(RUNTIME_CLASS(CSqlView), "Query 1", &context, IDR_SQL, true);
//   tabs.SetTabClosable(0, false);   // the others can be closed from now on

#pragma once

#include "dqlib/core/guid.h"
#include "dqlib/framework/controls/tab_window.h"
#include "dqlib/toolkit/flex_tab_ctrl.h"

namespace dq {

class CCmdUI;

/// A tab window with a context menu for its tabs, whose strip is shown only while there is more
/// than one tab. For a tab that isn't there operations do nothing and answer false, 0, null or "".
class CDQFlexTab : public SEC3DTabWnd {
  DECLARE_DYNCREATE(CDQFlexTab)
  CDQFlexTab();
  ~CDQFlexTab() override;

  /// Add a tab, behind all or before the one with the index, with a window of the class; see
  /// `SEC3DTabWnd::InsertTab`. `icon` is the number of its icon, 0 for none. `activate`: its view
  /// is brought up to date the first time, and the tab becomes the active one. `extra` is kept with
  /// the tab, as a pointer, and must outlive it. False if the tab can't be added, if it was to
  /// become active and the class makes no window, and if handlers have closed it meanwhile.
  bool AddFlexTab(const CRuntimeClass* window_class, const char* label, CCreateContext* context,
                  UINT icon, bool activate);
  bool AddFlexTabEx(const CRuntimeClass* window_class, const char* label, CCreateContext* context,
                    UINT icon, bool activate, const GUID* extra);
  bool InsertFlexTab(int index, const CRuntimeClass* window_class, const char* label,
                     CCreateContext* context, UINT icon, bool activate);
  bool InsertFlexTabEx(int index, const CRuntimeClass* window_class, const char* label,
                       CCreateContext* context, UINT icon, bool activate, const GUID* extra);

  /// Closes a tab, and ends its window. A document that its window is a view of is asked whether it
  /// can close. False if it refuses, if there is no such tab, and without `force` if the tab isn't
  /// closable.
  bool CloseFlexTab(int index, bool force);
  /// Closes every tab that a person can close, from the last one on. One whose document refuses
  /// stays.
  void CloseAllFlexTabs();

  /// All of a tab; `window`, `window_class` and `document` may be null. False, and nothing changed,
  /// if there is no such tab.
  bool GetAttributes(int index, CString& label, UINT& icon, CWnd*& window,
                     const CRuntimeClass*& window_class, CDocument*& document) const;
  bool GetAttributesEx(int index, CString& label, UINT& icon, CWnd*& window,
                       const CRuntimeClass*& window_class, CDocument*& document,
                       const GUID*& extra) const;
  UINT GetTabIcon(int index) const { return GetTabControl().GetTabIcon(index); }
  CString GetLabel(int index) const { return GetTabControl().GetTabLabel(index); }
  void SetLabel(int index, const char* label) { GetTabControl().SetTabLabel(index, label); }
  CWnd* GetWindow(int index) const { return GetTabWindow(index); }
  const GUID* GetExtraPtr(int index) const {
    return static_cast<const GUID*>(GetTabControl().GetTabExtra(index));
  }

  /// Hides the strip, or shows it as it was before, in the style for all tab windows if there is
  /// one and this window doesn't ignore it. Lays the window out anew. May be called before the
  /// window is made.
  void ShowTabs(bool show);
  bool AreTabsShown() const { return m_bTabsShown; }
  /// The `SECTabStyle` with which strips of all tab windows are shown from now on; -1, all bits
  /// set, for that of each.
  static void SetTabStyleOnShow(unsigned long style) { g_dwTabStyleOnShow = style; }
  void SetIgnorGlobalStyle(bool ignore) { m_bIgnoreGlobalStyle = ignore; }
  bool GetIgnorGlobalStyle() const { return m_bIgnoreGlobalStyle; }

  /// See `CDQFlexTabCtrl`.
  void SetTabDragable(int index, bool dragable);
  bool IsTabDragable(int index) const;
  void SetTabClosable(int index, bool closable);
  bool IsTabClosable(int index) const;
  CDQFlexTabCtrl& GetFlexTabCtrl();
  const CDQFlexTabCtrl& GetFlexTabCtrl() const;

  static unsigned long g_dwTabStyleOnShow;

 protected:
  void OnTabsShift(int index, int by) override;
  /// The frame's title becomes that of the tab's document.
  void OnTabActivated() override;
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;

  /// The context menu of the tab at a point of the screen, which `WM_CONTEXTMENU` brings.
  LRESULT OnContextMenu(WPARAM window, LPARAM point);
  LRESULT OnInitMenuPopup(WPARAM menu, LPARAM position);
  LRESULT OnMenuChar(WPARAM key, LPARAM menu);
  void OnCloseTab();
  void OnUpdateCloseTab(CCmdUI* ui);
  void OnCloseAllTabs();
  void OnRenameTab();
  void OnUpdateRenameTab(CCmdUI* ui);

  /// The tab under the last context menu, or -1.
  int m_nContextTab = -1;
  bool m_bIgnoreGlobalStyle = false;

 private:
  bool ActivateNewTab(int index);
  int FindTabAgain(HWND window, int before) const;

  bool m_bTabsShown = true;
  /// Of the strip while it is hidden.
  SECTabSizes m_savedSizes;
};

}  // namespace dq
