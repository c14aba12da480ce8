// The searches, replacements and fields of `CDQString`.

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#include "dqlib/core/dq_string.h"
#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/base/text.h"

namespace dq {
namespace {

using detail::Byte;
using detail::OrEmpty;
using detail::ToIndex;
using multi_byte::npos;
using multi_byte::Searcher;
using platform::CodePage;

std::size_t Start(int start) { return static_cast<std::size_t>(std::max(start, 0)); }

/// Bytes that a string can have.
constexpr std::size_t kLongest = std::numeric_limits<int>::max();

/// Replaces texts of `size` bytes, found at or behind a place by `find`, by one that isn't longer:
/// moves the kept parts down within `text`, in one pass. Bytes behind the place are never written
/// to.
template <typename Find>
int ReplaceInPlace(std::string& text, Find find, std::size_t size, std::string_view with,
                   bool all) {
  char* const data = text.data();
  std::size_t target = 0;
  std::size_t source = 0;
  int count = 0;
  const auto keep = [&](std::size_t kept) {
    if (target != source) std::memmove(data + target, data + source, kept);
    target += kept;
    source += kept;
  };
  for (std::size_t hit = find(0); hit != npos; hit = find(source)) {
    keep(hit - source);
    with.copy(data + target, with.size());
    target += with.size();
    source += size;
    ++count;
    if (!all) break;
  }
  keep(text.size() - source);
  text.resize(target);
  return count;
}

/// The same by a longer one: builds the new text, in one pass.
template <typename Find>
int ReplaceByCopy(std::string& text, Find find, std::size_t size, std::string_view with, bool all) {
  std::size_t hit = find(0);
  if (hit == npos) return 0;
  std::string built;
  std::size_t target = 0;
  std::size_t source = 0;
  int count = 0;
  const auto add = [&](const char* data, std::size_t added) {
    if (built.size() - target < added) {
      const std::size_t needed = target + added + (text.size() - source);
      if (needed > kLongest) throw std::bad_alloc();
      built.resize(needed + needed / 8);
    }
    std::memcpy(built.data() + target, data, added);
    target += added;
  };
  for (; hit != npos; hit = find(source)) {
    add(text.data() + source, hit - source);
    add(with.data(), with.size());
    source = hit + size;
    ++count;
    if (!all) break;
  }
  add(text.data() + source, text.size() - source);
  built.resize(target);
  text = std::move(built);
  return count;
}

template <typename Find>
int ReplaceAll(std::string& text, Find find, std::size_t size, std::string_view with, bool all) {
  if (size == 0) return 0;
  return with.size() <= size ? ReplaceInPlace(text, find, size, with, all)
                             : ReplaceByCopy(text, find, size, with, all);
}

/// The start of a backward search: the last byte, unless `start` names one.
std::size_t ReverseStart(int start, int length) {
  return static_cast<std::size_t>(start < 0 || start >= length ? length - 1 : start);
}

/// Makes room for the tokens of a text when it is used up: for as many as there are if the rest is
/// like the part that is done, within bounds. It spares the moves of a plain growth.
class TokenRoom {
 public:
  explicit TokenRoom(CStringArray& tokens) : tokens_(tokens), before_(tokens.GetSize()) {}

  /// Before the token that follows `count` tokens, which took `done` of `size` bytes.
  void Make(int count, std::size_t done, std::size_t size) {
    if (count < room_) return;
    const double expected = static_cast<double>(size) / static_cast<double>(done) * count;
    room_ = static_cast<int>(std::clamp(expected * 1.05, count * 2.0, count * 32.0));
    tokens_.Reserve(before_ + room_);
  }

