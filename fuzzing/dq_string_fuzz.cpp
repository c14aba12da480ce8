// Operations of the string class, one after the other, held to what they promise of each other.
// Input: which code page, then for each operation its number and its arguments.

#include "fuzzing/fuzzing.h"

namespace dq::fuzz {

/// What an operation is called with.
struct Call {
  std::string first;
  CString second;
  int number;
  char ch;
  int at() const { return std::max(number, 0); }
  bool all() const { return number % 4 != 0; }
};

/// Changes a string or looks at it; the first argument may be a part of it.
using Operation = void (*)(CDQString& text, const char* first, const Call& call);

/// A hit is one, and case ignored there is one as near.
static void Search(CDQString& text, const char* wanted, const Call& call) {
  const int start = text.IsEmpty() ? 0 : (call.number + 1) % text.GetLength();
  const auto is_hit = [&](int place, int least) {
    return place < 0 || (place >= least && text.View().substr(place).starts_with(wanted));
  };
  const int last = text.ReverseFind(wanted, call.number);
  Require(is_hit(text.Find(wanted, start), start) && is_hit(last, 1));
  const int any_case = text.FindNoCase(wanted, start);
  Require(any_case < 0 || any_case >= start);
  Require(last < 0 || text.ReverseFindNoCase(wanted, call.number) >= last);
  const int character = text.Find(call.ch, start), either_case = text.FindNoCase(call.ch, start);
  Require(character < 0 || text[character] == call.ch);
  Require(character < 0 || (either_case >= start && either_case <= character));
}

/// The fields with the delimiters between them are the text.
static void JoinFields(CDQString& text, const char* delimiter, const Call&) {
  const int count = text.GetFieldCount(delimiter);
  CDQString joined = text.GetField(delimiter, 0);
  for (int i = 1; i < count; ++i) (joined += delimiter) += text.GetField(delimiter, i);
  Require(joined == text && text.GetField(delimiter, count).IsEmpty());
  const int replaced = joined.FindReplace(delimiter, "", true);
  Require(replaced == (*delimiter == '\0' ? 0 : count - 1));
  Require(joined.GetLength() == text.GetLength() - replaced * CDQString(delimiter).GetLength());
  const CDQString field = text.GetDelimitedField(delimiter, delimiter, 0);
  Require(field == text.GetField(delimiter, 1) || field.IsEmpty());
}

constexpr Operation kOperations[] = {
    [](auto& text, auto* first, auto&) { text += first; },
    [](auto& text, auto* first, auto& c) { text.Insert(c.at(), first); },
    [](auto& text, auto*, auto& c) { text.Delete(c.at(), c.ch); },
    [](auto& text, auto*, auto& c) { text.Delete(c.ch); },
    [](auto& text, auto* first, auto& c) { text.Replace(c.at(), c.ch, first); },
    [](auto& text, auto*, auto& c) { text.ReplaceTabs(c.at() % 8); },
    [](auto& text, auto*, auto&) { text.TrimWhiteSpace(); },
    [](auto& text, auto*, auto&) { text.MakeProper(); },
    [](auto& text, auto*, auto&) { text.MakePlural(); },
    [](auto& text, auto* first, auto& c) { text.FindReplace(first, c.second, c.all()); },
    [](auto& text, auto* first, auto& c) { text.FindReplace(c.second, first, c.all()); },
    [](auto& text, auto* first, auto& c) { text.FindReplaceNoCase(first, c.second, c.all()); },
    [](auto& text, auto* first, auto&) {
      CStringArray tokens;
      const int count = text.Split(first, tokens);
      for (int i = 0; i < count; ++i) text += tokens[i];
    },
    [](auto& text, auto* first, auto& c) {
      text.ExtractFromCharBuffer(first, std::min(c.at(), static_cast<int>(c.first.size())));
    },
    // What only looks.
    Search, Search, Search, JoinFields};

void Try(std::string_view input) {
  input = input.substr(0, 4096);
  const auto byte = [&] { return TakeByte(input); };
  const auto words = [&] {
    std::string taken(static_cast<std::size_t>(byte()) % 8, ' ');
    for (char& each : taken) each = static_cast<char>(std::max(byte(), 1));
    return taken;
  };
  const unsigned pages[] = {0, 0, 1252, 932};
  platform::Current().locale->SetCodePage(pages[byte() % 4]);
  CDQString text;
  while (!input.empty()) {
    const int operation = byte() % static_cast<int>(std::size(kOperations)), own = byte();
    Call call{words(), words(), byte() - 1, static_cast<char>(std::max(byte(), 1))};
    // Now and then a text is a part of the string itself, which makes no difference.
    const char* first = call.first.c_str();
    CDQString same(text);
    if (operation < 14 && own % 4 == 0 && !text.IsEmpty()) {
      first = static_cast<const char*>(text) + own / 4 % text.GetLength();
      call.first = first;
    }
    kOperations[operation](text, first, call);
    kOperations[operation](same, call.first.c_str(), call);
    Require(text == same && text[text.GetLength()] == '\0');
    if (text.GetLength() > 2000) text.Delete(1000, -1);
  }
}

}  // namespace dq::fuzz
