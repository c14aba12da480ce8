// The row of tabs by which a person chooses a page.
//
//   tabs.SetStyle(kTabsRaised);
//   tabs.CreateWnd({.class_name = "TabStrip", .place = {0, 0, 300, tabs.GetWantedHeight()},
//                   .parent = &window, .id = 7});
//   tabs.AddTab("&Text");
//
// A person's wish comes to the parent as the notification `kTabWished`, who agrees by `SetCurSel`.

#pragma once

#include <deque>
#include <optional>
#include <vector>

#include "dqlib/framework/controls/control.h"
#include "dqlib/framework/controls/row_store.h"
#include "dqlib/framework/controls/tab_layout.h"

namespace dq {

/// How tabs look that have a look of their own. Those that lie below have their pages above them.
enum TabsStyle : int {
  kTabsRaised = 0,
  /// Flat ones show their labels as they stand; the others underline the character behind the first
  /// "&".
  kTabsFlat = 1,
  kTabsFlatBelow = 2,
  kTabsRaisedBelow = 3,
};

/// Colours of tabs, and those of the current one. What isn't set is the control's, or else the
/// desktop's.
struct TabColors {
  std::optional<COLORREF> background = {};
  std::optional<COLORREF> text = {};
  std::optional<COLORREF> highlight_background = {};
  std::optional<COLORREF> highlight_text = {};

  friend bool operator==(const TabColors&, const TabColors&) = default;
};

/// A row of tabs with labels, counted from 0. Window class "TabStrip". Which one is current, its
/// parent decides: a person only wishes.
///
/// Once a style, a colour or a font has been set it draws itself, and takes the mouse and the keys
/// as messages; before, a window layer shows it by the desktop's own tabs. Tabs that don't fit are
/// scrolled to by two arrows at the end.
class CSftTabs : public Control {
  DECLARE_DYNCREATE(CSftTabs)
  enum Notification : int {
    /// A person wishes for the tab `GetWished`.
    kTabWished = 1,
  };
  /// Of a tab.
  enum TabFlag : BYTE { kTabDisabled = 1 };

  // Tabs. Setters do nothing for one that isn't there.

  int GetTabCount() const { return rows_.size(); }
  /// Adds a tab behind the others, or before the one at an index, or behind them with -1 or the
  /// count. A null label counts as "". Returns the index; -1 for any other index.
  int AddTab(const char* label, BYTE flags = 0) { return InsertTab(-1, label, flags); }
  int InsertTab(int index, const char* label, BYTE flags = 0);
  /// If it was the current one, none is afterwards. False if there is no such tab.
  bool DeleteTab(int index);
  void DeleteAllTabs();

  /// The tab's label; "" if there is no such tab.
  CString GetTabLabel(int index) const { return CString(rows_.Text(index)); }
  void SetTabLabel(int index, const char* label);
  /// Tabs are enabled at first. A person can't wish for others.
  bool IsTabEnabled(int index) const;
  void EnableTab(int index, bool enable);
  /// A number for the caller's use, 0 at first and for a tab that isn't there.
  std::uintptr_t GetTabData(int index) const { return rows_.Has(index) ? rows_[index].data : 0; }
  void SetTabData(int index, std::uintptr_t data);

  /// The current tab, or -1.
  int GetCurSel() const { return current_; }
  /// Makes a tab the current one, or none with -1, and brings it into sight. False, and no change,
  /// if there is no such tab.
  bool SetCurSel(int index);
  /// The tab that a person has wished for last, or -1.
  int GetWished() const { return wished_; }
  /// A person wishes for the tab; whether it is the current one then.
  bool Choose(int index);

  // Their look.

  bool HasOwnLook() const { return has_own_look_; }
  /// A `TabsStyle`; any other number looks as `kTabsRaised`.
  int GetStyle() const { return style_; }
  void SetStyle(int style);
  static constexpr bool IsFlat(int style) { return style == kTabsFlat || style == kTabsFlatBelow; }
  static constexpr bool LiesBelow(int style) {
    return style == kTabsFlatBelow || style == kTabsRaisedBelow;
  }
  /// The colours of all tabs, and what shows where there are none.
  const TabColors& GetColors() const { return colors_; }
  std::optional<COLORREF> GetBehindColor() const { return behind_; }
  void SetColors(const TabColors& colors, std::optional<COLORREF> behind = {});
  /// Those of one tab. Without any for a tab that isn't there.
  TabColors GetTabColors(int index) const;
  void SetTabColors(int index, const TabColors& colors);
  /// The font of one tab, and of the current tab if that has none of its own; null is the window's.
  /// Not owned.
  CFont* GetTabFont(int index) const;
  void SetTabFont(int index, CFont* font);
  CFont* GetHighlightFont() const { return highlight_font_; }
  void SetHighlightFont(CFont* font);

  // Where they lie, in client coordinates.

  /// How high the window wants to be.
  int GetWantedHeight() const;
  /// Empty for a tab that is out of sight. What isn't wholly in sight is cut off.
  CRect GetTabRect(int index) const { return layout_.GetRect(index); }
  /// All of them.
  std::vector<CRect> GetTabRects() const;
  /// The tab at a point, or -1.
  int HitTest(const CPoint& point) const { return layout_.HitTest(point); }
  /// The first tab in sight, 0 while all fit.
  int GetFirstVisible() const { return layout_.GetFirst(); }
  /// The arrow to tabs before, or behind, those in sight; empty while all fit.
  CRect GetArrowRect(bool forward) const { return layout_.GetButton(forward); }

  void Describe(platform::DialogControl& control) const override;
  /// By the label or by number from 1.
  bool Enter(std::string_view value) override;

 protected:
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnPaint(CDC& dc) override;
  void OnSubclassed(CWnd& former) override;

 private:
  /// What a tab has beside its row.
  struct Look {
    TabColors colors = {};
    CFont* font = nullptr;
  };

  const Look& LookOf(int index) const { return looks_[static_cast<std::size_t>(index)]; }
  Look& LookOf(int index) { return looks_[static_cast<std::size_t>(index)]; }
  CFont* FontOf(int index, bool current) const;
  COLORREF ColorOf(int index, std::optional<COLORREF> TabColors::*color, int system_color) const;
  int WidthOf(int index) const;
  void TakeOwnLook();
  void Redraw();
  void BringIntoSight(int index);
  void PressAt(const CPoint& point);
  /// A person goes to the next tab that is enabled, from the one at an index by steps of 1 or -1.
  void Step(int from, int step);
  void DrawTab(CDC& dc, int index) const;
  void DrawArrow(CDC& dc, bool forward) const;

  detail::RowStore rows_;
  std::deque<Look> looks_;
  int current_ = -1;
  int wished_ = -1;
  detail::TabLayout layout_{*this, [this](int index) { return WidthOf(index); }};
  bool has_own_look_ = false;
  int style_ = kTabsRaised;
  TabColors colors_;
  std::optional<COLORREF> behind_;
  CFont* highlight_font_ = nullptr;
};

}  // namespace dq
