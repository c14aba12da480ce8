#include "dqlib/output/line_cutter.h"

#include <cstdint>

#include "dqlib/framework/base/multi_byte.h"

namespace dq::detail {
namespace {

/// One bit per line-end character.
constexpr std::uint32_t kLineEndBits = [] {
  std::uint32_t bits = 0;
  for (const char character : std::string_view(kLineEnds)) bits |= 1u << character;
  return bits;
}();

bool IsLineEnd(char character) {
  const unsigned byte = static_cast<unsigned char>(character);
  return byte < 32 && (kLineEndBits >> byte & 1u) != 0;
}

std::size_t FindLineEnd(std::string_view text, std::size_t start) {
  while (start < text.size() && !IsLineEnd(text[start])) ++start;
  return start;
}

std::size_t SkipLineEnds(std::string_view text, std::size_t start) {
  while (start < text.size() && IsLineEnd(text[start])) ++start;
  return start;
}

}  // namespace

void LineCutter::Feed(std::string_view bytes) {
  text_.erase(0, begin_);
  scan_ -= begin_;
  begin_ = 0;
  text_.append(bytes);
}

bool LineCutter::Next(std::string_view& line) {
  for (;;) {
    DropLeadingLineEnds();
    const std::size_t run = FindLineEnd(text_, scan_);
    const std::size_t next = SkipLineEnds(text_, run);
    if (next == text_.size()) {
      // Not complete. Of a run of line ends its last one is enough to find it again.
      scan_ = run == next ? next : next - 1;
      return false;
    }
    // The last character of the run is never part of a line, so the end mark has a place there.
    line = multi_byte::TrimRight(std::string_view(text_).substr(begin_, next - 1 - begin_));
    text_[begin_ + line.size()] = '\0';
    if (trim_left_) line = multi_byte::TrimLeft(line);
    begin_ = scan_ = next;
    if (!line.empty()) return true;
  }
}

std::string_view LineCutter::Rest() {
  DropLeadingLineEnds();
  const std::string_view rest = multi_byte::TrimRight(std::string_view(text_).substr(begin_));
  text_.resize(begin_ + rest.size());
  return std::string_view(text_).substr(begin_);
}

void LineCutter::DropLeadingLineEnds() {
  if (scan_ > begin_) return;
  begin_ = scan_ = SkipLineEnds(text_, begin_);
}

}  // namespace dq::detail
