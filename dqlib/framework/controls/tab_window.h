// Windows of which a person sees one at a time, chosen by tabs.
//
//   SEC3DTabWnd tabs;
//   tabs.Create(&frame);
//   tabs.ActivateTab(tabs.AddTab(RUNTIME_CLASS(CResultView), "Result", &context));

#pragma once

#include <memory>
#include <unordered_map>

#include "dqlib/framework/controls/tab_control.h"
#include "dqlib/framework/windows/control_bar.h"
#include "dqlib/framework/windows/view.h"

namespace dq {

/// Where the strip of a tab window lies.
enum SECTabStyle : DWORD {
  /// Nowhere: the windows have all the room.
  TWS_NO_TABS = 0,
  TWS_TABS_ON_TOP = 1,
  TWS_TABS_ON_BOTTOM = 2,
};

/// How much room the strip of a tab window has.
struct SECTabSizes {
  /// Pixels: its height, and what is left free before the first tab. Below 0 counts as 0.
  int height = 0;
  int margin = 0;
  /// A `SECTabStyle`; other numbers count by the bit of `TWS_TABS_ON_BOTTOM`.
  DWORD style = TWS_NO_TABS;

  friend bool operator==(const SECTabSizes&, const SECTabSizes&) = default;
};

/// A strip of tabs, and a window for each of them, of which that of the active tab is shown. In a
/// frame it has the id `kFirstPaneId` and fills what the control bars leave. Indexes count from 0;
/// for a tab that isn't there operations do nothing and answer false, -1, 0, null or "". What the
/// windows notify by `WM_COMMAND` and `WM_NOTIFY` goes on to the parent.
///
/// A tab whose window has ended stays, without one. Handlers may change the tabs, and end this
/// window, while an operation calls them: what was to follow for a tab that is gone is left out.
class SEC3DTabWnd : public CWnd {
  DECLARE_DYNCREATE(SEC3DTabWnd)
  SEC3DTabWnd();
  ~SEC3DTabWnd() override;

  /// The strip's id.
  static constexpr int kStripId = 0xE8FF;

  /// Makes the window and its strip, at the top. False if it is made already or can't be.
  bool Create(CWnd* parent, int id = kFirstPaneId);

  /// Adds a tab before another one, or behind all, for a window that is made here by its class: a
  /// view, which has the context's document and deletes itself with its window, or any other
  /// window, whose object is this one's. The first form adds it behind all. It isn't shown before
  /// the tab is the active one. Where the class makes no window, the tab has none. Returns the
  /// tab's index; -1, and nothing is made, for another index, and if handlers have ended this
  /// window.
  int AddTab(const CRuntimeClass* window_class, const char* label,
             const CCreateContext* context = nullptr);
  int InsertTab(int index, const CRuntimeClass* window_class, const char* label,
                const CCreateContext* context = nullptr);
  /// The same for a window that is there, which moves into this one and stays its maker's. -1 for
  /// one that isn't made, has a tab here already or lies around this one.
  int AddTab(CWnd* window, const char* label);
  int InsertTab(int index, CWnd* window, const char* label);

  /// Takes a tab out; its window stays here, hidden. If it was the active one, the next one becomes
  /// active, or at the end the last one.
  bool RemoveTab(int index);
  /// Ends a window of this one, and its object if that was made here. Nothing for a dead handle.
  void EndTabWindow(HWND window);

  /// Makes a tab the active one and shows its window, whose view becomes the frame's active one.
  /// Where the focus was in the window before, it moves to this one. True if the tab is there.
  bool ActivateTab(int index);
  int GetActiveTab() const { return control_->GetActiveTab(); }
  int GetTabCount() const { return control_->GetTabCount(); }
  /// See `SECTabControlBase`. The window is null where there is none.
  bool GetTabInfo(int index, CString& label, bool& selected, CWnd*& window,
                  const void*& extra) const {
    return control_->GetTabInfo(index, label, selected, window, extra);
  }
  CWnd* GetTabWindow(int index) const { return control_->GetTabWindow(index); }
  /// The tab of a window, or -1.
  int FindTab(const CWnd* window) const;
  void ScrollToTab(int index) { control_->ScrollToTab(index); }
  /// The strip, which has the labels, icons and extra data. It is made with the window.
  SEC3DTabControl& GetTabControl() { return *control_; }
  const SEC3DTabControl& GetTabControl() const { return *control_; }

  const SECTabSizes& GetTabSizes() const { return sizes_; }
  void SetTabSizes(const SECTabSizes& sizes);
  /// What the strip leaves for the windows, in client coordinates.
  CRect GetInsideRect() const;
  /// Lays out the strip and the window that is shown.
  virtual void RecalcLayout();

 protected:
  /// With a strip of a derived class.
  explicit SEC3DTabWnd(std::unique_ptr<SEC3DTabControl> control);

  /// Right after a tab has come in at an index (`by` 1), or gone from there (-1): indexes that the
  /// class holds follow. It mustn't call handlers.
  virtual void OnTabsShift(int /*index*/, int /*by*/) {}
  /// Another tab is the active one, or none, and its window is shown. The base does nothing.
  virtual void OnTabActivated() {}

  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnPaint(CDC& dc) override;

 private:
  void ForgetTabs();
  CRect StripRect() const;
  HWND MakeWindow(const CRuntimeClass* window_class, const CCreateContext* context);
  int EnterTab(int index, HWND window, const char* label);
  void OnTabChosen();
  void ShowActiveTab(bool by_person);
  void MakeViewActive(CWnd* window);
  CWnd* PageOf(HWND window) const;
  void HideWindow(HWND window);

  std::unique_ptr<SEC3DTabControl> control_;
  SECTabSizes sizes_;
  /// The window that is shown.
  HWND shown_ = nullptr;
  int next_id_ = 0;
  /// Objects that were made here and don't delete themselves.
  std::unordered_map<HWND, std::unique_ptr<CWnd>> made_;
};

}  // namespace dq
