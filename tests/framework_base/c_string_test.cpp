
#include "tests/support/doubles.h"

namespace dq::test {
namespace {

using namespace std::string_view_literals;

/// Too long for the room inside a string.
constexpr const char* kLong = "a text that is stored outside of the string itself";

TEST(CString, PlainTextsEndAtTheFirstZeroAndViewsDoNot) {
  EXPECT_EQ(CString("ab\0c") + CString("ab\0c", 4) + CString("abc", -1), "abab\0c"sv);
  EXPECT_EQ(CString(nullptr) + CString('x', 3) + CString('x', -3), "xxx");
  CString text("ab\0c"sv);
  text += "\0d"sv;
  EXPECT_EQ(text.View(), "ab\0c\0d"sv);
  EXPECT_FALSE(text == "ab") << "the rest counts";
}

TEST(CString, MovesAndChangesByPartsOfItself) {
  for (const std::string value : {"short", kLong}) {
    CString from(value);
    CString text(std::move(from));
    EXPECT_EQ(from, "");  // NOLINT(bugprone-use-after-move): "" is promised.
    from = std::move(text);
    EXPECT_TRUE(text.IsEmpty());  // NOLINT(bugprone-use-after-move)
    CString& same = from;
    from = std::move(same);
    text = from = same;
    text += text;
    EXPECT_EQ(text.View(), value + value);
    text += static_cast<const char*>(text) + value.size() + 1;
    EXPECT_EQ(text.View(), value + value + value.substr(1));
    text = static_cast<const char*>(text) + 2 * value.size();
    text.Format("%s-%s", static_cast<const char*>(text), value.c_str());
    EXPECT_EQ(text.View(), value.substr(1) + "-" + value);
  }
}

TEST(CString, BufferIsZeroedAndJoinsTheValueOnRelease) {
  CString text("abc");
  EXPECT_EQ(std::string(text.GetBuffer(40), 40), "abc" + std::string(37, '\0'));
  std::memcpy(text.GetBuffer(40), "xy\0z", 4);
  EXPECT_EQ(text.GetLength(), 3) << "until it is released";
  text.ReleaseBuffer();
  EXPECT_EQ(text.View(), "xy"sv);
  std::memcpy(text.GetBuffer(4), "xy\0z", 4);
  text.ReleaseBuffer(4);
  text.GetBuffer(1);
  text.ReleaseBuffer(100);
  EXPECT_EQ(text.View(), "xy\0z"sv) << "no more than the buffer has";
  std::memcpy(text.GetBuffer(40), "xy\0zfgh", 8);
  EXPECT_EQ(CString(text).View(), "xy\0z"sv) << "what is behind the value isn't copied";
  text += '!';
  EXPECT_EQ(text.View(), "xy\0z!"sv) << "and dropped by a change";
}

TEST(CString, ClipsSearchesAndTrims) {
  const CString text("abcdef");
  EXPECT_EQ(text.Mid(2, 2) + "|" + text.Mid(2, INT_MAX) + "|" + text.Mid(6, 1) + text.Mid(7, 1) +
                text.Mid(-1, 2) + text.Mid(1, -1) + "|" + text.Mid(2) + text.Left(9) +
                text.Left(-1),
            "cd|cdef|ab|cdefabcdef");
  EXPECT_EQ(text.Right(2) + text.Right(9) + text.Right(-1), "efabcdef");
  CString line(" \t=ab;b=\r\n");
  EXPECT_TRUE(line.ReverseFind('b') == 6 && line.Find("b=") == 6 && line.FindOneOf(";=") == 2);
  EXPECT_TRUE(line.Find('x') == -1 && line.FindOneOf("xy") == -1);
  EXPECT_EQ(line.SpanIncluding(" \t") + line.SpanExcluding(";"), " \t \t=ab");
  EXPECT_EQ(line.SpanExcluding(""), line);
  line.TrimRight();
  line.TrimLeft();
  EXPECT_EQ(line, "=ab;b=");
  EXPECT_TRUE(line.CompareNoCase("=AB;") > 0 && line.CompareNoCase("=AB;B=") == 0);
}

/// Compares in every way, in either order; `order` is below 0, 0 or above 0.
bool Ordered(const auto& left, const auto& right, int order) {
  const auto is = [](const auto& a, const auto& b, int expected) {
    return (a < b) == (expected < 0) && (a <= b) == (expected <= 0) && (a > b) == (expected > 0) &&
           (a >= b) == (expected >= 0) && (a == b) == (expected == 0) && (a != b) != (a == b);
  };
  return is(left, right, order) && is(right, left, -order);
}

TEST(CString, ComparesItsBytesWithEveryKindOfText) {
  const Rows<const char*, const char*, int> rows = {
      {"b", "a", 1}, {"ab", "a", 1}, {"", "", 0}, {"\xE9", "z", 1}, {kLong, "a text that", 1}};
  for (const auto& [text, other, order] : rows) {
    const CString left(text);
    EXPECT_TRUE(Ordered(left, CString(other), order) && Ordered(left, other, order)) << text;
    EXPECT_TRUE(Ordered(left, std::string_view(other), order)) << text;
    EXPECT_TRUE(Ordered(left, std::string(other), order)) << text;
  }
  char array[] = "a";
  EXPECT_TRUE(Ordered(CString("b"), array, 1) && Ordered(CString(), nullptr, 0));
  EXPECT_TRUE(Ordered(CString("a\0b"sv), "a", 1) && Ordered(CString("a\0b"sv), "a\0b"sv, 0));
  EXPECT_EQ("a"sv + CString("b") + "c"sv + std::string("d") + 'e', "abcde");
  EXPECT_EQ('a' + CString("b") + static_cast<const char*>(nullptr), "ab");
  // What belongs to the standard's views stays theirs in this namespace.
  static_assert("ab"sv == "ab" && "ab" < "b"sv);
}

TEST(CString, GoesByCharacterWhereThereAreLeadBytes) {
  ScriptedLocale locale;
  ASSERT_TRUE(locale.SetCodePage(932));
  // Two characters, whose second bytes look like a backslash and an "A", around an "A".
  CString text("\x83\\A\x83\x41");
  EXPECT_TRUE(text.FindOneOf("\\\x83\x41") == 3 && text.SpanExcluding("A") == "\x83\\");
  text.MakeLower();
  text.MakeReverse();
  EXPECT_EQ(text, "\x83\x41\x61\x83\\");
}

TEST(CString, FillsPlacesOfStringsById) {
  ResourceModule module;
  module.AddString(50000, "%2: 100%, %1 of %3%");
  module.AddString(50001, "%s, line %d");
  module.AddString(50002, "%2147483648d");
  const CDynLinkLibrary link(&module);
  CString text;
  AfxFormatString2(text, 50000, "%2", "two");
  EXPECT_EQ(text, "two: 100%, %2 of %3%") << "in one pass";
  AfxFormatString1(text, 50000, text);
  EXPECT_EQ(text, "%2: 100%, two: 100%, %2 of %3% of %3%");
  text.Format(50001u, "a.sql", 7);
  EXPECT_THROW(text.Format(50002u, 1), std::bad_alloc) << "the text would be too long";
  EXPECT_EQ(text, "a.sql, line 7");
  text.Format(50003u, 7);
  EXPECT_EQ(text, "");
}

TEST(CStringList, PlacesStayValidWhileOthersComeAndGo) {
  CStringList list;
  const POSITION b = list.AddTail("b"), a = list.AddHead("a"), c = list.AddTail("c");
  list.AddTail(list.GetHead());
  EXPECT_EQ(Joined(list), "a|b|c|a|");
  EXPECT_TRUE(list.Find("a") == a && list.Find("x") == nullptr) << "the first of equals";
  list.RemoveAt(b);
  list.SetAt(c, "C");
  CString backwards;
  for (POSITION at = list.GetTailPosition(); at != nullptr;) backwards += list.GetPrev(at) + "|";
  EXPECT_EQ(backwards, "a|C|a|");
  EXPECT_TRUE(list.RemoveTail() == "a" && list.RemoveHead() == "a" && list.GetCount() == 1);
}

TEST(CStringArray, InsertsBehindTheEndAndTakesItsOwnElements) {
  CStringArray array;
  array.InsertAt(2, "c");
  array.InsertAt(0, array[2]);
  array.InsertAt(6, array[0]);
  array.RemoveAt(1, 2);
  array.Reserve(array.GetSize());
  EXPECT_EQ(array.Add(array[1]), 5);
  CString all;
  for (int i = 0; i < array.GetSize(); ++i) all += array[i] + "|";
  EXPECT_EQ(all, "c|c|||c|c|");
}

TEST(Random, SequenceOfASeedIsTheSameEverywhere) {
  SeedRandom(1);
  for (const int number : {41, 18467, 6334, 26500}) EXPECT_EQ(NextRandom(), number);
}

}  // namespace
}  // namespace dq::test
