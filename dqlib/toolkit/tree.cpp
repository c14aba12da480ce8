#include "dqlib/toolkit/tree.h"

#include <charconv>
#include <cstring>
#include <utility>

#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/toolkit/tree_edit.h"

namespace dq {

using detail::Watched;

IMPLEMENT_DYNCREATE(CDQTree, CSftTree)

CDQTree::CDQTree() = default;

CDQTree::~CDQTree() { EndInDestructor(); }

bool CDQTree::Create(DWORD style, const CRect& rect, CWnd* parent, UINT id) {
  if (!CreateWnd({.class_name = "SftTree",
                  .place = rect,
                  .parent = parent,
                  .id = static_cast<int>(id),
                  .enabled = (style & kDisabledStyle) == 0})) {
    return false;
  }
  const Watched self(*this);
  SetDefaultStyle();
  if (self.IsThere()) SetDefaultFont();
  return self.IsThere();
}

bool CDQTree::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  static constexpr MessageMapEntry kEntries[] = {
      CommandEntry<&CDQTree::OnFileSave>(ID_FILE_SAVE),
      CommandEntry<&CDQTree::OnFilePrint>(ID_FILE_PRINT),
      CommandEntry<&CDQTree::OnEditCopy>(ID_EDIT_COPY),
      ReflectedEntry<&CDQTree::OnLButtonExpandCollapse>(kTreeButtonDown),
      ReflectedEntry<&CDQTree::OnLButtonExpandCollapse>(kTreeButtonDoubleClick),
      ReflectedEntry<&CDQTree::OnLButtonExpandCollapse>(kTreePictureDoubleClick),
      ReflectedEntry<&CDQTree::OnLButtonExpandCollapse>(kTreeTextDoubleClick),
      ReflectedEntry<&CDQTree::OnHeaderButtonDown>(kTreeHeaderDown),
      ReflectedEntry<&CDQTree::OnDragging>(kTreeBeginDrag),
      ReflectedEntry<&CDQTree::OnDragging>(kTreeDragging),
      ReflectedEntry<&CDQTree::OnEndDrag>(kTreeEndDrag),
      ReflectedEntry<&CDQTree::OnCancelDrag>(kTreeCancelDrag),
      ReflectedEntry<&CDQTree::OnQuitEdit>(kTreeQuitEdit),
      ReflectedEntry<&CDQTree::OnValidateEdit>(kTreeValidateEdit),
      MessageEntry<&CDQTree::OnReflectedCommand>(kTreeReflectedCommand),
      MessageEntry<&CDQTree::OnKeyToItem>(kTreeKeyToItem),
      MessageEntry<&CDQTree::OnKeyDown>(WM_KEYDOWN),
      MessageEntry<&CDQTree::OnSetCaret>(kTreeSetCaret),
      MessageEntry<&CDQTree::OnPlaceEditor>(kTreePlaceEditor),
  };
  return CallEntry(kEntries, *this, key, arguments) || CSftTree::CallMapped(key, arguments);
}

LRESULT CDQTree::OnReflectedCommand(WPARAM wparam, LPARAM lparam) {
  LRESULT result = 0;
  return OnChildNotify(WM_COMMAND, wparam, lparam, &result);
}

LRESULT CDQTree::OnKeyToItem(WPARAM wparam, LPARAM) {
  // The row has all the bits behind those of the key.
  return VKeyToItem(LoWord(wparam), static_cast<UINT>(wparam >> 16));
}

int CDQTree::VKeyToItem(UINT key, UINT) {
  int code = 0;
  if (key == VK_INSERT) code = kTreeInsertKey;
  if (key == VK_DELETE || key == VK_SUBTRACT) code = kTreeDeleteKey;
  if (key == VK_ADD) code = kTreeExpandKey;
  if (code == 0) return -1;
  NotifyParent(code);
  return -2;
}

LRESULT CDQTree::OnKeyDown(WPARAM key, LPARAM lparam) {
  const Watched self(*this);
  const bool control = IsKeyDown(VK_CONTROL);
  const bool shift = IsKeyDown(VK_SHIFT);
  if (control && !shift && (key == VK_INSERT || key == 'C' || key == 'c')) Copy();
  return self.IsThere() ? CSftTree::DefWindowProc(WM_KEYDOWN, key, lparam) : 0;
}

LRESULT CDQTree::OnSetCaret(WPARAM row, LPARAM) {
  const int caret = static_cast<int>(row);
  if (SetCaret(caret) && IsRowShown(caret)) EnsureRowVisible(caret);
  return 0;
}

void CDQTree::SetDefaultStyle() {
  ShowTreeLines(true);
  ShowButtons(true);
  ShowHeader(true);
}

void CDQTree::SetDefaultFont(CFont* font) {
  SetFont(font);
  // Cells have it by its address.
  if (m_pBoldFont != nullptr) GetBoldFont();
}

void CDQTree::SetColors(COLORREF text, COLORREF background, COLORREF selected_text,
                        COLORREF selected_background) {
  m_textColor = text;
  CSftTree::SetColors(text, background, selected_text, selected_background);
}

bool CDQTree::IsLeaf(int row) const { return HasRow(row) && !IsFolder(row); }

bool CDQTree::IsFolder(int row) const { return HasChildren(row); }

bool CDQTree::IsRoot(int row) const { return HasRow(row) && GetLevel(row) == 0; }

BOOL CDQTree::OnLButtonExpandCollapse() {
  const int row = GetCaret();
  if (!m_bHandleExpandCollapse || !HasChildren(row)) return 0;
  const bool expanded = IsExpanded(row);
  if (!m_bDragAllowed && expanded && GetLevel(row) == 0) return 1;
  Expand(row, !expanded, IsKeyDown(VK_CONTROL));
  return 1;
}

// Texts.

int CDQTree::AddString(const char* text) { return AddRow(text); }

int CDQTree::AddString(int number) { return AddString(std::to_string(number).c_str()); }

bool CDQTree::GetText(int row, int column, CString& text) const {
  if (!HasCell(row, column)) return false;
  text = CellText(row, column);
  return true;
}

bool CDQTree::GetText(int row, int column, int& number) const {
  CString text;
  if (!GetText(row, column, text)) return false;
  const auto [begin, end] = std::pair(text.View().data(), text.View().data() + text.GetLength());
  if (std::from_chars(begin, end, number).ec != std::errc()) number = 0;
  return true;
}

bool CDQTree::SetText(int row, int column, const char* text) {
  return SetCellText(row, column, text);
}

bool CDQTree::SetText(int row, int column, int number) {
  return SetText(row, column, std::to_string(number).c_str());
}

int CDQTree::FindTextA(int column, const char* text) const {
  if (text == nullptr || !HasCell(0, column)) return -1;
  const int count = GetCount();
  for (int row = 0; row < count; ++row) {
    if (std::strcmp(CellText(row, column), text) == 0) return row;
  }
  return -1;
}

}  // namespace dq
