#include "dqlib/framework/controls/control.h"

#include <charconv>

#include "dqlib/framework/base/multi_byte.h"

namespace dq {

void Control::OnSubclassed(CWnd& former) {
  if (const auto* control = dynamic_cast<const Control*>(&former)) {
    begins_group_ = control->begins_group_;
  }
}

bool Control::Notify(int code) {
  const HWND self = m_hWnd;
  NotifyParent(code);
  return self != nullptr && FromHandle(self) == this;
}

namespace detail {

std::vector<std::string_view> SplitLines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = text.find_first_of("\r\n");
    lines.push_back(text.substr(0, end));
    if (end == std::string_view::npos) break;
    text.remove_prefix(text.substr(end).starts_with("\r\n") ? end + 2 : end + 1);
  }
  return lines;
}

int IndexFromNumber(std::string_view number, int count) {
  int value = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
  const bool whole = error == std::errc() && end == number.data() + number.size();
  return whole && value >= 1 && value <= count ? value - 1 : -1;
}

int ClipToText(std::string_view text, int position) {
  const std::size_t limit = static_cast<UINT>(position);
  if (limit >= text.size()) return static_cast<int>(text.size());
  const platform::CodePage& page = multi_byte::CurrentCodePage();
  if (page.IsSingleByte()) return position;
  std::size_t at = 0;
  while (at < limit) {
    const std::size_t next = at + page.CharacterSize(text.substr(at));
    if (next > limit) break;
    at = next;
  }
  return static_cast<int>(at);
}

}  // namespace detail
}  // namespace dq
