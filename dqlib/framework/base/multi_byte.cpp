#include "dqlib/framework/base/multi_byte.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <vector>

#include "dqlib/framework/base/text.h"
#include "dqlib/platform/platform.h"

namespace dq::multi_byte {
namespace {

using detail::Byte;

/// Effort on false starts that a plain search may spend per byte of its way before it gives up.
constexpr std::size_t kEffortPerByte = 8;

/// True when comparing false starts has cost more than the way gone so far is worth. That happens
/// with long repetitive texts only, for which a search with tables is linear and a plain one isn't.
bool IsFutile(std::size_t effort, std::size_t way, std::size_t wanted) {
  return effort / kEffortPerByte > way + wanted;
}

constexpr auto kAnyPlace = [](const auto&) { return true; };

/// Where the range from `wanted`, of `size` elements, first stands in another at a place that
/// `accepts`, which is asked about rising places; its end if nowhere. Never goes back in the text
/// (the search of Knuth, Morris and Pratt): linear whatever the texts.
template <typename Iterator, typename Wanted, typename Accepts>
Iterator FindWithTable(Iterator first, Iterator last, Wanted wanted, std::ptrdiff_t size,
                       Accepts accepts) {
  // For each start of what is wanted, how much of its end is a shorter start.
  std::vector<std::ptrdiff_t> borders(static_cast<std::size_t>(size));
  const auto extend = [&](std::ptrdiff_t matched, char next) {
    while (matched > 0 && wanted[matched] != next) {
      matched = borders[static_cast<std::size_t>(matched - 1)];
    }
    return wanted[matched] == next ? matched + 1 : matched;
  };
  for (std::ptrdiff_t i = 1, matched = 0; i < size; ++i) {
    matched = extend(matched, wanted[i]);
    borders[static_cast<std::size_t>(i)] = matched;
  }
  std::ptrdiff_t matched = 0;
  for (; first != last; ++first) {
    matched = extend(matched, *first);
    if (matched < size) continue;
    if (accepts(first - (size - 1))) return first - (size - 1);
    matched = borders[static_cast<std::size_t>(size - 1)];
  }
  return last;
}

/// `wanted`, which isn't empty, in `text` at or behind `start`, by bytes, at a place that
/// `accepts`, which is asked about rising places. Looking for the first byte and comparing the rest
/// beats searches with tables where hits are dense, and is as fast elsewhere.
template <typename Accepts>
std::size_t FindBytes(std::string_view text, std::string_view wanted, std::size_t start,
                      Accepts accepts) {
  if (start > text.size() || wanted.size() > text.size() - start) return npos;
  const std::size_t size = wanted.size();
  const char* const first = text.data() + start;
  const char* const end = text.data() + text.size() - size + 1;
  std::size_t effort = 0;
  for (const char* at = first; at != end; ++at) {
    at = static_cast<const char*>(
        std::memchr(at, Byte(wanted.front()), static_cast<std::size_t>(end - at)));
    if (at == nullptr) return npos;
    if (at[size - 1] != wanted.back()) continue;
    const auto place = static_cast<std::size_t>(at - text.data());
    if (std::memcmp(at, wanted.data(), size) == 0 && accepts(place)) return place;
    effort += size;
    if (IsFutile(effort, static_cast<std::size_t>(at - first), size)) {
      const char* const last = text.data() + text.size();
      const char* const hit =
          FindWithTable(at, last, wanted.begin(), std::ssize(wanted), [&](const char* found) {
            return accepts(static_cast<std::size_t>(found - text.data()));
          });
      return hit == last ? npos : static_cast<std::size_t>(hit - text.data());
    }
  }
  return npos;
}

/// Where `byte` stands behind `left` others of its kind; takes off `left` those that it passes.
/// Leaps to the next one, and counts over a stretch from there, since they come in crowds or hardly
/// at all.
std::size_t PassBytes(std::string_view text, char byte, std::size_t& left) {
  constexpr std::size_t kStretch = 1024;
  for (std::size_t at = text.find(byte); at != npos; at = text.find(byte, at)) {
    const std::size_t end = std::min(at + kStretch, text.size());
    while (at < end) {
      // Few enough for a counter of one byte, which lets the compiler count many at once.
      const std::string_view part = text.substr(at, std::min<std::size_t>(end - at, 255));
      unsigned char hits = 0;
      for (const char other : part) hits = static_cast<unsigned char>(hits + (other == byte));
      if (hits > left) {
        for (at = text.find(byte, at); left > 0; --left) at = text.find(byte, at + 1);
        return at;
      }
      left -= hits;
      at += part.size();
    }
  }
  return npos;
}

}  // namespace

const platform::CodePage& CurrentCodePage() { return platform::Current().locale->code_page(); }

Searcher::Searcher(std::string_view wanted, const platform::CodePage& page)
    : wanted_(wanted), page_(page), is_byte_(wanted.size() == 1 && page.IsSingleByte()) {}

std::size_t Searcher::FindText(std::string_view text, std::size_t start) const {
  if (start > text.size()) return npos;
  if (wanted_.empty()) return start;
  if (page_.IsSingleByte()) return FindBytes(text, wanted_, start, kAnyPlace);
  // A hit counts only where a character begins, so walk the characters up to it.
  std::size_t at = start;
  return FindBytes(text, wanted_, start, [&](std::size_t hit) {
    while (at < hit) at += page_.CharacterSize(text.substr(at));
    return at == hit;
  });
}

std::size_t Searcher::Count(std::string_view text) const {
  if (is_byte_) {
    std::size_t left = npos;
    PassBytes(text, wanted_.front(), left);
    return npos - left;
  }
  std::size_t count = 0;
  for (std::size_t hit = Find(text, 0); hit != npos; hit = Find(text, hit + wanted_.size())) {
    ++count;
  }
  return count;
}

std::size_t Searcher::FindAt(std::string_view text, std::size_t index) const {
  if (is_byte_) return PassBytes(text, wanted_.front(), index);
  std::size_t hit = Find(text, 0);
  for (; hit != npos && index > 0; --index) hit = Find(text, hit + wanted_.size());
  return hit;
}

NoCaseWalk::NoCaseWalk(std::string_view text, std::string_view wanted)
    : text_(text), wanted_(Lower(wanted)), page_(CurrentCodePage()) {
  if (!page_.IsSingleByte()) {
    lower_ = Lower(text);
  } else if (!wanted_.empty()) {
    for (int byte = 0; byte < 256; ++byte) {
      if (page_.Lower(static_cast<unsigned char>(byte)) == Byte(wanted_.front())) {
        const char beginning = static_cast<char>(byte);
        beginnings_.push_back({beginning, text_.find(beginning)});
      }
    }
  }
}

std::size_t NoCaseWalk::NextBeginning(std::size_t start) {
  std::size_t nearest = npos;
  for (Beginning& beginning : beginnings_) {
    if (beginning.next < start) beginning.next = text_.find(beginning.byte, start);
    nearest = std::min(nearest, beginning.next);
  }
  return nearest;
}

std::size_t NoCaseWalk::CountEqual(std::size_t at) const {
  std::size_t count = 0;
  while (count < wanted_.size() && page_.Lower(Byte(text_[at + count])) == Byte(wanted_[count])) {
    ++count;
  }
  return count;
}

std::size_t NoCaseWalk::Find(std::size_t start) {
  if (!lower_ && !wanted_.empty()) {
    std::size_t effort = 0;
    for (std::size_t at = NextBeginning(start); !lower_; at = NextBeginning(at + 1)) {
      if (at == npos || wanted_.size() > text_.size() - at) return npos;
      const std::size_t equal = CountEqual(at);
      if (equal == wanted_.size()) return at;
      effort += equal;
      if (IsFutile(effort, at - start, wanted_.size())) lower_ = Lower(text_);
    }
  }
  return Searcher(wanted_, page_).Find(lower_ ? *lower_ : text_, start);
}

CharacterSet::CharacterSet(std::string_view characters) : page_(CurrentCodePage()) {
  if (characters.size() == 1 && page_.IsSingleByte()) only_byte_ = Byte(characters.front());
  while (!characters.empty()) {
    const std::size_t size = page_.CharacterSize(characters);
    if (size == 1) {
      bytes_[Byte(characters.front())] = true;
    } else {
      pairs_ += characters.substr(0, size);
    }
    characters.remove_prefix(size);
  }
}

bool CharacterSet::Contains(std::string_view character) const {
  if (character.size() == 1) return bytes_[Byte(character.front())];
  for (std::size_t i = 0; i < pairs_.size(); i += 2) {
    if (character == std::string_view(pairs_).substr(i, 2)) return true;
  }
  return false;
}

std::size_t CharacterSet::FindIf(std::string_view text, std::size_t start, bool member) const {
  std::size_t at = start;
  if (page_.IsSingleByte()) {
    while (at < text.size() && bytes_[Byte(text[at])] != member) ++at;
    return at;
  }
  while (at < text.size()) {
    const std::size_t size = page_.CharacterSize(text.substr(at));
    if (Contains(text.substr(at, size)) == member) break;
    at += size;
  }
  return at;
}

std::size_t CharacterSet::FindMember(std::string_view text, std::size_t start) const {
  if (only_byte_ >= 0)
    return std::min(text.find(static_cast<char>(only_byte_), start), text.size());
  std::size_t at = start;
  if (page_.IsSingleByte()) {
    // Four at a time over the long ways between delimiters.
    const auto hits = [&](std::size_t place) { return bytes_[Byte(text[place])] ? 1 : 0; };
    while (at + 4 <= text.size() && (hits(at) | hits(at + 1) | hits(at + 2) | hits(at + 3)) == 0) {
      at += 4;
    }
  }
  return FindIf(text, at, true);
}

std::size_t CharacterSet::FindOther(std::string_view text, std::size_t start) const {
  return FindIf(text, start, false);
}

Tokenizer::Tokenizer(std::string_view text, std::string_view delimiters)
    : text_(text), delimiters_(delimiters) {}

bool Tokenizer::Next(std::string_view& token) {
  const std::size_t start = delimiters_.FindOther(text_, position_);
  position_ = delimiters_.FindMember(text_, start);
  if (start == position_) return false;
  token = text_.substr(start, position_ - start);
  return true;
}

std::size_t Find(std::string_view text, char character, std::size_t start) {
  const platform::CodePage& page = CurrentCodePage();
  if (page.IsSingleByte()) return text.find(character, start);
  for (std::size_t at = start; at < text.size();) {
    const std::size_t size = page.CharacterSize(text.substr(at));
    if (size == 1 && text[at] == character) return at;
    at += size;
  }
  return npos;
}

std::size_t Find(std::string_view text, std::string_view wanted, std::size_t start) {
  return Searcher(wanted).Find(text, start);
}

std::size_t ReverseFind(std::string_view text, char character) {
  const platform::CodePage& page = CurrentCodePage();
  if (page.IsSingleByte()) return text.rfind(character);
  std::size_t last = npos;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t size = page.CharacterSize(text.substr(at));
    if (size == 1 && text[at] == character) last = at;
    at += size;
  }
  return last;
}

