#include "dqlib/framework/controls/edit_model.h"

#include <algorithm>

#include "dqlib/framework/base/text.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

void EditModel::SetSel(int start, int end) {
  if (text_.Select(start, end)) TellEdit(WindowChange::kSelection);
}

void EditModel::GetSel(int& start, int& end) const {
  start = text_.first();
  end = text_.last();
}

DWORD EditModel::GetSel() const {
  if (text_.last() > 0xFFFF) return 0xFFFFFFFF;
  return static_cast<DWORD>(text_.first()) | static_cast<DWORD>(text_.last()) << 16;
}

void EditModel::ReplaceSel(const char* text) {
  text_.Replace(detail::OrEmpty(text));
  TextChanged();
}

void EditModel::LimitText(UINT bytes) {
  text_.SetLimit(bytes);
  TellEdit(WindowChange::kContent);
}

void EditModel::SetStyle(const EditStyle& style) {
  style_ = style;
  lines_.clear();
  TellEdit(WindowChange::kContent);
}

void EditModel::SetReadOnly(bool read_only) {
  style_.read_only = read_only;
  TellEdit(WindowChange::kContent);
}

const std::vector<int>& EditModel::Lines() const {
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

int EditModel::GetLineCount() const { return static_cast<int>(Lines().size()); }

int EditModel::LineFromChar(int place) const {
  if (place < 0) place = text_.first();
  const std::vector<int>& lines = Lines();
  return static_cast<int>(std::upper_bound(lines.begin(), lines.end(), place) - lines.begin()) - 1;
}

int EditModel::LineIndex(int line) const {
  if (line < 0) line = LineFromChar();
  return line < GetLineCount() ? Lines()[static_cast<std::size_t>(line)] : -1;
}

bool EditModel::Accept(std::string_view entered, std::string& stored) const {
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
bool EditModel::TextChanged() {
  modified_ = true;
  lines_.clear();
  TellEdit(WindowChange::kText);
  TellEdit(WindowChange::kSelection);
  return NotifyEdit(EN_UPDATE) && NotifyEdit(EN_CHANGE);
}

/// Tells the parent of a text that is over the limit where it takes the place of so many bytes; it
/// may raise the limit then. False if the control is gone afterwards.
bool EditModel::AskForRoom(std::string_view text, int removed) {
  return text_.Fitting(text, removed) == text.size() || NotifyEdit(EN_MAXTEXT);
}

void EditModel::NotifyTextWasSet() {
  if (!style_.multi_line && NotifyEdit(EN_UPDATE)) NotifyEdit(EN_CHANGE);
}

bool EditModel::EditText(int first, int removed, std::string_view inserted, int anchor, int caret) {
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

bool EditModel::Type(std::string_view text) {
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

void EditModel::DescribeEdit(platform::DialogControl& control) const {
  control.kind =
      style_.read_only ? platform::DialogControlKind::kText : platform::DialogControlKind::kEdit;
  control.editable = !style_.read_only;
  control.multiple = style_.multi_line;
  control.secret = style_.password;
  control.value = style_.password ? std::string() : text_.text();
}

bool EditModel::EnterText(std::string_view value) {
  std::string stored;
  if (!TakesInput() || style_.read_only || !Accept(value, stored)) return false;
  if (stored.size() > text_.limit()) return false;
  if (stored == text_.text()) return true;
  text_.Set(stored);
  text_.Select(text_.size(), text_.size());
  TextChanged();
  return true;
}

void EditModel::SetText(const char* text) {
  const bool moved = text_.first() != 0 || text_.last() != 0;
  text_.Set(text);
  modified_ = false;
  lines_.clear();
  if (moved) TellEdit(WindowChange::kSelection);
}

void EditModel::CopyFrom(const EditModel& former) {
  text_ = former.text_;
  style_ = former.style_;
  modified_ = former.modified_;
  lines_.clear();
}

bool EditModel::TakesInput() const {
  return window_.GetSafeHwnd() != nullptr && window_.IsWindowEnabled();
}

// ---- Messages

namespace {

/// A character that comes with a combination of keys, which commands something.
bool IsCommand(char character) {
  const bool edits =
      character == '\b' || character == '\t' || character == '\r' || character == '\n';
  return !edits && (detail::Byte(character) < ' ' || character == '\x7F');
}

}  // namespace

std::optional<LRESULT> EditModel::AnswerEdit(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case EM_GETSEL:
      if (DWORD* const start = reinterpret_cast<DWORD*>(wparam)) *start = text_.first();
      if (DWORD* const end = reinterpret_cast<DWORD*>(lparam)) *end = text_.last();
      return text_.last() > 0xFFFF ? -1 : static_cast<LRESULT>(GetSel());
    case EM_SETSEL:
      SetSel(static_cast<int>(wparam), static_cast<int>(lparam));
      return 1;
    case EM_REPLACESEL:
      ReplaceSel(reinterpret_cast<const char*>(lparam));
      return 0;
    case WM_CHAR: {
      const char character = static_cast<char>(wparam);
      if (IsCommand(character)) return std::nullopt;
      Type({&character, 1});
      return 0;
    }
    case WM_KEYDOWN:
      if (detail::IsKeyOffered(window_) || !KeyDown(wparam)) return std::nullopt;
      return 0;
    case WM_GETDLGCODE: {
      const bool wants_it = style_.multi_line && !style_.read_only && wparam == VK_RETURN;
      return DLGC_WANTCHARS | DLGC_HASSETSEL | DLGC_WANTARROWS |
             (wants_it ? UINT{DLGC_WANTALLKEYS} : 0U);
    }
    default:
      return std::nullopt;
  }
}

bool EditModel::MoveCaret(int place, bool extends) {
  SetSel(extends ? text_.anchor() : place, place);
  return true;
}

bool EditModel::KeyDown(WPARAM key) {
  if (!TakesInput()) return false;
  const bool extends = IsKeyDown(VK_SHIFT);
  const bool whole = IsKeyDown(VK_CONTROL);
  const bool drops = !extends && text_.first() != text_.last();
  const int caret = text_.caret();
  switch (key) {
    case VK_LEFT:
      return MoveCaret(drops ? text_.first() : text_.Before(caret), extends);
    case VK_RIGHT:
      return MoveCaret(drops ? text_.last() : text_.Behind(caret), extends);
    case VK_HOME:
      return MoveCaret(whole ? 0 : LineIndex(LineFromChar(caret)), extends);
    case VK_END: {
      const int next = LineIndex(LineFromChar(caret) + 1);
      return MoveCaret(whole || next < 0 ? text_.size() : text_.Before(next), extends);
    }
    case VK_DELETE:
      if (extends || style_.read_only) return false;
      if (text_.Delete()) TextChanged();
      return true;
    default:
      return false;
  }
}

}  // namespace dq
