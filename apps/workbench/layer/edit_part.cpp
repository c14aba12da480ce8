#include "apps/workbench/layer/edit_part.h"

#include <algorithm>
#include <utility>

namespace workbench {
namespace {

/// How many characters two texts have alike at their begins and, behind those, at their ends.
struct Alike {
  long begin = 0;
  long end = 0;
};

Alike Compare(const std::wstring& former, const std::wstring& now) {
  const std::size_t most = std::min(former.size(), now.size());
  std::size_t begin = 0;
  while (begin < most && former[begin] == now[begin]) ++begin;
  std::size_t end = 0;
  while (end < most - begin && former[former.size() - 1 - end] == now[now.size() - 1 - end]) ++end;
  return {static_cast<long>(begin), static_cast<long>(end)};
}

}  // namespace

/// Puts what stands behind the text that was shown last into the control, in time that grows with
/// that alone. False if it isn't the same text with more behind it.
bool EditPart::Append(std::string_view text) {
  if (!lines_ || edited_ || shown_bytes_.empty() || !text.starts_with(shown_bytes_)) return false;
  // What more may join with is told whole.
  if (shown_bytes_.ends_with('\r') || static_cast<unsigned char>(shown_bytes_.back()) >= 0x80) {
    return false;
  }
  const long end = shown_.size();
  text.remove_prefix(shown_bytes_.size());
  shown_bytes_ += text;
  control_.Replace(end, end, shown_.Append(text, lines_));
  edited_ = false;
  selection_ = SelectionNow();
  return true;
}

void EditPart::ShowText(std::string_view text) {
  if (Append(text)) return;
  shown_ = ShownText(text, lines_);
  shown_bytes_ = text;
  edited_ = false;
  const wxString former = control_.GetValue();
  if (former == shown_.native()) return;
  if (!lines_) {
    control_.ChangeValue(shown_.native());
  } else {
    // Only what is different, so that the rest stays in sight.
    const Alike alike = Compare(former.ToStdWstring(), shown_.native().ToStdWstring());
    const auto middle = static_cast<std::size_t>(shown_.size() - alike.begin - alike.end);
    control_.Replace(alike.begin, static_cast<long>(former.length()) - alike.end,
                     shown_.native().Mid(static_cast<std::size_t>(alike.begin), middle));
  }
  edited_ = false;
  selection_ = SelectionNow();
}

void EditPart::ShowSelection(int first, int last) {
  const Selection wanted{shown_.CharacterAt(first), shown_.CharacterAt(last)};
  selection_ = SelectionNow();
  const bool is_same =
      std::minmax(selection_.anchor, selection_.caret) == std::minmax(wanted.anchor, wanted.caret);
  if (is_same) return;
  control_.SetSelection(wanted.anchor, wanted.caret);
  selection_ = SelectionNow();
}

EditPart::Selection EditPart::SelectionNow() const {
  Selection now;
  control_.GetSelection(&now.anchor, &now.caret);
  if (control_.GetInsertionPoint() == now.anchor) std::swap(now.anchor, now.caret);
  return now;
}

bool EditPart::Take(TextEdit& edit) {
  const Selection selection = SelectionNow();
  if (!edited_ && selection == selection_) return false;
  selection_ = selection;
  const wxString now = std::exchange(edited_, false) ? control_.GetValue() : shown_.native();
  edit = {};
  edit.is_edited = now != shown_.native();
  // The control is ahead of what was shown.
  if (edit.is_edited) shown_bytes_.clear();
  const auto size = static_cast<long>(now.length());
  const Alike alike =
      edit.is_edited ? Compare(shown_.native().ToStdWstring(), now.ToStdWstring()) : Alike{size, 0};
  edit.first = shown_.ByteAt(alike.begin);
  const int rest = shown_.ByteAt(shown_.size() - alike.end);
  edit.removed = rest - edit.first;
  const auto middle = [&](long end) {
    return Encode(now.Mid(static_cast<std::size_t>(alike.begin),
                          static_cast<std::size_t>(std::max(0L, end - alike.begin))));
  };
  edit.inserted = middle(size - alike.end);
  // Where a character of the control is in the library's new text.
  const auto place = [&](long character) {
    if (character <= alike.begin) return shown_.ByteAt(character);
    const long from_end = size - character;
    if (from_end > alike.end) return edit.first + static_cast<int>(middle(character).size());
    return edit.first + static_cast<int>(edit.inserted.size()) +
           shown_.ByteAt(shown_.size() - from_end) - rest;
  };
  edit.anchor = place(selection.anchor);
  edit.caret = place(selection.caret);
  return true;
}

}  // namespace workbench
