// Lists and trees: messages, the keyboard, and what answers to prompts do.

#include <algorithm>
#include <utility>

#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/base/text.h"
#include "dqlib/framework/controls/row_store.h"
#include "dqlib/framework/controls/sft_tree.h"
#include "dqlib/framework/controls/tree_columns.h"
#include "dqlib/framework/controls/tree_rows.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/platform/platform.h"

namespace dq {

using detail::Watched;

namespace {

/// What is typed within so many milliseconds belongs together.
constexpr DWORD kTypingMilliseconds = 1000;
/// Rows that a notch of the wheel scrolls by.
constexpr int kWheelRows = 3;
/// The answer to `WM_VKEYTOITEM` of who has done all that the key asks for.
constexpr LRESULT kKeyIsDone = -2;

}  // namespace

LRESULT CSftTree::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  if (OnMouse(message, wparam, PointOfParam(lparam))) return 0;
  switch (message) {
    case WM_SIZE:
      if (wparam != SIZE_MINIMIZED) UpdateScroll(top_, left_);
      return 0;
    case WM_SETFONT:
    case WM_SYSCOLORCHANGE: {
      row_height_ = 0;
      columns_->ForgetWidths();
      const LRESULT result = Control::DefWindowProc(message, wparam, lparam);
      LayoutChanged();
      return result;
    }
    case WM_VSCROLL:
    case WM_HSCROLL:
      ScrollBy(message == WM_VSCROLL ? SB_VERT : SB_HORZ, wparam);
      return 0;
    case WM_MOUSEWHEEL:
      if (GetShownCount() <= GetPageRows()) break;
      ScrollTo(SB_VERT, GetScrollPos(SB_VERT) + wheel_.Take(wparam, kWheelRows));
      return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      RedrawSelection();
      return 0;
    case WM_ENABLE:
      Redraw();
      return 0;
    case WM_CAPTURECHANGED:
      EndGesture(true);
      return 0;
    case WM_TIMER:
      if (OnTimer(wparam)) return 0;
      break;
    case WM_SETCURSOR:
      if (ShowPointer()) return 1;
      break;
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS | DLGC_WANTCHARS;
    case WM_KEYDOWN:
      return OnKey(static_cast<UINT>(wparam), lparam);
    case WM_CONTEXTMENU:
      if (lparam != -1) break;
      AskForMenu();
      return 0;
    case WM_CHAR:
      TypeAhead(static_cast<char>(wparam));
      return 0;
    default:
      break;
  }
  return Control::DefWindowProc(message, wparam, lparam);
}

// ---- Keys

LRESULT CSftTree::OnKey(UINT key, LPARAM lparam) {
  const Watched self(*this);
  // The caret whole, where the half that callers know has 16 bits of it.
  const WPARAM asked = static_cast<WPARAM>(static_cast<UINT>(caret_)) << 16 | (key & 0xFFFF);
  LRESULT answer = -1;
  if (GetParent() != nullptr) {
    answer =
        GetParent()->SendMessage(WM_VKEYTOITEM, asked, reinterpret_cast<LPARAM>(GetSafeHwnd()));
  } else {
    OnChildNotify(WM_VKEYTOITEM, asked, reinterpret_cast<LPARAM>(GetSafeHwnd()), &answer);
  }
  if (answer == kKeyIsDone || !self.IsThere()) return 0;
  if (!OnMoveKey(key) && !OnBranchKey(key) && !OnActionKey(key)) {
    return Control::DefWindowProc(WM_KEYDOWN, key, lparam);
  }
  return 0;
}

/// The caret's row, or where that is hidden, the one below which it is; -1 without one.
int CSftTree::GetShownCaret() const {
  return rows_->Has(caret_) ? rows_->GetShownAncestor(caret_) : -1;
}

bool CSftTree::OnMoveKey(UINT key) {
  const int shown = GetShownCount();
  const int row = GetShownCaret();
  // Without a caret the first step goes to the first row, or the last one.
  const bool has_caret = row >= 0;
  const int at = has_caret ? rows_->CountShownBefore(row) : 0;
  const int page = std::max(1, GetPageRows() - 1);
  int to = 0;
  switch (key) {
    case VK_UP:
      to = at - 1;
      break;
    case VK_DOWN:
      to = has_caret ? at + 1 : 0;
      break;
    case VK_PRIOR:
      to = at - page;
      break;
    case VK_NEXT:
      to = has_caret ? at + page : page;
      break;
    case VK_HOME:
      to = 0;
      break;
    case VK_END:
      to = shown - 1;
      break;
    default:
      return false;
  }
  if (shown > 0) StepTo(rows_->FindShown(std::clamp(to, 0, shown - 1)));
  return true;
}

/// A key has the caret go to a row: with Shift selecting up to there, with Control alone.
void CSftTree::StepTo(int row) {
  const bool with_shift = IsKeyDown(VK_SHIFT);
  const bool with_control = IsKeyDown(VK_CONTROL);
  const Watched self(*this);
  // Before the caret goes, so that who is told of that finds it in sight.
  EnsureRowVisible(row);
  if (!self.IsThere() || !rows_->Has(row)) return;
  MoveCaret(row, with_shift     ? (with_control ? Selecting::kAddRange : Selecting::kRange)
                 : with_control ? Selecting::kNothing
                                : Selecting::kAlone);
}

