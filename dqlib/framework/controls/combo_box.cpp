#include "dqlib/framework/controls/combo_box.h"

#include <algorithm>
#include <utility>

namespace dq {

IMPLEMENT_DYNAMIC(CComboBox, CWnd)

int CComboBox::GetLBText(int index, CString& text) const {
  text = GetLBText(index);
  return GetLBTextLen(index);
}

int CComboBox::GetLBTextLen(int index) const {
  return rows_.Has(index) ? static_cast<int>(rows_.Text(index).size()) : -1;
}

int CComboBox::SetCurSel(int index) {
  if (!rows_.Has(index)) index = -1;
  const bool same = index == current_ && OnGetText().View() == rows_.Text(index);
  current_ = index;
  if (same) return index;
  if (!list_only_) text_.Set(rows_.Text(index));
  TellText();
  return index;
}

void CComboBox::TellText() {
  Tell(WindowChange::kSelection);
  Tell(WindowChange::kText);
}

int CComboBox::SelectString(int after, const char* text) {
  const int found = FindString(after, text);
  return found < 0 ? -1 : SetCurSel(found);
}

DWORD CComboBox::GetEditSel() const {
  if (list_only_ || text_.last() > 0xFFFF) return 0xFFFFFFFF;
  return static_cast<DWORD>(text_.first()) | static_cast<DWORD>(text_.last()) << 16;
}

bool CComboBox::SetEditSel(int start, int end) {
  if (list_only_) return false;
  if (text_.Select(start, end)) Tell(WindowChange::kSelection);
  return true;
}

bool CComboBox::LimitText(int bytes) {
  text_.SetLimit(static_cast<UINT>(std::max(0, bytes)));
  Tell(WindowChange::kContent);
  return true;
}

void CComboBox::ShowDropDown(bool show) {
  if (show == dropped_) return;
  if (!Notify(show ? CBN_DROPDOWN : CBN_SELENDCANCEL) || show == dropped_) return;
  dropped_ = show;
  Tell(WindowChange::kContent);
  if (!show) Notify(CBN_CLOSEUP);
}

bool CComboBox::DropDown(bool show) {
  if (!TakesInput()) return false;
  ShowDropDown(show);
  return true;
}

int CComboBox::GetDroppedWidth() const { return std::max(dropped_width_, GetPlace().Width()); }

int CComboBox::SetDroppedWidth(UINT width) {
  // As much as a screen coordinate may be.
  constexpr UINT kMost = 0x7FFF;
  dropped_width_ = static_cast<int>(std::min(width, kMost));
  Tell(WindowChange::kContent);
  return GetDroppedWidth();
}

void CComboBox::GetDroppedControlRect(CRect* rect) const {
  *rect = GetWindowRect();
  rect->right = detail::WrappingSum(rect->left, GetDroppedWidth());
}

bool CComboBox::Choose(int index) {
  if (!TakesInput() || !rows_.Has(index)) return false;
  const bool other = index != current_;
  SetCurSel(index);
  if (!Notify(CBN_SELENDOK)) return true;
  if (std::exchange(dropped_, false)) {
    Tell(WindowChange::kContent);
    if (!Notify(CBN_CLOSEUP)) return true;
  }
  if (other) Notify(CBN_SELCHANGE);
  return true;
}

bool CComboBox::Accepts(std::string_view entered) const {
  return !list_only_ && TakesInput() && std::ranges::none_of(entered, [](char character) {
    return static_cast<unsigned char>(character) < ' ';
  });
}

bool CComboBox::EditText(int first, int removed, std::string_view inserted, int anchor, int caret) {
  if (!Accepts(inserted) || !text_.Has(first, removed)) return false;
  const std::size_t taken = text_.Edit(first, removed, inserted, anchor, caret);
  if (taken > 0 || removed > 0) TextEdited();
  return taken == inserted.size();
}

/// The edit part has another text, which no choice of a row has brought.
void CComboBox::TextEdited() {
  current_ = -1;
  TellText();
  OnTextWasSet();
}

void CComboBox::OnTextWasSet() {
  if (!list_only_ && Notify(CBN_EDITUPDATE)) Notify(CBN_EDITCHANGE);
}

void CComboBox::Describe(platform::DialogControl& control) const {
  RowControl::Describe(control);
  control.kind = platform::DialogControlKind::kCombo;
  control.items = rows_.Texts();
  control.editable = !list_only_;
  control.value = OnGetText().View();
}

bool CComboBox::Enter(std::string_view value) {
  if (list_only_) return Choose(rows_.FindNamed(value));
  if (!Accepts(value)) return false;
  const int row = rows_.FindExact(-1, value);
  if (row >= 0 && rows_.Text(row) == value) return Choose(row);
  if (value.size() > text_.limit()) return false;
  if (text_.text() == value) return true;
  text_.Set(value);
  text_.Select(text_.size(), text_.size());
  TextEdited();
  return true;
}

LRESULT CComboBox::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case EM_SETSEL:
      return SetEditSel(static_cast<int>(wparam), static_cast<int>(lparam)) ? 1 : 0;
    case CB_GETDROPPEDCONTROLRECT:
      if (lparam == 0) return 0;
      GetDroppedControlRect(reinterpret_cast<CRect*>(lparam));
      return 1;
    case WM_GETDLGCODE: {
      // While the list is dropped down, they end that.
      const bool wants_it = dropped_ && (wparam == VK_RETURN || wparam == VK_ESCAPE);
      return DLGC_WANTCHARS | DLGC_WANTARROWS | (wants_it ? UINT{DLGC_WANTALLKEYS} : 0U);
    }
    case WM_SETFOCUS:
      Notify(CBN_SETFOCUS);
      return 0;
    case WM_KILLFOCUS: {
      const HWND self = GetSafeHwnd();
      ShowDropDown(false);
      if (FromHandle(self) == this) Notify(CBN_KILLFOCUS);
      return 0;
    }
    default:
      return RowControl::DefWindowProc(message, wparam, lparam);
  }
}

CString CComboBox::OnGetText() const {
  return list_only_ ? CString(rows_.Text(current_)) : CString(text_.text());
}

void CComboBox::OnSetText(const char* text) {
  if (list_only_) return;
  const bool moved = text_.first() != 0 || text_.last() != 0;
  const bool left = current_ >= 0 && rows_.Text(current_).compare(text) != 0;
  text_.Set(text);
  if (left) current_ = -1;
  if (moved || left) Tell(WindowChange::kSelection);
}

void CComboBox::OnRowsGone(bool had_current) {
  const bool had_text = !text_.text().empty();
  text_.Set("");
  if (had_current || had_text) TellText();
}

void CComboBox::OnSubclassed(CWnd& former) {
  RowControl::OnSubclassed(former);
  if (const CComboBox* const combo = DYNAMIC_DOWNCAST(CComboBox, &former)) {
    text_ = combo->text_;
    list_only_ = combo->list_only_;
    dropped_ = combo->dropped_;
    dropped_width_ = combo->dropped_width_;
  }
}

}  // namespace dq
