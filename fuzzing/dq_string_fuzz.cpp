// Operations of the string class, one after the other, against a plain reference that takes each
// step as it is told. Input: which code page, then for each operation its number and its arguments.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/core/dq_string.h"
#include "dqlib/platform/platform.h"

namespace {

using dq::CDQString;
using dq::platform::CodePage;

constexpr std::size_t kLongest = 2000;

const CodePage& Page() { return dq::platform::Current().locale->code_page(); }

std::string Lower(std::string text) {
  Page().LowerInPlace(text.data(), text.size());
  return text;
}

std::size_t CharacterSize(const std::string& text, std::size_t at) {
  return Page().CharacterSize(std::string_view(text).substr(at));
}

bool IsSpace(char byte) { return byte == ' ' || (byte >= 9 && byte <= 13); }

/// First place of `wanted` at or behind `start`, by character; -1 if there is none.
int Find(const std::string& text, const std::string& wanted, std::size_t start) {
  for (std::size_t at = start; at < text.size(); at += CharacterSize(text, at)) {
    if (text.compare(at, wanted.size(), wanted) == 0) return static_cast<int>(at);
  }
  return wanted.empty() && start <= text.size() ? static_cast<int>(text.size()) : -1;
}

int FindCharacter(const std::string& text, char wanted, std::size_t start) {
  for (std::size_t at = start; at < text.size(); at += CharacterSize(text, at)) {
    if (CharacterSize(text, at) == 1 && text[at] == wanted) return static_cast<int>(at);
  }
  return -1;
}

int FindCharacterNoCase(const std::string& text, char wanted, std::size_t start) {
  const auto byte = static_cast<unsigned char>(wanted);
  const int lower = FindCharacter(text, static_cast<char>(Page().Lower(byte)), start);
  const int upper = FindCharacter(text, static_cast<char>(Page().Upper(byte)), start);
  return static_cast<int>(std::min(static_cast<unsigned>(lower), static_cast<unsigned>(upper)));
}

int ReverseFind(const std::string& text, const std::string& wanted, int start, bool no_case) {
  if (text.empty() || wanted.empty()) return -1;
  const int length = static_cast<int>(text.size());
  for (int at = start == -1 || start >= length ? length - 1 : start; at >= (no_case ? 0 : 1);
       --at) {
    const std::string part = text.substr(static_cast<std::size_t>(at), wanted.size());
    if (no_case ? Lower(part) == Lower(wanted) : part == wanted) return at;
  }
  return -1;
}

void Delete(std::string& text, std::size_t pos, int count) {
  if (pos >= text.size()) return;
  text.erase(pos, count < 0 ? std::string::npos : static_cast<std::size_t>(count));
}

void Insert(std::string& text, std::size_t pos, const std::string& added) {
  if (added.empty()) return;
  while (text.size() < pos) text += ' ';
  text.insert(pos, added);
}

/// Removes one-byte characters: all that are `ch`, or all white space.
void Remove(std::string& text, char ch, bool white_space) {
  std::string kept;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t size = CharacterSize(text, at);
    const bool unwanted = size == 1 && (white_space ? IsSpace(text[at]) : text[at] == ch);
    if (!unwanted) kept += text.substr(at, size);
    at += size;
  }
  text = kept;
}

/// A replacement at a time, each a deletion and an insertion. Finds in `searched`: the text itself,
/// or a copy in lower case that is not edited.
int Replace(std::string& text, const std::string& find, const std::string& with, bool all,
            bool no_case) {
  if (find.empty()) return 0;
  const std::string copy = Lower(text);
  const std::string wanted = no_case ? Lower(find) : find;
  int count = 0;
  int position = 0;
  int difference = 0;
  for (;;) {
    const int hit = Find(no_case ? copy : text, wanted, static_cast<std::size_t>(position));
    if (hit < 0) return count;
    const int real = hit + difference;
    Delete(text, static_cast<std::size_t>(real), static_cast<int>(find.size()));
    Insert(text, static_cast<std::size_t>(real), with);
    ++count;
    if (no_case) {
      position = hit + static_cast<int>(find.size());
      difference += static_cast<int>(with.size()) - static_cast<int>(find.size());
    } else {
      position = hit + static_cast<int>(with.size());
    }
    if (!all) return count;
  }
}

