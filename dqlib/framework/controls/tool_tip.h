// Tool tips: texts that explain windows.

#pragma once

#include <unordered_map>

#include "dqlib/framework/controls/control.h"

namespace dq {

/// The tool tips of a dialog or frame. Window class "ToolTip". Its tools are windows, known by
/// their handles; those of windows that ended are dropped when others come. A window layer finds
/// the text of a tool by `CWnd::GetToolTip`.
class CToolTipCtrl : public Control {
  DECLARE_DYNAMIC(CToolTipCtrl)
  bool IsTabStop() const override { return false; }

  /// Makes the window, owned by the parent's top-level window.
  bool Create(CWnd* parent);

  /// Adds a window with its text, or replaces the text; null counts as "". The second form takes
  /// the text from the string with the id. False if the window isn't made.
  bool AddTool(CWnd* window, const char* text);
  bool AddTool(CWnd* window, UINT text_id);
  void DelTool(CWnd* window);
  int GetToolCount() const { return static_cast<int>(texts_.size()); }

  /// The text of a tool; "" if it isn't one. Updating a window that isn't a tool does nothing.
  CString GetText(const CWnd* window) const;
  void GetText(CString& text, const CWnd* window) const { text = GetText(window); }
  void UpdateTipText(const char* text, const CWnd* window);
  void UpdateTipText(UINT text_id, const CWnd* window);

  /// Whether tool tips are shown; true at first.
  void Activate(bool active);
  bool IsActive() const { return active_; }

 protected:
  void OnSubclassed(CWnd& former) override;

 private:
  void Show(HWND tool) const;
  void ShowAll() const;

  std::unordered_map<HWND, CString> texts_;
  /// How many tools there may be before those of windows that ended are looked for.
  std::size_t sweep_at_ = 16;
  bool active_ = true;
};

}  // namespace dq