std::size_t ReverseFindBytes(std::string_view text, std::string_view wanted) {
  if (wanted.size() > text.size()) return npos;
  const std::size_t last = text.size() - wanted.size();
  std::size_t effort = 0;
  for (std::size_t at = last + 1; at-- > 0;) {
    if (text[at] != wanted.front() || text[at + wanted.size() - 1] != wanted.back()) continue;
    if (std::memcmp(text.data() + at, wanted.data(), wanted.size()) == 0) return at;
    effort += wanted.size();
    if (IsFutile(effort, last - at, wanted.size())) {
      const auto rest = text.rend() - static_cast<std::ptrdiff_t>(at + wanted.size());
      const auto hit =
          FindWithTable(rest, text.rend(), wanted.rbegin(), std::ssize(wanted), kAnyPlace);
      return hit == text.rend() ? npos
                                : static_cast<std::size_t>(text.rend() - hit) - wanted.size();
    }
  }
  return npos;
}

bool IsLowerForm(std::string_view text, std::string_view lower, const platform::CodePage& page) {
  while (!text.empty()) {
    const std::size_t size = page.CharacterSize(text);
    char character[2] = {text.front(), text[size - 1]};
    page.LowerInPlace(character, size);
    if (!lower.starts_with(std::string_view(character, size))) return false;
    text.remove_prefix(size);
    lower.remove_prefix(size);
  }
  return lower.empty();
}

