// The editor in a cell of a tree.

#pragma once

#include "dqlib/framework/controls/edit.h"
#include "dqlib/platform/types.h"

namespace dq {

/// The editor in a cell. Enter, Tab and a loss of the focus offer its text to the tree by
/// `kTreeValidateEdit`, Escape gives it up by `kTreeQuitEdit`. It has the tree's font.
class CDQTreeEdit : public CEdit {
  DECLARE_DYNAMIC(CDQTreeEdit)
  /// The id that it has in its tree.
  static constexpr int kId = 1111;

  explicit CDQTreeEdit(COLORREF text_color) : m_textColor(text_color) {}
  ~CDQTreeEdit() override;

  COLORREF GetTextColor() const { return m_textColor; }

 protected:
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;

 private:
  LRESULT OnKeyDown(WPARAM key, LPARAM lparam);
  LRESULT OnChar(WPARAM character, LPARAM lparam);
  LRESULT OnKillFocus(WPARAM wparam, LPARAM lparam);
  LRESULT OnGetDlgCode(WPARAM, LPARAM);
  void TellTree(int code);

  const COLORREF m_textColor;
  bool m_bEnding = false;
};

}  // namespace dq