std::string Field(const std::string& text, const std::string& delimiter, int index) {
  std::size_t position = 0;
  std::string field;
  for (int i = 0; i <= index; ++i) {
    const int hit = delimiter.empty() ? -1 : Find(text, delimiter, position);
    const std::size_t end = hit < 0 ? text.size() : static_cast<std::size_t>(hit);
    field = text.substr(position, end - position);
    position = hit < 0 ? text.size() : end + delimiter.size();
  }
  return field;
}

std::string DelimitedField(const std::string& text, const std::string& open,
                           const std::string& close, int index) {
  std::size_t position = 0;
  std::string field;
  if (open.empty() || close.empty()) return "";
  for (int i = 0; i <= index; ++i) {
    const int hit = Find(text, open, position);
    if (hit < 0) return "";
    const std::size_t start = static_cast<std::size_t>(hit) + open.size();
    const int end = Find(text, close, start);
    if (end < 0) return "";
    field = text.substr(start, static_cast<std::size_t>(end) - start);
    position = static_cast<std::size_t>(hit) + close.size();
  }
  return field;
}

std::vector<std::string> Split(std::string& text, const std::string& delimiters) {
  std::vector<std::string> tokens;
  std::string token;
  std::size_t cut = text.size();
  for (std::size_t at = 0; at <= text.size();) {
    const std::size_t size = at == text.size() ? 1 : CharacterSize(text, at);
    const std::string character = text.substr(at, size);
    const int hit = size == 1 && at < text.size() ? FindCharacter(delimiters, text[at], 0)
                                                  : Find(delimiters, character, 0);
    if (at == text.size() || hit >= 0) {
      if (!token.empty() && tokens.empty()) cut = at;
      if (!token.empty()) tokens.push_back(token);
      token.clear();
    } else {
      token += character;
    }
    at += size;
  }
  text.resize(cut);
  return tokens;
}

void Proper(std::string& text) {
  text = Lower(text);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (i == 0 || (IsSpace(text[i - 1]) && Page().IsAlpha(byte))) {
      text[i] = static_cast<char>(Page().Upper(byte));
    }
  }
}

void Plural(std::string& text) {
  if (text.empty()) return;
  std::size_t last = 0;
  for (std::size_t at = 0; at < text.size(); at += CharacterSize(text, at)) last = at;
  const std::string character = Lower(text.substr(last));
  if (character == "y") text.back() = 'i';
  text += character == "s" || character == "x" || character == "y" ? "es" : "s";
}

class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : data_(data), end_(data + size) {}
  bool IsEmpty() const { return data_ == end_; }
  int Byte() { return data_ == end_ ? 0 : *data_++; }
  /// From -1 up, mostly small.
  int Number() { return Byte() - 1; }
  char Character() { return static_cast<char>(std::max(Byte(), 1)); }
  std::string Text() {
    std::string text;
    for (int size = Byte() % 8; size > 0; --size) text += Character();
    return text;
  }

 private:
  const std::uint8_t* data_;
  const std::uint8_t* end_;
};

class Runner {
 public:
  void Step(Input& input) {
    operation_ = input.Byte() % 18;
    // Now and then a text is a part of the string itself.
    const int own = input.Byte();
    std::string first = input.Text();
    const char* argument = first.c_str();
    if (own % 4 == 0 && !plain_.empty()) {
      argument =
          static_cast<const char*>(text_) + static_cast<std::size_t>(own / 4) % plain_.size();
      first = argument;
    }
    const std::string second = input.Text();
    const int number = input.Number();
    const char ch = input.Character();
    Edit(argument, first, second, number, ch);
    Look(argument, first, second, number, ch);
    Same(std::string(text_.View()), plain_);
    Same(text_.GetLength(), static_cast<int>(plain_.size()));
    if (plain_.size() > kLongest) {
      plain_.resize(kLongest / 2);
      text_.Delete(kLongest / 2, -1);
    }
  }

 private:
  template <typename T>
  void Same(const T& ours, const T& plain) {
    if (ours == plain) return;
    std::fprintf(stderr, "operation %d differs from the reference\n", operation_);
    std::abort();
  }

