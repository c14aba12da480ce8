#include "dqlib/toolkit/tree_edit.h"

#include "dqlib/framework/windows/message_box.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/resources/string_ids.h"
#include "dqlib/toolkit/tree.h"

namespace dq {

using detail::Watched;

IMPLEMENT_DYNAMIC(CDQTreeEdit, CEdit)

void CDQTree::EditCell(int row, int column) {
  if (row == -1) row = GetCaret();
  if (!HasCell(row, column)) return;
  const Watched self(*this);
  if (m_pEdit != nullptr) {
    OnValidateEdit();
    // What was typed there isn't good yet.
    if (!self.IsThere() || m_pEdit != nullptr) return;
  }
  FollowRow(row);
  m_nEditCol = column;
  CRect place;
  if (!GetCellRect(GetEditIndex(), m_nEditCol, &place, true)) {
    EnsureRowVisible(GetEditIndex());
    if (self.IsThere()) EnsureCellVisible(GetEditIndex(), m_nEditCol);
    if (!self.IsThere() || !GetCellRect(GetEditIndex(), m_nEditCol, &place, true)) return;
  }
  Invalidate();
  auto edit = std::make_unique<CDQTreeEdit>(
      m_textColor == CellStyle::kNoColor ? GetSysColor(COLOR_WINDOWTEXT) : m_textColor);
  if (!edit->CreateWnd({.class_name = "Edit",
                        .place = place,
                        .parent = this,
                        .id = CDQTreeEdit::kId,
                        .visible = false})) {
    return;
  }
  m_pEdit = std::move(edit);
  m_pEdit->SetFont(GetFont());
  m_pEdit->SetWindowText(CellText(GetEditIndex(), m_nEditCol));
  m_pEdit->SetSel(0, -1);
  m_pEdit->ShowWindow(SW_SHOW);
  if (self.IsThere() && m_pEdit != nullptr) m_pEdit->SetFocus();
}

LRESULT CDQTree::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  const Watched self(*this);
  const LRESULT result = CSftTree::DefWindowProc(message, wparam, lparam);
  const bool scrolls = message == WM_VSCROLL || message == WM_HSCROLL || message == WM_MOUSEWHEEL ||
                       message == WM_SIZE;
  if (scrolls && self.IsThere() && m_pEdit != nullptr) PlaceEditor();
  return result;
}

/// The editor goes with its cell, and ends as by a loss of the focus where that can't be seen.
void CDQTree::PlaceEditor() {
  CRect place;
  if (GetCellRect(GetEditIndex(), m_nEditCol, &place, true)) {
    m_pEdit->MoveWindow(place);
  } else {
    OnValidateEdit();
  }
}

LRESULT CDQTree::OnPlaceEditor(WPARAM, LPARAM) {
  if (m_pEdit != nullptr) PlaceEditor();
  return 0;
}

void CDQTree::OnLayoutChanged() {
  if (m_pEdit == nullptr || m_bValidating) return;
  CRect place;
  if (GetEditIndex() < 0) {
    ResetEditCtrl();
  } else if (GetCellRect(GetEditIndex(), m_nEditCol, &place, true)) {
    m_pEdit->MoveWindow(place);
  } else {
    // A complaint about its text mustn't come in the middle of a change of the rows.
    PostMessage(kTreePlaceEditor);
  }
}

void CDQTree::ResetEditCtrl() {
  // It hears of its end, and mustn't begin another one then.
  const std::unique_ptr<CDQTreeEdit> edit = std::move(m_pEdit);
}

bool CDQTree::ValidateEdit(int row, const char* text) {
  if ((text == nullptr || *text == '\0') && !m_bAllowEmptyEdit) {
    AfxMessageBox(IDS_ITEM_NAME_EMPTY, BOX_EXCLAMATION);
    return false;
  }
  // Only the first column has the name.
  return m_nEditCol != 0 || !IsFolder(row) || !IsDuplicateFolderName(row, text);
}

