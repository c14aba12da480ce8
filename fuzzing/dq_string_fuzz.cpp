// Operations of the string class, one after the other, held to what they promise of each other.
// Input: which code page, then for each operation its number and its arguments.

#include "dqlib/core/dq_string.h"
#include "dqlib/platform/platform.h"
#include "fuzzing/fuzzing.h"

namespace {

using dq::CDQString;
using dq::fuzz::Require;

constexpr int kLongest = 2000;

class Input {
 public:
  explicit Input(std::string_view bytes) : bytes_(bytes) {}
  bool IsEmpty() const { return bytes_.empty(); }
  int Byte() {
    if (IsEmpty()) return 0;
    const auto byte = static_cast<unsigned char>(bytes_.front());
    bytes_.remove_prefix(1);
    return byte;
  }
  char Character() { return static_cast<char>(std::max(Byte(), 1)); }
  std::string Text() {
    std::string text;
    for (int size = Byte() % 8; size > 0; --size) text += Character();
    return text;
  }

 private:
  std::string_view bytes_;
};

/// What an operation is called with.
struct Call {
  int operation;
  int own;
  std::string first;
  std::string second;
  int number;
  char ch;
};

/// Runs the operation, whose first argument may be a part of the string.
int Run(CDQString& text, const Call& call, const char* first) {
  const int pos = std::max(call.number, 0);
  const bool all = call.number % 4 != 0;
  dq::CStringArray tokens;
  switch (call.operation) {
    case 0:
      return (text += first).GetLength();
    case 1:
      return text.Insert(pos, first).GetLength();
    case 2:
      return text.Delete(pos, call.ch).GetLength();
    case 3:
      return text.Delete(call.ch).GetLength();
    case 4:
      return text.Replace(pos, call.ch, first).GetLength();
    case 5:
      return text.ReplaceTabs(pos % 8);
    case 6:
      return text.TrimWhiteSpace();
    case 7:
      return text.MakeProper().GetLength();
    case 8:
      return text.MakePlural().GetLength();
    case 9:
      return text.FindReplace(first, call.second.c_str(), all);
    case 10:
      return text.FindReplace(call.second.c_str(), first, all);
    case 11:
      return text.FindReplaceNoCase(first, call.second.c_str(), all);
    case 12:
      return text.Split(first, tokens);
    case 13:
      text.ExtractFromCharBuffer(first, std::min(pos, static_cast<int>(call.first.size())));
      return 0;
    default:
      return 0;
  }
}

bool StandsAt(const CDQString& text, int place, const std::string& wanted) {
  return text.View().substr(static_cast<std::size_t>(place)).starts_with(wanted);
}

/// A hit is one, and case ignored there is one as near.
void Search(const CDQString& text, const Call& call) {
  const char* const wanted = call.first.c_str();
  const int start = text.IsEmpty() ? 0 : (call.number + 1) % text.GetLength();
  const int hit = text.Find(wanted, start);
  const int any_case = text.FindNoCase(wanted, start);
  Require(hit < 0 || (hit >= start && StandsAt(text, hit, call.first)));
  Require(any_case < 0 || any_case >= start);
  const int last = text.ReverseFind(wanted, call.number);
  Require(last < 0 || (last > 0 && StandsAt(text, last, call.first)));
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

void dq::fuzz::Try(std::string_view bytes) {
  Input input(bytes.substr(0, 4096));
  const unsigned pages[] = {0, 0, 1252, 932};
  dq::platform::Current().locale->SetCodePage(pages[input.Byte() % 4]);
  CDQString text;
  while (!input.IsEmpty()) {
    Call call{input.Byte() % 18, input.Byte(), input.Text(), input.Text(), 0, ' '};
    call.number = input.Byte() - 1;
    call.ch = input.Character();
    // Now and then a text is a part of the string itself, which makes no difference.
    const char* argument = call.first.c_str();
    CDQString same(text);
    if (call.own % 4 == 0 && !text.IsEmpty()) {
      argument = static_cast<const char*>(text) + call.own / 4 % text.GetLength();
      call.first = argument;
    }
    const int result = Run(text, call, argument);
    Require(result == Run(same, call, call.first.c_str()) && text == same);
    Require(text[text.GetLength()] == '\0');
    if (call.operation >= 14 && call.operation < 17) Search(text, call);
    if (call.operation == 17) JoinFields(text, call.first);
    if (text.GetLength() > kLongest) text.Delete(kLongest / 2, -1);
  }
}
