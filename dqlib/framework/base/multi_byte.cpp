#include "dqlib/framework/base/multi_byte.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <functional>
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
/// `accepts`, which is asked about rising places; its end if nowhere. The searched elements are
/// folded before they are compared. Never goes back in the text
/// (the search of Knuth, Morris and Pratt): linear whatever the texts.
template <typename Iterator, typename Wanted, typename Accepts, typename Fold = std::identity>
Iterator FindWithTable(Iterator first, Iterator last, Wanted wanted, std::ptrdiff_t size,
                       Accepts accepts, Fold fold = {}) {
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
    matched = extend(matched, fold(*first));
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

/// Bytes of the first part that a search looks at which can't be told in advance where to stop.
constexpr std::size_t kFirstWindow = 256;

/// What `find` finds in a text, at or behind `start`, and `size` bytes long: it is asked for ever
/// longer beginnings of the text, so that the effort is that of the way to the hit.
template <typename Find>
std::size_t FindByWindows(std::string_view text, std::size_t start, std::size_t size, Find find) {
  for (std::size_t window = kFirstWindow + size;; window *= 2) {
    const bool is_last = start >= text.size() || window >= text.size() - start;
    const std::size_t hit =
        find(is_last ? text : text.substr(0, CharacterStart(text, start + window)));
    if (hit != npos || is_last) return hit;
  }
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

/// Where `byte` or a zero first stands at or behind `start`, in a text that a zero ends. What is
/// near is found eight bytes at a time, sooner than by a call of the library.
std::size_t FindByteOrZero(std::string_view text, char byte, std::size_t start) {
  constexpr std::uint64_t kOnes = 0x0101010101010101;
  std::size_t at = start;
  if constexpr (std::endian::native == std::endian::little) {
    // The top bit of each zero byte; those of higher bytes may be set, too.
    const auto zeros = [](std::uint64_t word) { return (word - kOnes) & ~word & (kOnes << 7); };
    for (int words = 0; words < 4 && at + 8 <= text.size(); ++words, at += 8) {
      std::uint64_t word;
      std::memcpy(&word, text.data() + at, 8);
      const std::uint64_t hits = zeros(word) | zeros(word ^ (kOnes * Byte(byte)));
      if (hits != 0) return at + static_cast<std::size_t>(std::countr_zero(hits)) / 8;
    }
  }
  const char* const rest = text.data() + at;
  const char* const hit = std::strchr(rest, byte);
  return at + (hit != nullptr ? static_cast<std::size_t>(hit - rest) : std::strlen(rest));
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
  if (only_byte_ < 0) return FindIf(text, start, false);
  const char byte = static_cast<char>(only_byte_);
  std::size_t at = start;
  while (at < text.size() && text[at] == byte) ++at;
  return at;
}

Tokenizer::Tokenizer(std::string_view text, std::string_view delimiters)
    : text_(text), delimiters_(delimiters), ends_('\0' + std::string(delimiters)) {
  if (!CurrentCodePage().IsSingleByte()) {
    text_ = text.substr(0, text.find('\0'));
  } else if (delimiters.size() == 1) {
    only_byte_ = delimiters.front();
  }
}

bool Tokenizer::Next(std::string_view& token) {
  const std::size_t start = delimiters_.FindOther(text_, position_);
  position_ =
      only_byte_ ? FindByteOrZero(text_, *only_byte_, start) : ends_.FindMember(text_, start);
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
  std::size_t at = text.rfind(character);
  if (page.IsSingleByte()) return at;
  const auto is_character = [&](std::size_t place) {
    return page.CharacterSize(text.substr(place)) == 1 && CharacterStart(text, place) == place;
  };
  while (at != npos && !is_character(at)) at = at == 0 ? npos : text.rfind(character, at - 1);
  return at;
}

namespace {

/// `ReverseFindBytes` for bytes that are folded before they are compared with what is wanted.
template <typename Fold>
std::size_t ReverseFindFolded(std::string_view text, std::string_view wanted, Fold fold) {
  if (wanted.size() > text.size()) return npos;
  const std::size_t size = wanted.size();
  const std::size_t last = text.size() - size;
  std::size_t effort = 0;
  for (std::size_t at = last + 1; at-- > 0;) {
    if (fold(text[at]) != wanted.front() || fold(text[at + size - 1]) != wanted.back()) continue;
    std::size_t equal = 1;
    while (equal < size && fold(text[at + equal]) == wanted[equal]) ++equal;
    if (equal == size) return at;
    effort += equal;
    if (IsFutile(effort, last - at, size)) {
      const auto rest = text.rend() - static_cast<std::ptrdiff_t>(at + size);
      const auto hit =
          FindWithTable(rest, text.rend(), wanted.rbegin(), std::ssize(wanted), kAnyPlace, fold);
      return hit == text.rend() ? npos : static_cast<std::size_t>(text.rend() - hit) - size;
    }
  }
  return npos;
}

}  // namespace

std::size_t ReverseFindBytes(std::string_view text, std::string_view wanted) {
  return ReverseFindFolded(text, wanted, std::identity());
}

std::size_t ReverseFindNoCase(std::string_view text, std::string_view wanted) {
  const std::string lower = Lower(wanted);
  const platform::CodePage& page = CurrentCodePage();
  const auto fold = [&page](char byte) { return static_cast<char>(page.Lower(Byte(byte))); };
  if (page.IsSingleByte()) return ReverseFindFolded(text, lower, fold);
  if (wanted.size() > text.size()) return npos;
  // Behind the last lead byte all is as in a single-byte page.
  std::size_t tail = text.size();
  for (std::size_t size = kFirstWindow + wanted.size(); tail > 0; size *= 2) {
    const std::size_t first = text.size() - std::min(size, text.size());
    while (tail > first && !page.IsLeadByte(Byte(text[tail - 1]))) --tail;
    const std::size_t hit = ReverseFindFolded(text.substr(tail), lower, fold);
    if (hit != npos) return tail + hit;
    if (tail > first) break;
  }
  // Further on each place is taken for the start of a character, so the cases differ from one to
  // the next.
  for (std::size_t at = std::min(tail, text.size() - wanted.size() + 1); at-- > 0;) {
    if (IsLowerForm(text.substr(at, wanted.size()), lower, page)) return at;
  }
  return npos;
}

std::size_t FindNoCase(std::string_view text, char character, std::size_t start) {
  const platform::CodePage& page = CurrentCodePage();
  const char lower = static_cast<char>(page.Lower(Byte(character)));
  const char upper = static_cast<char>(page.Upper(Byte(character)));
  if (lower == upper) return Find(text, lower, start);
  return FindByWindows(text, start, 1, [&](std::string_view window) {
    return std::min(Find(window, lower, start), Find(window, upper, start));
  });
}

std::size_t FindNoCase(std::string_view text, std::string_view wanted, std::size_t start) {
  if (start > text.size() || wanted.empty()) return start > text.size() ? npos : start;
  // Case is that of the characters of the whole text.
  const std::size_t first = CharacterStart(text, start);
  const auto find = [&](std::string_view window) {
    const std::size_t hit = NoCaseWalk(window.substr(first), wanted).Find(start - first);
    return hit == npos ? npos : first + hit;
  };
  return FindByWindows(text, start, wanted.size(), find);
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

namespace {

int CompareSizes(std::string_view left, std::string_view right) {
  return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
}

}  // namespace

int CompareNoCase(std::string_view left, std::string_view right) {
  const platform::CodePage& page = CurrentCodePage();
  if (!page.IsSingleByte()) {
    for (std::size_t size = kFirstWindow;; size *= 2) {
      const std::string one = Lower(left.substr(0, CharacterStart(left, size)));
      const std::string other = Lower(right.substr(0, CharacterStart(right, size)));
      const std::size_t common = std::min(one.size(), other.size());
      const int order = Compare(std::string_view(one).substr(0, common),
                                std::string_view(other).substr(0, common));
      if (order != 0) return order;
      if (size > left.size() || size > right.size()) return CompareSizes(left, right);
    }
  }
  const std::size_t common = std::min(left.size(), right.size());
  for (std::size_t i = 0; i < common; ++i) {
    const int difference = page.Lower(Byte(left[i])) - page.Lower(Byte(right[i]));
    if (difference != 0) return difference;
  }
  return CompareSizes(left, right);
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

std::size_t CharacterStart(std::string_view text, std::size_t place) {
  const platform::CodePage& page = CurrentCodePage();
  if (page.IsSingleByte() || place >= text.size()) return place;
  // Behind a byte that can't lead a character begins; lead bytes from there on go in pairs.
  std::size_t leads = 0;
  while (leads < place && page.IsLeadByte(Byte(text[place - leads - 1]))) ++leads;
  return place - leads % 2;
}

std::size_t LastCharacter(std::string_view text) { return CharacterStart(text, text.size() - 1); }

std::string_view TrimRight(std::string_view text) {
  while (!text.empty() && IsSpace(Byte(text.back()))) text.remove_suffix(1);
  return text;
}

std::string_view TrimLeft(std::string_view text) {
  while (!text.empty() && IsSpace(Byte(text.front()))) text.remove_prefix(1);
  return text;
}

}  // namespace dq::multi_byte