 private:
  CStringArray& tokens_;
  int before_;
  int room_ = 64;
};

}  // namespace

int CDQString::Find(char ch, int start) const {
  return ToIndex(multi_byte::Find(View(), ch, Start(start)));
}

int CDQString::Find(const char* text, int start) const {
  return ToIndex(multi_byte::Find(View(), OrEmpty(text), Start(start)));
}

int CDQString::FindNoCase(char ch, int start) const {
  return ToIndex(multi_byte::FindNoCase(View(), ch, Start(start)));
}

int CDQString::FindNoCase(const char* text, int start) const {
  return ToIndex(multi_byte::FindNoCase(View(), OrEmpty(text), Start(start)));
}

int CDQString::FindWhiteSpace() const {
  const auto hit = std::ranges::find_if(
      View(), [](char character) { return multi_byte::IsSpace(Byte(character)); });
  return hit == View().end() ? -1 : static_cast<int>(hit - View().begin());
}

int CDQString::FindCharLower() const {
  const CodePage& page = multi_byte::CurrentCodePage();
  const auto hit = std::ranges::find_if(
      View(), [&page](char character) { return page.IsLower(Byte(character)); });
  return hit == View().end() ? -1 : static_cast<int>(hit - View().begin());
}

int CDQString::ReverseFindWhiteSpace() const {
  int last = GetLength() - 1;
  while (last >= 0 && !multi_byte::IsSpace(Byte(GetAt(last)))) --last;
  return last;
}

int CDQString::ReverseFind(const char* text, int start) const {
  const std::string_view wanted = OrEmpty(text);
  if (wanted.empty() || IsEmpty()) return -1;
  const std::size_t first = ReverseStart(start, GetLength());
  // The part that a hit may cover: from index 1 to the end of one at `first`.
  const std::size_t hit =
      multi_byte::ReverseFindBytes(View().substr(1, first + wanted.size() - 1), wanted);
  return hit == npos ? -1 : static_cast<int>(hit + 1);
}

int CDQString::ReverseFindNoCase(char ch, int start) const {
  return ReverseFindNoCase(CString(ch), start);
}

int CDQString::ReverseFindNoCase(const char* text, int start) const {
  const std::string_view wanted = OrEmpty(text);
  if (wanted.empty() || IsEmpty()) return -1;
  const std::size_t first = ReverseStart(start, GetLength());
  return ToIndex(multi_byte::ReverseFindNoCase(View().substr(0, first + wanted.size()), wanted));
}

int CDQString::FindReplace(const char* find, const char* with, bool all) {
  // Copies, because either may be a part of the string.
  const std::string wanted(OrEmpty(find));
  const std::string replacement(OrEmpty(with));
  const Searcher searcher(wanted);
  std::string& text = Storage();
  const int count = ReplaceAll(
      text, [&](std::size_t start) { return searcher.Find(text, start); }, wanted.size(),
      replacement, all);
  Commit();
  return count;
}

int CDQString::FindReplaceNoCase(const char* find, const char* with, bool all) {
  const std::string_view wanted = OrEmpty(find);
  const std::size_t size = wanted.size();
  const std::string replacement(OrEmpty(with));
  std::string& text = Storage();
  multi_byte::NoCaseWalk walk(text, wanted);
  const int count = ReplaceAll(
      text, [&](std::size_t start) { return walk.Find(start); }, size, replacement, all);
  Commit();
  return count;
}

int CDQString::ReplaceTabs(int width) {
  const std::string blanks(Start(width), ' ');
  std::string& text = Storage();
  const int count = ReplaceAll(
      text, [&](std::size_t start) { return text.find('\t', start); }, 1, blanks, true);
  Commit();
  return count;
}

CDQString CDQString::GetField(const char* delimiter, int index) const {
  const std::string_view text = View();
  const std::string_view wanted = OrEmpty(delimiter);
  if (wanted.empty()) return index == 0 ? *this : CDQString();
  const Searcher searcher(wanted);
  std::size_t start = 0;
  if (index != 0) {
    const std::size_t hit = index < 0 ? npos : searcher.FindAt(text, Start(index) - 1);
    if (hit == npos) return {};
    start = hit + wanted.size();
  }
  const std::size_t end = searcher.Find(text, start);
  return text.substr(start, end == npos ? npos : end - start);
}

CDQString CDQString::GetField(char delimiter, int index) const {
  if (multi_byte::CurrentCodePage().IsSingleByte()) return GetField(CString(delimiter), index);
  std::size_t start = 0;
  std::size_t end = multi_byte::Find(View(), delimiter);
  for (; index > 0 && end != npos; --index) {
    start = end + 1;
    end = multi_byte::Find(View(), delimiter, start);
  }
  if (index != 0) return {};
  return View().substr(start, end == npos ? npos : end - start);
}

int CDQString::GetFieldCount(const char* delimiter) const {
  const std::string_view wanted = OrEmpty(delimiter);
  return wanted.empty() ? 1 : static_cast<int>(Searcher(wanted).Count(View())) + 1;
}

int CDQString::GetFieldCount(char delimiter) const { return GetFieldCount(CString(delimiter)); }

CDQString CDQString::GetDelimitedField(const char* open, const char* close, int index) const {
  const std::string_view opening = OrEmpty(open);
  const std::string_view closing = OrEmpty(close);
  if (opening.empty() || closing.empty()) return {};
  const Searcher find_opening(opening);
  const Searcher find_closing(closing);
  const CodePage& page = multi_byte::CurrentCodePage();
  std::size_t position = 0;
  std::size_t end = 0;
  std::size_t walk = 0;
  // Whether the walk over the characters that led to `end` begins one at `start`.
  const auto passes = [&](std::size_t start) {
    if (page.IsSingleByte()) return true;
    while (walk < start) walk += page.CharacterSize(View().substr(walk));
    return walk == start;
  };
  for (int i = 0; i <= index; ++i) {
    const std::size_t hit = find_opening.Find(View(), position);
    if (hit == npos) break;
    const std::size_t start = hit + opening.size();
    // A closing that is still ahead on the same walk is the next one.
    if (i == 0 || end < start || !passes(start)) {
      end = find_closing.Find(View(), start);
      walk = start;
    }
    if (end == npos) break;
    if (i == index) return View().substr(start, end - start);
    position = hit + closing.size();
  }
  return {};
}

int CDQString::Split(const char* delimiters, CStringArray& out) {
  std::string& text = Storage();
  multi_byte::Tokenizer tokens(text, OrEmpty(delimiters));
  TokenRoom room(out);
  std::string_view token;
  std::size_t cut = 0;
  int count = 0;
  for (; tokens.Next(token); ++count) {
    const std::size_t end = static_cast<std::size_t>(token.data() + token.size() - text.data());
    if (count == 0) cut = end;
    room.Make(count, end, text.size());
    out.Add(token);
  }
  text.resize(count > 0 ? cut : std::strlen(text.c_str()));
  Commit();
  return count;
}

}  // namespace dq