int Compare(std::string_view left, std::string_view right) {
  // char_traits<char> compares as unsigned.
  return left.compare(right);
}

int CompareNoCase(std::string_view left, std::string_view right) {
  const platform::CodePage& page = CurrentCodePage();
  if (!page.IsSingleByte()) return Compare(Lower(left), Lower(right));
  const std::size_t common = std::min(left.size(), right.size());
  for (std::size_t i = 0; i < common; ++i) {
    const int difference = page.Lower(Byte(left[i])) - page.Lower(Byte(right[i]));
    if (difference != 0) return difference;
  }
  return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
}

void MakeLower(std::string& text) { CurrentCodePage().LowerInPlace(text.data(), text.size()); }

void MakeUpper(std::string& text) { CurrentCodePage().UpperInPlace(text.data(), text.size()); }

std::string Lower(std::string_view text) {
  std::string lower(text);
  MakeLower(lower);
  return lower;
}

std::string Upper(std::string_view text) {
  std::string upper(text);
  MakeUpper(upper);
  return upper;
}

std::size_t LastCharacter(std::string_view text) {
  const platform::CodePage& page = CurrentCodePage();
  if (page.IsSingleByte()) return text.size() - 1;
  std::size_t at = 0;
  for (;;) {
    const std::size_t next = at + page.CharacterSize(text.substr(at));
    if (next == text.size()) return at;
    at = next;
  }
}

std::string_view TrimRight(std::string_view text) {
  while (!text.empty() && IsSpace(Byte(text.back()))) text.remove_suffix(1);
  return text;
}

std::string_view TrimLeft(std::string_view text) {
  while (!text.empty() && IsSpace(Byte(text.front()))) text.remove_prefix(1);
  return text;
}

}  // namespace dq::multi_byte
