#include "dqlib/platform/seam_texts.h"

#include <algorithm>
#include <atomic>

namespace dq::platform {
namespace {

std::atomic<TextSource> g_source = nullptr;

}  // namespace

void SetTextSource(TextSource source) { g_source = source; }

std::string_view Text(SeamTextId id) {
  const TextSource source = g_source;
  const std::optional<std::string_view> shown = source == nullptr ? std::nullopt : source(id);
  return shown ? *shown : EnglishText(id);
}

std::string_view EnglishText(SeamTextId id) {
  const auto* const row = std::ranges::lower_bound(kSeamTexts, UINT{id}, {}, &StringRow::id);
  return row == std::end(kSeamTexts) || row->id != id ? std::string_view() : row->text;
}

std::string Filled(std::string_view pattern, std::initializer_list<std::string_view> texts) {
  std::string filled;
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    const std::size_t place = pattern[at] == '%' && at + 1 < pattern.size()
                                  ? static_cast<std::size_t>(pattern[at + 1]) - '1'
                                  : texts.size();
    if (place < texts.size()) {
      ++at;
      filled += texts.begin()[place];
    } else {
      filled += pattern[at];
    }
  }
  return filled;
}

}  // namespace dq::platform
