// Views of several views, chosen by tabs.
//
//   class Notes : public CDQSftTabView { ... };
//   addTabView(RUNTIME_CLASS(TextView), GetDocument(), "&Text", true, true, 0);
//   addTabView(RUNTIME_CLASS(ListView), GetDocument(), "&List", false, false, 0);

#pragma once

#include <array>

#include "dqlib/framework/base/drawing.h"
#include "dqlib/toolkit/tab_info.h"

namespace dq {

class CDC;

/// The tabs of a tab view. They draw themselves, and leave the keyboard to the view that they show.
class CViewTabControl : public CSftTabs {
  DECLARE_DYNCREATE(CViewTabControl)
  CViewTabControl() { SetStyle(kTabsRaised); }
};

/// A view with a row of tabs, each of which shows another view. That one is made when its tab is
/// first switched to, and then kept, hidden while another one is shown. Nothing is shown before a
/// tab is switched to. Alt with a tab's mnemonic is a person's wish for it.
///
/// Tabs are counted from 0; for one that isn't there operations do nothing and answer as the
/// comment says, or false, null or 0.
class CDQSftTabView : public CView {
  DECLARE_DYNCREATE(CDQSftTabView)
  CDQSftTabView();
  ~CDQSftTabView() override;

  /// What it sends itself, without arguments, when another view is shown.
  static constexpr UINT kViewChanged = 0x87D0;
  /// The tabs' id.
  static constexpr int kTabsId = 0xE900;

  /// Adds a tab behind the others and returns its index; -1 while the window isn't made. `label`
  /// may have a mnemonic (see `CTabData`), `data` is the caller's. The view isn't made; with `show`
  /// the tab is switched to, which makes it. `border` asks for an edge around the view. The
  /// document, which may be null, isn't owned, and may go.
  int addTabView(const CRuntimeClass* view_class, CDocument* document, const char* label,
                 bool border, bool show, int data);
  /// The same with its view made at once. Null if that can't be made; the tab is there all the
  /// same, and tries again when it is switched to.
  CView* createTabView(const CRuntimeClass* view_class, CDocument* document, const char* label,
                       bool border, bool show, int data);

  /// Shows the view of a tab, made if need be, and hides the former one; with `activate`, or if the
  /// person works in that one, it becomes the frame's active view and gets the focus. If another
  /// view is shown then, the window gets `kViewChanged`. If the view can't be made, all stays as it
  /// was.
  void switchTab(int index, bool activate);
  /// The view of a tab, made if need be.
  CView* getView(int index);
  /// Whether a person can choose the tab; at first they can.
  void enableView(int index, bool enable);
  int getTabCount() const { return m_arrTabs.GetSize(); }
  /// The tab whose view is shown, or -1.
  int GetCurrentTab() const { return m_nCurrentTab; }
  /// The view that is shown, or null.
  CView* GetCurrentView() const;
  /// The same, if the person works in it: the frame's active view is it or lies below it.
  CWnd* GetActivePane() const;
  /// What the tab was added with; null if it isn't there.
  const CTabInfo* GetTabInfo(int index) const;
  void SetTabLabel(int index, const char* label);
  /// How the tabs look, a `TabsStyle`; at first `kTabsRaised`.
  void SetTabStyle(int style);
  CSftTabs& GetTabControl() { return m_tabs; }

  /// Lays out the tabs and the view that is shown; `repaint` has all of it drawn anew.
  void ResizeChildren(bool repaint);
  /// Where the view that is shown lies.
  const CRect& GetChildRect() const { return m_rectChild; }
  /// Draws the edge around the view that is shown, if it has one, and what lies beside it.
  void PaintInnerBorder(CDC* dc);

  // Colours: behind all, of tabs and their texts, and of the current tab. Until they are set they
  // are the desktop's.

  void SetColors(COLORREF background, COLORREF tab_background, COLORREF tab_text,
                 COLORREF highlight_background, COLORREF highlight_text);
  void SetTabBkColor(COLORREF color) { SetColor(kTabBk, color); }
  void SetTabTextColor(COLORREF color) { SetColor(kTabText, color); }
  void SetTabBkHighlightColor(COLORREF color) { SetColor(kTabBkHighlight, color); }
  void SetTabTextHighlightColor(COLORREF color) { SetColor(kTabTextHighlight, color); }
  COLORREF GetBkColor() const { return GetColor(kBk, COLOR_BTNFACE); }
  COLORREF GetTabBkColor() const { return GetColor(kTabBk, COLOR_BTNFACE); }
  COLORREF GetTabTextColor() const { return GetColor(kTabText, COLOR_BTNTEXT); }
  COLORREF GetTabBkHighlightColor() const { return GetColor(kTabBkHighlight, COLOR_BTNFACE); }
  COLORREF GetTabTextHighlightColor() const { return GetColor(kTabTextHighlight, COLOR_BTNTEXT); }
  /// A brush of the colour; not created until that is set.
  const CBrush& GetBkBrush() const { return m_brushes[kBk]; }
  const CBrush& GetTabBkBrush() const { return m_brushes[kTabBk]; }
  const CBrush& GetTabTextBrush() const { return m_brushes[kTabText]; }
  const CBrush& GetTabBkHighlightBrush() const { return m_brushes[kTabBkHighlight]; }
  const CBrush& GetTabTextHighlightBrush() const { return m_brushes[kTabTextHighlight]; }

  BOOL PreTranslateMessage(MSG* message) override;

 protected:
  /// A person wishes for another tab. False leaves the present one. The base agrees.
  virtual bool OnTabChanging(int /*index*/) { return true; }
  /// It was agreed to. The base switches to the tab.
  virtual void OnTabChange(int index) { switchTab(index, true); }

  void OnDraw(CDC* dc) override;
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;
  /// The view that is shown becomes the active one in its place.
  void OnTurnTo(CWnd& window) override;

 private:
  enum Color { kBk, kTabBk, kTabText, kTabBkHighlight, kTabTextHighlight, kColorCount };

  bool Has(int index) const { return index >= 0 && index < getTabCount(); }
  void SetColor(Color which, COLORREF color);
  COLORREF GetColor(Color which, int system_color) const;
  void ColorTabs();
  void OnTabWished();
  bool GoToMnemonic(char character);
  void Activate(HWND view);
  bool HasInnerBorder() const;

  CViewTabControl m_tabs;
  CTabArray m_arrTabs;
  int m_nCurrentTab = -1;
  /// It has been brought up to date with its frame.
  bool m_bComplete = false;
  CRect m_rectChild;
  std::array<CBrush, kColorCount> m_brushes;
};

}  // namespace dq