bool CSftTree::OnBranchKey(UINT key) {
  if (key != VK_LEFT && key != VK_RIGHT) return false;
  const bool left = key == VK_LEFT;
  const int row = GetShownCaret();
  const bool moves = row >= 0 && !IsKeyDown(VK_CONTROL);
  const bool has_branch = moves && rows_->HasChildren(row);
  if (has_branch && IsExpanded(row) == left) {
    const Watched self(*this);
    if (row != caret_) MoveCaret(row, Selecting::kAlone);
    if (self.IsThere()) Notify(kTreeButtonDown);
  } else if (!left && has_branch) {
    StepTo(row + 1);
  } else if (moves && left && rows_->GetParent(row) >= 0) {
    StepTo(rows_->GetParent(row));
  } else {
    ScrollBy(SB_HORZ, left ? SB_LINEUP : SB_LINEDOWN);
  }
  return true;
}

bool CSftTree::OnActionKey(UINT key) {
  switch (key) {
    case VK_SPACE:
      // Alone it is a character.
      if (!IsKeyDown(VK_CONTROL) || caret_ < 0) return false;
      MoveCaret(caret_, Selecting::kToggle);
      return true;
    case VK_RETURN:
      if (caret_ >= 0) Notify(kTreeTextDoubleClick);
      return true;
    case VK_ESCAPE:
      if (gesture_ == Gesture::kNone) return false;
      EndGesture(true);
      return true;
    default:
      return false;
  }
}

/// The context menu at the caret's row.
void CSftTree::AskForMenu() {
  CPoint at{0, GetHeaderHeight()};
  CRect cell;
  if (caret_ >= 0 && GetCellRect(caret_, 0, &cell, true)) {
    at = {std::max<LONG>(0, cell.left), cell.bottom};
  }
  at = ClientToScreen(at);
  SendMessage(WM_CONTEXTMENU, reinterpret_cast<WPARAM>(GetSafeHwnd()), MakeLParam(at.x, at.y));
}

/// Finds the next row that begins with what was typed; the same character again goes on from row to
/// row.
void CSftTree::TypeAhead(char typed) {
  if (detail::Byte(typed) < ' ' || IsKeyDown(VK_CONTROL)) return;
  const DWORD now = platform::Current().clock->TickCount();
  if (now - typed_at_ > kTypingMilliseconds) typed_.clear();
  typed_at_ = now;
  typed_ += typed;
  const bool same = typed_.find_first_not_of(typed) == std::string::npos;
  const std::string wanted = multi_byte::Lower(same ? typed_.substr(0, 1) : typed_);
  const int shown = GetShownCount();
  const int caret = GetShownCaret();
  const int from = caret < 0 ? 0 : rows_->CountShownBefore(caret) + (same ? 1 : 0);
  const platform::CodePage& page = multi_byte::CurrentCodePage();
  for (int i = 0; i < shown; ++i) {
    const int row = rows_->FindShown((from + i) % shown);
    const std::string_view text = rows_->Text(row, 0);
    if (text.size() < wanted.size()) continue;
    if (!multi_byte::IsLowerForm(text.substr(0, wanted.size()), wanted, page)) continue;
    StepTo(row);
    return;
  }
}

// ---- Answers to prompts

void CSftTree::Describe(platform::DialogControl& control) const {
  Control::Describe(control);
  control.kind = platform::DialogControlKind::kList;
  control.multiple = multi_selection_;
  for (int row = 0; row < GetCount(); ++row) control.items.emplace_back(rows_->Text(row, 0));
  for (const int row : GetSelectedRows()) {
    if (!control.value.empty()) control.value += '\n';
    control.value += rows_->Text(row, 0);
  }
}

bool CSftTree::Enter(std::string_view value) {
  if (!TakesInput()) return false;
  detail::RowStore texts;
  for (int row = 0; row < GetCount(); ++row) texts.Insert(row, rows_->Text(row, 0));
  const Watched self(*this);
  if (!multi_selection_) {
    const int row = texts.FindNamed(value);
    if (row < 0) return false;
    EnsureRowVisible(row);
    if (self.IsThere()) MoveCaret(row, Selecting::kAlone);
    return true;
  }
  std::vector<bool> named;
  if (!texts.FindAllNamed(value, named)) return false;
  const std::vector<int> former = GetSelectedRows();
  SelectNone();
  int last = -1;
  for (int row = 0; row < GetCount(); ++row) {
    if (!named[static_cast<std::size_t>(row)]) continue;
    SelectRow(row);
    last = row;
  }
  if (last >= 0) SetCaret(last);
  if (GetSelectedRows() != former) Notify(kTreeSelectionChanged);
  return true;
}

bool CSftTree::Press() {
  if (!TakesInput() || caret_ < 0) return false;
  Notify(kTreeTextDoubleClick);
  return true;
}

}  // namespace dq
