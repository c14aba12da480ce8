#include "dqlib/framework/base/c_string.h"

#include <climits>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <utility>

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/base/resource_module.h"
#include "tests/support/rows.h"
#include "tests/support/scripted_locale.h"

namespace dq {
namespace {

using namespace std::string_view_literals;

/// Too long for the room inside a string.
constexpr const char* kLong = "a text that is stored outside of the string itself";

TEST(CString, PlainTextsEndAtTheFirstZeroAndViewsDoNot) {
  EXPECT_EQ(CString("ab\0c").View(), "ab"sv);
  EXPECT_EQ(CString("ab\0c", 4).View(), "ab\0c"sv);
  EXPECT_EQ(CString("abc", -1), "");
  EXPECT_EQ(CString(nullptr), "");
  EXPECT_EQ(CString('x', 3), "xxx");
  EXPECT_EQ(CString('x', -3), "");
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
  char* buffer = text.GetBuffer(40);
  EXPECT_EQ(std::string(buffer, 40), "abc" + std::string(37, '\0'));
  std::memcpy(buffer, "xy\0z", 4);
  EXPECT_EQ(text.GetLength(), 3) << "until it is released";
  text.ReleaseBuffer();
  EXPECT_EQ(text.View(), "xy"sv);
  std::memcpy(text.GetBuffer(4), "xy\0z", 4);
  text.ReleaseBuffer(4);
  EXPECT_EQ(text.View(), "xy\0z"sv);
  text.GetBuffer(1);
  text.ReleaseBuffer(100);
  EXPECT_EQ(text.View(), "xy\0z"sv) << "no more than the buffer has";
  std::memcpy(text.GetBuffer(40), "xy\0zfgh", 8);
  EXPECT_EQ(CString(text).View(), "xy\0z"sv) << "what is behind the value isn't copied";
  text += '!';
  EXPECT_EQ(text.View(), "xy\0z!"sv) << "and dropped by a change";
}

TEST(CString, ClipsParts) {
  const CString text("abcdef");
  for (const auto& [from, count, part] : test::Rows<int, int, const char*>{
           {2, 2, "cd"}, {2, INT_MAX, "cdef"}, {7, 1, ""}, {-1, 2, "ab"}, {1, -1, ""}}) {
    EXPECT_EQ(text.Mid(from, count), part) << from << ' ' << count;
  }
  EXPECT_EQ(text.Mid(2) + text.Left(9) + text.Left(-1), "cdefabcdef");
  EXPECT_EQ(text.Right(2) + text.Right(9) + text.Right(-1), "efabcdef");
}

TEST(CString, SearchesTrimsAndSpans) {
  CString text(" \t=ab;b=\r\n");
  EXPECT_EQ(text.ReverseFind('b'), 6);
  EXPECT_EQ(text.Find("b="), 6);
  EXPECT_EQ(text.FindOneOf(";="), 2);
  EXPECT_EQ(text.SpanIncluding(" \t"), " \t");
  EXPECT_EQ(text.SpanExcluding(";"), " \t=ab");
  EXPECT_EQ(text.SpanExcluding(""), text);
  text.TrimRight();
  text.TrimLeft();
  EXPECT_EQ(text, "=ab;b=");
  EXPECT_GT(text.CompareNoCase("=AB;"), 0);
  EXPECT_GT(CString("\xE9").Compare("z"), 0) << "bytes are unsigned";
}

/// Every comparison of the two, in either order, is that of `order`, below 0, 0 or above 0.
template <class Left, class Right>
bool Ordered(const Left& left, const Right& right, int order) {
  const auto is = [](const auto& a, const auto& b, int expected) {
    return (a < b) == (expected < 0) && (a <= b) == (expected <= 0) && (a > b) == (expected > 0) &&
           (a >= b) == (expected >= 0) && (a == b) == (expected == 0) &&
           (a != b) == (expected != 0);
  };
  return is(left, right, order) && is(right, left, -order);
}

TEST(CString, ComparesItsBytesWithEveryKindOfText) {
  for (const auto& [text, other, order] :
       test::Rows<const char*, const char*, int>{{"b", "a", 1},
                                                 {"a", "b", -1},
                                                 {"ab", "a", 1},
                                                 {"", "", 0},
                                                 {"ab", "ab", 0},
                                                 {"\xE9", "z", 1},
                                                 {kLong, "a text that", 1}}) {
    const CString left(text);
    EXPECT_TRUE(Ordered(left, CString(other), order)) << text << " / " << other;
    EXPECT_TRUE(Ordered(left, other, order)) << text << " / " << other;
    EXPECT_TRUE(Ordered(left, std::string_view(other), order)) << text << " / " << other;
    EXPECT_TRUE(Ordered(left, std::string(other), order)) << text << " / " << other;
  }
  char array[] = "a";
  EXPECT_TRUE(Ordered(CString("b"), array, 1) && Ordered(CString(), nullptr, 0));
  EXPECT_TRUE(Ordered(CString("a\0b"sv), "a", 1) && Ordered(CString("a\0b"sv), "a\0b"sv, 0));
  EXPECT_EQ("a"sv + CString("b") + "c"sv + std::string("d") + 'e', "abcde");
}

// What belongs to the standard's views stays theirs in this namespace, and an index is any integer.
static_assert("ab"sv == "ab" && "ab" < "b"sv);
template <class Left, class Right>
concept HasSum = requires(Left left, Right right) {
  left + right;
};
static_assert(!HasSum<std::string_view, const char*> && HasSum<std::string_view, CString>);
static_assert(requires(CString text, std::ptrdiff_t place) {
  text[place];
  text[0UL];
  text['\0'];
});

TEST(CString, GoesByCharacterWhereThereAreLeadBytes) {
  test::ScriptedLocale locale;
  ASSERT_TRUE(locale.SetCodePage(932));
  // Two characters, whose second bytes look like a backslash and an "A", around an "A".
  CString text("\x83\\A\x83\x41");
  EXPECT_EQ(text.Find('\\'), -1);
  EXPECT_EQ(text.Find('A'), 2);
  EXPECT_EQ(text.ReverseFind('A'), 2);
  EXPECT_EQ(text.FindOneOf("\\\x83\x41"), 3);
  EXPECT_EQ(text.SpanExcluding("A"), "\x83\\");
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
  EXPECT_EQ(text, "a.sql, line 7");
  EXPECT_THROW(text.Format(50002u, 1), std::bad_alloc) << "the text would be too long";
  EXPECT_EQ(text, "a.sql, line 7");
  text.Format(50003u, 7);
  EXPECT_EQ(text, "");
}

}  // namespace
}  // namespace dq