  void Edit(const char* argument, const std::string& first, const std::string& second, int number,
            char ch) {
    const int pos = std::max(number, 0);
    const auto place = static_cast<std::size_t>(pos);
    const bool all = number % 4 != 0;
    switch (operation_) {
      case 0:
        text_ += argument;
        plain_ += first;
        break;
      case 1:
        text_.Insert(pos, argument);
        Insert(plain_, place, first);
        break;
      case 2:
        text_.Delete(pos, ch);
        Delete(plain_, place, ch);
        break;
      case 3:
        text_.Delete(ch);
        Remove(plain_, ch, false);
        break;
      case 4:
        text_.Replace(pos, ch, argument);
        Delete(plain_, place, ch);
        Insert(plain_, place, first);
        break;
      case 5: {
        Same(text_.ReplaceTabs(pos % 8), static_cast<int>(std::ranges::count(plain_, '\t')));
        for (std::size_t at = 0; (at = plain_.find('\t', at)) != std::string::npos;) {
          plain_.replace(at, 1, place % 8, ' ');
        }
        break;
      }
      case 6:
        Remove(plain_, ch, true);
        Same(text_.TrimWhiteSpace(), static_cast<int>(plain_.size()));
        break;
      case 7:
        text_.MakeProper();
        Proper(plain_);
        break;
      case 8:
        text_.MakePlural();
        Plural(plain_);
        break;
      case 9:
        Same(text_.FindReplace(argument, second.c_str(), all),
             Replace(plain_, first, second, all, false));
        break;
      case 10:
        Same(text_.FindReplace(second.c_str(), argument, all),
             Replace(plain_, second, first, all, false));
        break;
      case 11:
        Same(text_.FindReplaceNoCase(argument, second.c_str(), all),
             Replace(plain_, first, second, all, true));
        break;
      case 12: {
        dq::CStringArray out;
        const int count = text_.Split(argument, out);
        std::vector<std::string> tokens;
        for (int i = 0; i < out.GetSize(); ++i) tokens.emplace_back(out[i].View());
        Same(tokens, Split(plain_, first));
        Same(count, out.GetSize());
        break;
      }
      case 13: {
        const std::string field = first + '\0' + second;
        const std::size_t size = place % (field.size() + 1);
        text_.ExtractFromCharBuffer(field.data(), static_cast<int>(size));
        plain_ = field.substr(0, std::min(size, first.size()));
        while (!plain_.empty() && IsSpace(plain_.back())) plain_.pop_back();
        break;
      }
      default:
        break;
    }
  }

  void Look(const char* argument, const std::string& first, const std::string& second, int number,
            char ch) {
    const std::size_t start =
        plain_.empty() ? 0 : static_cast<std::size_t>(number + 1) % plain_.size();
    const int from = static_cast<int>(start);
    const int index = number % 16;
    switch (operation_) {
      case 14:
        Same(text_.Find(argument, from), Find(plain_, first, start));
        Same(text_.Find(ch, from), FindCharacter(plain_, ch, start));
        break;
      case 15:
        Same(text_.FindNoCase(argument, from), Find(Lower(plain_), Lower(first), start));
        Same(text_.FindNoCase(ch, from), FindCharacterNoCase(plain_, ch, start));
        break;
      case 16:
        Same(text_.ReverseFind(argument, number), ReverseFind(plain_, first, number, false));
        Same(text_.ReverseFindNoCase(argument, number), ReverseFind(plain_, first, number, true));
        break;
      case 17: {
        Same(std::string(text_.GetField(argument, index).View()), Field(plain_, first, index));
        Same(std::string(text_.GetDelimitedField(argument, second.c_str(), index).View()),
             DelimitedField(plain_, first, second, index));
        if (!Page().IsLeadByte(static_cast<unsigned char>(ch))) {
          Same(std::string(text_.GetField(ch, index).View()),
               Field(plain_, std::string(1, ch), index));
        }
        std::string unused = plain_;
        Same(text_.GetFieldCount(argument), 1 + Replace(unused, first, "", true, false));
        break;
      }
      default:
        break;
    }
  }

  int operation_ = 0;
  CDQString text_;
  std::string plain_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, std::min<std::size_t>(size, 4096));
  const unsigned pages[] = {0, 0, 1252, 932};
  dq::platform::Current().locale->SetCodePage(pages[input.Byte() % 4]);
  Runner runner;
  while (!input.IsEmpty()) runner.Step(input);
  return 0;
}
