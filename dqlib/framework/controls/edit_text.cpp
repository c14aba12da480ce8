#include "dqlib/framework/controls/edit_text.h"

#include <algorithm>
#include <new>

#include "dqlib/framework/base/drawn_character.h"
#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/controls/control.h"

namespace dq::detail {

void EditText::Set(std::string_view text) {
  text_ = text;
  anchor_ = caret_ = 0;
  ++version_;
}

bool EditText::Select(int start, int end) {
  const int former_anchor = anchor_;
  const int former_caret = caret_;
  if (start < 0) {
    anchor_ = caret_ = last();
  } else {
    anchor_ = ClipToText(text_, start);
    caret_ = ClipToText(text_, end);
  }
  return anchor_ != former_anchor || caret_ != former_caret;
}

void EditText::Replace(std::string_view text) {
  const std::size_t removed = static_cast<std::size_t>(last() - first());
  if (text.size() > kNoLimit - (text_.size() - removed)) throw std::bad_alloc();
  const int at = first();
  text_.replace(static_cast<std::size_t>(at), removed, text);
  anchor_ = caret_ = at + static_cast<int>(text.size());
  ++version_;
}

std::size_t EditText::Fitting(std::string_view text, int removed) const {
  const std::size_t kept = text_.size() - static_cast<std::size_t>(removed);
  const std::size_t room = limit_ > kept ? limit_ - kept : 0;
  if (text.size() <= room) return text.size();
  const platform::CodePage& page = multi_byte::CurrentCodePage();
  for (std::size_t size = 0;;) {
    const std::string_view rest = text.substr(size);
    const std::size_t step = rest.starts_with("\r\n") ? 2 : FirstCharacter(rest, page).size;
    if (size + step > room) return size;
    size += step;
  }
}

std::size_t EditText::ReplaceWithin(std::string_view text) {
  const std::size_t size = Fitting(text, last() - first());
  if (size > 0) Replace(text.substr(0, size));
  return size;
}

std::size_t EditText::Edit(int first, int removed, std::string_view text, int anchor, int caret) {
  Select(first, first + removed);
  const std::size_t taken = text.empty() ? 0 : ReplaceWithin(text);
  if (taken == 0 && removed > 0) Replace("");
  Select(anchor, caret);
  return taken;
}

bool EditText::Has(int first, int count) const {
  return first >= 0 && count >= 0 && first <= size() && count <= size() - first &&
         ClipToText(text_, first) == first && ClipToText(text_, first + count) == first + count;
}

int EditText::Before(int place) const {
  const std::string_view before =
      std::string_view(text_).substr(0, static_cast<std::size_t>(place));
  if (before.empty()) return 0;
  if (before.ends_with("\r\n")) return place - 2;
  // One of UTF-8 may have up to four bytes.
  const platform::CodePage& page = multi_byte::CurrentCodePage();
  for (std::size_t size = std::min<std::size_t>(before.size(), 4); size > 1; --size) {
    const std::size_t at = before.size() - size;
    if (page.IsSingleByte() && FirstCharacter(before.substr(at), page).size == size) {
      return static_cast<int>(at);
    }
  }
  return static_cast<int>(multi_byte::LastCharacter(before));
}

int EditText::Behind(int place) const {
  const std::string_view behind = std::string_view(text_).substr(static_cast<std::size_t>(place));
  if (behind.empty()) return place;
  if (behind.starts_with("\r\n")) return place + 2;
  return place + static_cast<int>(FirstCharacter(behind, multi_byte::CurrentCodePage()).size);
}

/// What is selected, or else from the caret to a place.
bool EditText::Remove(int to) {
  if (first() == last()) anchor_ = to;
  if (first() == last()) return false;
  Replace("");
  return true;
}

bool EditText::Backspace() { return Remove(Before(caret_)); }

bool EditText::Delete() { return Remove(Behind(caret_)); }

}  // namespace dq::detail
