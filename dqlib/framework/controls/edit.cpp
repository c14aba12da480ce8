#include "dqlib/framework/controls/edit.h"

#include <algorithm>

#include "dqlib/framework/base/text.h"

namespace dq {

IMPLEMENT_DYNAMIC(CEdit, CWnd)

void CEdit::SetSel(int start, int end) {
  if (text_.Select(start, end)) Tell(WindowChange::kSelection);
}

void CEdit::GetSel(int& start, int& end) const {
  start = text_.first();
  end = text_.last();
}

DWORD CEdit::GetSel() const {
  if (text_.last() > 0xFFFF) return 0xFFFFFFFF;
  return static_cast<DWORD>(text_.first()) | static_cast<DWORD>(text_.last()) << 16;
}

void CEdit::ReplaceSel(const char* text) {
  text_.Replace(detail::OrEmpty(text));
  TextChanged();
}

void CEdit::LimitText(UINT bytes) {
  text_.SetLimit(bytes);
  Tell(WindowChange::kContent);
}

void CEdit::SetStyle(const EditStyle& style) {
  style_ = style;
  lines_.clear();
  Tell(WindowChange::kContent);
}

void CEdit::SetReadOnly(bool read_only) {
  style_.read_only = read_only;
  Tell(WindowChange::kContent);
}

const std::vector<int>& CEdit::Lines() const {
  if (!lines_.empty()) return lines_;
  lines_.push_back(0);
  const std::string& text = text_.text();
  for (std::size_t at = 0;
       style_.multi_line && (at = text.find("\r\n", at)) != std::string::npos;) {
    at += 2;
    lines_.push_back(static_cast<int>(at));
  }
  return lines_;
}

int CEdit::GetLineCount() const { return static_cast<int>(Lines().size()); }

int CEdit::LineFromChar(int place) const {
  if (place < 0) place = text_.first();
  const std::vector<int>& lines = Lines();
  return static_cast<int>(std::upper_bound(lines.begin(), lines.end(), place) - lines.begin()) - 1;
}

int CEdit::LineIndex(int line) const {
  if (line < 0) line = LineFromChar();
  return line < GetLineCount() ? Lines()[static_cast<std::size_t>(line)] : -1;
}

bool CEdit::Accept(std::string_view entered, std::string& stored) const {
  const auto refused = [&](char character) {
    if (character == '\r' || character == '\n') return !style_.multi_line;
    if (character == '\t') return !style_.multi_line || style_.number;
    if (style_.number) return character < '0' || character > '9';
    return detail::Byte(character) < ' ';
  };
  if (std::any_of(entered.begin(), entered.end(), refused)) return false;
  stored.clear();
  for (std::size_t at = 0; at < entered.size(); ++at) {
    if (entered[at] != '\r' && entered[at] != '\n') {
      stored += entered[at];
      continue;
    }
    if (entered.substr(at).starts_with("\r\n")) ++at;
    stored += "\r\n";
  }
  return true;
}

/// False if the control is gone afterwards.
bool CEdit::TextChanged() {
  modified_ = true;
  lines_.clear();
  Tell(WindowChange::kText);
  Tell(WindowChange::kSelection);
  return Notify(EN_UPDATE) && Notify(EN_CHANGE);
}

/// Tells the parent of a text that is over the limit where it takes the place of so many bytes; it
/// may raise the limit then. False if the control is gone afterwards.
bool CEdit::AskForRoom(std::string_view text, int removed) {
  return text_.Fitting(text, removed) == text.size() || Notify(EN_MAXTEXT);
}

void CEdit::OnTextWasSet() {
  if (!style_.multi_line && Notify(EN_UPDATE)) Notify(EN_CHANGE);
}

bool CEdit::EditText(int first, int removed, std::string_view inserted, int anchor, int caret) {
  std::string stored;
  if (!TakesInput() || style_.read_only || !text_.Has(first, removed)) return false;
  if (!Accept(inserted, stored)) return false;
  const unsigned version = text_.version();
  if (!AskForRoom(stored, removed)) return true;
  if (!TakesInput() || style_.read_only || text_.version() != version) return false;
  const std::size_t taken = text_.Edit(first, removed, stored, anchor, caret);
  if ((taken > 0 || removed > 0) && !TextChanged()) return true;
  return taken == stored.size();
}

bool CEdit::Type(std::string_view text) {
  if (!TakesInput() || style_.read_only) return false;
  if (text.compare("\b") == 0) {
    if (!text_.Backspace()) return false;
    TextChanged();
    return true;
  }
  if (!style_.multi_line) text = text.substr(0, text.find_first_of("\r\n"));
  std::string stored;
  if (text.empty() || !Accept(text, stored)) return false;
  if (!AskForRoom(stored, text_.last() - text_.first())) return true;
  if (!TakesInput() || style_.read_only) return false;
  const std::size_t taken = text_.ReplaceWithin(stored);
  if (taken > 0) TextChanged();
  return taken > 0;
}

void CEdit::Describe(platform::DialogControl& control) const {
  Control::Describe(control);
  control.kind =
      style_.read_only ? platform::DialogControlKind::kText : platform::DialogControlKind::kEdit;
  control.editable = !style_.read_only;
  control.multiple = style_.multi_line;
  control.secret = style_.password;
  control.value = style_.password ? std::string() : text_.text();
}

bool CEdit::Enter(std::string_view value) {
  std::string stored;
  if (!TakesInput() || style_.read_only || !Accept(value, stored)) return false;
  if (stored.size() > text_.limit()) return false;
  if (stored == text_.text()) return true;
  text_.Set(stored);
  text_.Select(text_.size(), text_.size());
  TextChanged();
  return true;
}

LRESULT CEdit::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case EM_SETSEL:
      SetSel(static_cast<int>(wparam), static_cast<int>(lparam));
      return 1;
    case WM_CHAR: {
      const char character = static_cast<char>(wparam);
      Type({&character, 1});
      return 0;
    }
    case WM_GETDLGCODE: {
      const bool wants_it = style_.multi_line && !style_.read_only && wparam == VK_RETURN;
      return DLGC_WANTCHARS | DLGC_HASSETSEL | DLGC_WANTARROWS |
             (wants_it ? UINT{DLGC_WANTALLKEYS} : 0U);
    }
    case WM_SETFOCUS:
      Notify(EN_SETFOCUS);
      return 0;
    case WM_KILLFOCUS:
      Notify(EN_KILLFOCUS);
      return 0;
    default:
      return Control::DefWindowProc(message, wparam, lparam);
  }
}

void CEdit::OnSetText(const char* text) {
  const bool moved = text_.first() != 0 || text_.last() != 0;
  text_.Set(text);
  modified_ = false;
  lines_.clear();
  if (moved) Tell(WindowChange::kSelection);
}

void CEdit::OnSubclassed(CWnd& former) {
  Control::OnSubclassed(former);
  if (const CEdit* const edit = DYNAMIC_DOWNCAST(CEdit, &former)) {
    text_ = edit->text_;
    style_ = edit->style_;
    modified_ = edit->modified_;
    lines_.clear();
  }
}

}  // namespace dq
