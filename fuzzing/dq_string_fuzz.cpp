// Operations of the string class, one after the other, held to what they promise of each other.
// Input: which code page, then for each operation its number and its arguments.

#include "dqlib/core/dq_string.h"
#include "dqlib/platform/platform.h"
#include "fuzzing/fuzzing.h"

namespace dq::fuzz {
namespace {

/// What an operation is called with.
struct Call {
  std::string first;
  std::string second;
  int number;
  char ch;
  int at() const { return std::max(number, 0); }
  bool all() const { return number % 4 != 0; }
};

/// Changes a string; the first argument may be a part of it.
using Change = int (*)(CDQString& text, const char* first, const Call& call);

constexpr Change kChanges[] = {
    [](auto& text, auto* first, auto&) { return (text += first).GetLength(); },
    [](auto& text, auto* first, auto& call) { return text.Insert(call.at(), first).GetLength(); },
    [](auto& text, auto*, auto& call) { return text.Delete(call.at(), call.ch).GetLength(); },
    [](auto& text, auto*, auto& call) { return text.Delete(call.ch).GetLength(); },
    [](auto& text, auto* first, auto& call) {
      return text.Replace(call.at(), call.ch, first).GetLength();
    },
    [](auto& text, auto*, auto& call) { return text.ReplaceTabs(call.at() % 8); },
    [](auto& text, auto*, auto&) { return text.TrimWhiteSpace(); },
    [](auto& text, auto*, auto&) { return text.MakeProper().GetLength(); },
    [](auto& text, auto*, auto&) { return text.MakePlural().GetLength(); },
    [](auto& text, auto* first, auto& call) {
      return text.FindReplace(first, call.second.c_str(), call.all());
    },
    [](auto& text, auto* first, auto& call) {
      return text.FindReplace(call.second.c_str(), first, call.all());
    },
    [](auto& text, auto* first, auto& call) {
      return text.FindReplaceNoCase(first, call.second.c_str(), call.all());
    },
    [](auto& text, auto* first, auto&) {
      CStringArray tokens;
      return text.Split(first, tokens);
    },
    [](auto& text, auto* first, auto& call) {
      text.ExtractFromCharBuffer(first, std::min(call.at(), static_cast<int>(call.first.size())));
      return 0;
    },
};

/// A hit is one, and case ignored there is one as near.
void Search(const CDQString& text, const Call& call) {
  const char* const wanted = call.first.c_str();
  const auto stands_at = [&](int place) {
    return text.View().substr(static_cast<std::size_t>(place)).starts_with(call.first);
  };
  const int start = text.IsEmpty() ? 0 : (call.number + 1) % text.GetLength();
  const int hit = text.Find(wanted, start);
  Require(hit < 0 || (hit >= start && stands_at(hit)));
  const int any_case = text.FindNoCase(wanted, start);
  Require(any_case < 0 || any_case >= start);
  const int last = text.ReverseFind(wanted, call.number);
  Require(last < 0 || (last > 0 && stands_at(last)));
  Require(last < 0 || text.ReverseFindNoCase(wanted, call.number) >= last);
  const int character = text.Find(call.ch, start);
  Require(character < 0 || text[character] == call.ch);
  const int either_case = text.FindNoCase(call.ch, start);
  Require(character < 0 || (either_case >= start && either_case <= character));
}

/// The fields with the delimiters between them are the text.
void JoinFields(const CDQString& text, const std::string& delimiter) {
  std::string joined;
  const int count = text.GetFieldCount(delimiter.c_str());
  for (int i = 0; i < count; ++i) {
    joined += (i == 0 ? "" : delimiter) + std::string(text.GetField(delimiter.c_str(), i).View());
  }
  Require(joined == text.View() && text.GetField(delimiter.c_str(), count).IsEmpty());
  CDQString cut(text);
  const int size = static_cast<int>(delimiter.size());
  Require(cut.FindReplace(delimiter.c_str(), "", true) == (size == 0 ? 0 : count - 1));
  Require(cut.GetLength() == text.GetLength() - (count - 1) * size);
  const CDQString field = text.GetDelimitedField(delimiter.c_str(), delimiter.c_str(), 0);
  Require(field == text.GetField(delimiter.c_str(), 1) || field.IsEmpty());
}

}  // namespace

void Try(std::string_view input) {
  input = input.substr(0, 4096);
  const auto byte = [&] {
    const int taken = input.empty() ? 0 : static_cast<unsigned char>(input.front());
    input.remove_prefix(std::min<std::size_t>(input.size(), 1));
    return taken;
  };
  const auto words = [&] {
    std::string taken(static_cast<std::size_t>(byte()) % 8, ' ');
    for (char& each : taken) each = static_cast<char>(std::max(byte(), 1));
    return taken;
  };
  const unsigned pages[] = {0, 0, 1252, 932};
  platform::Current().locale->SetCodePage(pages[byte() % 4]);
  CDQString text;
  while (!input.empty()) {
    const int operation = byte() % 18;
    const int own = byte();
    Call call{words(), words(), byte() - 1, static_cast<char>(std::max(byte(), 1))};
    if (operation < 14) {
      // Now and then a text is a part of the string itself, which makes no difference.
      const char* first = call.first.c_str();
      CDQString same(text);
      if (own % 4 == 0 && !text.IsEmpty()) {
        first = static_cast<const char*>(text) + own / 4 % text.GetLength();
        call.first = first;
      }
      const int result = kChanges[operation](text, first, call);
      Require(result == kChanges[operation](same, call.first.c_str(), call) && text == same);
      Require(text[text.GetLength()] == '\0');
    } else if (operation < 17) {
      Search(text, call);
    } else {
      JoinFields(text, call.first);
    }
    if (text.GetLength() > 2000) text.Delete(1000, -1);
  }
}

}  // namespace dq::fuzz