bool CDQTree::IsDuplicateFolderName(int row, const char* name) {
  const std::string_view wanted = name == nullptr ? "" : name;
  const auto is_same = [&](int other) { return IsFolder(other) && CellText(other, 0) == wanted; };
  for (int at = GetPrevSibling(row); at >= 0; at = GetPrevSibling(at)) {
    if (is_same(at)) return true;
  }
  for (int at = GetNextSibling(row); at >= 0; at = GetNextSibling(at)) {
    if (is_same(at)) return true;
  }
  return false;
}

BOOL CDQTree::OnValidateEdit() {
  if (m_pEdit == nullptr || m_bValidating) return 1;
  const Watched self(*this);
  const detail::SetWhile validating(*this, m_bValidating);
  const CString text = m_pEdit->GetWindowText();
  const bool good = ValidateEdit(GetEditIndex(), text);
  if (!self.IsThere() || m_pEdit == nullptr) return 1;
  if (GetEditIndex() < 0) {
    // The row has gone meanwhile.
    ResetEditCtrl();
    return 1;
  }
  if (!good) {
    m_pEdit->SetFocus();
    return 1;
  }
  OnUpdateEdit(GetEditIndex(), text);
  if (self.IsThere()) ResetEditCtrl();
  return 1;
}

void CDQTree::OnUpdateEdit(int row, const char* text) { SetText(row, m_nEditCol, text); }

BOOL CDQTree::OnQuitEdit() {
  ResetEditCtrl();
  return 1;
}

CDQTreeEdit::~CDQTreeEdit() {
  m_bEnding = true;
  EndInDestructor();
}

bool CDQTreeEdit::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  static constexpr MessageMapEntry kEntries[] = {
      MessageEntry<&CDQTreeEdit::OnKeyDown>(WM_KEYDOWN),
      MessageEntry<&CDQTreeEdit::OnChar>(WM_CHAR),
      MessageEntry<&CDQTreeEdit::OnKillFocus>(WM_KILLFOCUS),
      MessageEntry<&CDQTreeEdit::OnGetDlgCode>(WM_GETDLGCODE),
  };
  return CallEntry(kEntries, *this, key, arguments) || CEdit::CallMapped(key, arguments);
}

/// As a notification of the tree, which gets it first. It may end this editor.
void CDQTreeEdit::TellTree(int code) {
  CDQTree* const tree = DYNAMIC_DOWNCAST(CDQTree, GetParent());
  if (tree == nullptr || m_bEnding) return;
  if (tree->GetParent() != nullptr) {
    tree->NotifyParent(code);
  } else {
    tree->SendMessage(kTreeReflectedCommand,
                      MakeWParam(static_cast<UINT>(tree->GetDlgCtrlID()), static_cast<UINT>(code)),
                      reinterpret_cast<LPARAM>(tree->GetSafeHwnd()));
  }
}

LRESULT CDQTreeEdit::OnKeyDown(WPARAM key, LPARAM lparam) {
  switch (key) {
    case VK_RETURN:
    case VK_TAB:
      TellTree(kTreeValidateEdit);
      return 0;
    case VK_ESCAPE:
      TellTree(kTreeQuitEdit);
      return 0;
    default:
      return CEdit::DefWindowProc(WM_KEYDOWN, key, lparam);
  }
}

LRESULT CDQTreeEdit::OnChar(WPARAM character, LPARAM lparam) {
  // Those of the keys above.
  if (character == VK_RETURN || character == VK_TAB || character == VK_ESCAPE) return 0;
  return CEdit::DefWindowProc(WM_CHAR, character, lparam);
}

LRESULT CDQTreeEdit::OnKillFocus(WPARAM wparam, LPARAM lparam) {
  const Watched self(*this);
  CEdit::DefWindowProc(WM_KILLFOCUS, wparam, lparam);
  if (self.IsThere()) TellTree(kTreeValidateEdit);
  return 0;
}

LRESULT CDQTreeEdit::OnGetDlgCode(WPARAM, LPARAM) {
  return DLGC_WANTALLKEYS | DLGC_WANTTAB | DLGC_WANTARROWS | DLGC_WANTCHARS | DLGC_HASSETSEL;
}

}  // namespace dq
