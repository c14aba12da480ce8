#include "tests/support/system_locale.h"

/// Where `LOCPATH` is set, the C library's `newlocale` never frees its copy of it.
extern "C" const char* __lsan_default_suppressions() { return "leak:argz_add_sep"; }

namespace dq::test {
namespace {

using namespace multi_byte;
using namespace std::string_view_literals;
using Text = const char*;

/// Too long for the room inside a string.
constexpr Text kLong = "a text that is stored outside of the string itself";

TEST(CString, PlainTextsEndAtTheFirstZeroAndViewsDoNot) {
  EXPECT_EQ(CString("ab\0c") + CString("ab\0c", 4) + CString("abc", -1), "abab\0c"sv);
  EXPECT_EQ(CString(nullptr) + CString('x', 3) + CString('x', -3) + CString("yz", 1), "xxxy");
  CString text("ab\0c"sv);
  text += "\0d"sv;
  EXPECT_EQ(text.View(), "ab\0c\0d"sv);
  EXPECT_FALSE(text == "ab") << "the rest counts";
  text = 'x';
  EXPECT_EQ(text, "x");
}

TEST(CString, MovesAndChangesByPartsOfItself) {
  for (const std::string value : {"short", kLong}) {
    CString from(value), text(std::move(from));
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
  text.ReleaseBuffer(0);
  text.GetBuffer(-1);
  text.ReleaseBuffer(9);
  EXPECT_EQ(text, "");
}

TEST(CString, ClipsSearchesAndTrims) {
  const CString text("abcdef");
  EXPECT_EQ(text.Mid(2, 2) + "|" + text.Mid(2, INT_MAX) + "|" + text.Mid(6, 1) + text.Mid(7, 1) +
                text.Mid(-1, 2) + text.Mid(1, -1) + "|" + text.Mid(2),
            "cd|cdef|ab|cdef");
  EXPECT_EQ(text.Left(9) + text.Left(-1) + text.Right(2) + text.Right(9) + text.Right(-1),
            "abcdefefabcdef");
  CString line(" \t=ab;b=\r\n");
  EXPECT_TRUE(line.ReverseFind('b') == 6 && line.Find("b=") == 6 && line.FindOneOf(";=") == 2);
  EXPECT_TRUE(line.Find('x') == -1 && line.FindOneOf("xy") == -1 && line.FindOneOf("; ") == 0);
  EXPECT_EQ(line.SpanIncluding(" \t") + line.SpanExcluding(";"), " \t \t=ab");
  EXPECT_EQ(line.SpanIncluding("=\t") + line.SpanExcluding("; ") + line.SpanExcluding(""), line);
  line.TrimRight();
  line.TrimLeft();
  EXPECT_TRUE(line == "=ab;b=" && line.CompareNoCase("=AB;") > 0 && !line.CompareNoCase("=AB;B="));
}

/// Compares in every way, in either order; `order` is below 0, 0 or above 0.
bool Ordered(const auto& left, const auto& right, int order) {
  return (left <=> right) == (order <=> 0) && (right <=> left) == (0 <=> order) &&
         (left == right) == (order == 0) && (right == left) == (order == 0);
}

TEST(CString, ComparesItsBytesWithEveryKindOfText) {
  const Rows<Text, Text, int> rows = {
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
  EXPECT_TRUE(text.LoadString(50001) == 1 && !text.IsEmpty());
  EXPECT_TRUE(text.LoadString(50003) == 0 && text.IsEmpty());
  AfxFormatString2(text, 50000, "%2", "two");
  EXPECT_EQ(text, "two: 100%, %2 of %3%") << "in one pass";
  AfxFormatString1(text, 50000, text);
  EXPECT_EQ(text, "%2: 100%, two: 100%, %2 of %3% of %3%");
  text.Format(50001u, "a.sql", 7);
  EXPECT_THROW(text.Format(50002u, 1), std::bad_alloc) << "the text would be too long";
  EXPECT_EQ(text, "a.sql, line 7");
  CString missing("old");
  missing.Format(50003u, 7);
  text.Format(nullptr);
  EXPECT_EQ(text + missing, "");
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

TEST(Arrays, InsertBehindTheirEndsAndTakeTheirOwnElements) {
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
  array.RemoveAt(1);
  EXPECT_TRUE(array.GetSize() == 5 && array[1] == "") << "one, unless more are told";
  CArray<int> numbers;
  numbers.SetSize(1);
  EXPECT_TRUE(numbers.Add(5) == 1 && numbers.GetSize() == 2 && numbers[0] == 0 && numbers[1] == 5);
  numbers.InsertAt(4, numbers[1]);
  numbers.InsertAt(0, numbers[4]);
  numbers.RemoveAt(1);
  numbers.RemoveAt(1, 2);
  EXPECT_TRUE(numbers.GetSize() == 3 && numbers[0] == 5 && numbers[1] == 0 && numbers[2] == 5);
  numbers.SetSize(-1);
  array.SetSize(-1);
  EXPECT_EQ(array.GetSize() + numbers.GetSize(), 0);
  CMapStringToOb map;
  CTypedPtrArray<CObArray, CMapStringToOb*> maps;
  maps.InsertAt(0, nullptr);
  EXPECT_EQ(maps.Add(&map), 1);
  maps.SetAt(0, &map);
  EXPECT_TRUE(maps[0]->IsEmpty() && maps.GetAt(1) == &map);
}

TEST(Event, LetsEverybodyThroughUntilItIsResetOrOnlyTheNextAndTellsWhoWatches) {
  CEvent automatic(true), manual(true, true);
  int calls = 0;
  {
    const CEvent::Watch watch(automatic, [&] { ++calls; });
    automatic.SetEvent();
    EXPECT_TRUE(calls == 1 && automatic.Lock(0) && !automatic.Lock(1));
    automatic.SetEvent();
  }
  automatic.ResetEvent();
  EXPECT_TRUE(!automatic.Lock(0) && manual.Lock(0) && manual.Lock(0));
  manual.ResetEvent();
  std::atomic<int> passed = 0;
  std::vector<std::jthread> waiting;
  for (int i = 0; i < 3; ++i) {
    waiting.emplace_back([&] { passed += manual.Lock() && automatic.Lock(60'000); });
  }
  manual.SetEvent();
  for (int i = 1; i <= 3; ++i) {
    automatic.SetEvent();
    while (passed < i) std::this_thread::yield();
    EXPECT_EQ(passed, i);
  }
  EXPECT_EQ(calls, 2) << "none when the watch has gone";
}

TEST(Random, SequenceOfASeedIsTheSameEverywhere) {
  SeedRandom(1);
  for (const int number : {41, 18467, 6334, 26500}) EXPECT_EQ(NextRandom(), number);
}

/// Where `wanted` begins, going by character from `start`: the rule, word for word.
std::size_t PlainFind(std::string_view text, std::string_view wanted, std::size_t start) {
  while (start < text.size() && !text.substr(start).starts_with(wanted)) {
    start += CurrentCodePage().CharacterSize(text.substr(start));
  }
  return start < text.size() ? start : npos;
}

/// The first or the last place of one of some one-byte characters, going by character.
std::size_t PlainByte(std::string_view text, std::string_view set, std::size_t start, bool last) {
  std::size_t hit = npos;
  while (start < text.size() && (last || hit == npos)) {
    const std::size_t size = CurrentCodePage().CharacterSize(text.substr(start));
    if (size == 1 && set.find(text[start]) != npos) hit = start;
    start += size;
  }
  return hit;
}

TEST(MultiByte, SearchesAgreeWithPlainOnesInEveryCodePage) {
  ScriptedLocale locale;
  std::mt19937 random(5);
  // Letters of both widths, lead bytes that change with case, and what fills the ways between.
  constexpr std::string_view kBytes = "aAbBcxxx\x82\x60\x81\x82\x83\x41\xA2\xE5\xA3\x40\xE9\xC9";
  for (int i = 0; i < 15'000; ++i) {
    SCOPED_TRACE(i);
    constexpr UINT kPages[] = {0, 1252, 932, 936, 949, 950};
    ASSERT_TRUE(locale.SetCodePage(kPages[i % std::size(kPages)]));
    const bool is_long = random() % 8 == 0;
    const std::string_view bytes =
        kBytes.substr(random() % (kBytes.size() - 2), random() % 2 == 0 ? 3 : npos);
    const auto pick = [&](std::size_t size) {
      std::string text;
      while (text.size() < size) text += bytes[random() % bytes.size()];
      return text;
    };
    std::string text = pick(1 + random() % 12);
    if (is_long) {
      // Ways that are longer than what is looked at first.
      text = pick(3) + std::string(200 + random() % 400, 'x') + text +
             std::string(200 + random() % 400, random() % 2 == 0 ? 'x' : '\x82');
    }
    const std::string wanted =
        random() % 2 == 0 ? pick(1 + random() % 3) : text.substr(random() % text.size(), 4);
    const std::string lower = Lower(text), lower_wanted = Lower(wanted);
    const std::size_t start = random() % text.size();
    const std::string byte = wanted.substr(0, 1);
    ASSERT_EQ(Find(text, byte[0], start), PlainByte(text, byte, start, false));
    ASSERT_EQ(ReverseFind(text, byte[0]), PlainByte(text, byte, 0, true));
    ASSERT_EQ(FindNoCase(text, byte[0], start),
              PlainByte(text, Lower(byte) + Upper(byte), start, false));
    ASSERT_EQ(FindNoCase(text, wanted, start), PlainFind(lower, lower_wanted, start));
    ASSERT_EQ(ReverseFindBytes(text, wanted), text.rfind(wanted));
    // Each place is taken for the start of a character.
    std::size_t last = text.size();
    while (last-- > 0 && Lower(text.substr(last, wanted.size())) != lower_wanted) continue;
    ASSERT_EQ(ReverseFindNoCase(text, wanted), last);
    NoCaseWalk walk(text, wanted);
    for (std::size_t at = 0; at <= text.size() + 1; at += 1 + text.size() / 5) {
      ASSERT_EQ(Find(text, wanted, at), PlainFind(text, wanted, at)) << at;
      ASSERT_EQ(walk.Find(at), PlainFind(lower, lower_wanted, at)) << at;
    }
    int count = 0;
    for (std::size_t p = 0; (p = PlainFind(text, wanted, p)) != npos; p += wanted.size()) ++count;
    ASSERT_EQ(Searcher(wanted).Count(text), count);
    const std::string other = is_long ? text.substr(0, start) + wanted : wanted;
    ASSERT_TRUE((CompareNoCase(text, other) <=> 0) == (lower.compare(Lower(other)) <=> 0));
  }
  // In the last window each text ends elsewhere, for one ends in half of a character.
  const std::string window(255, 'x'), one = window + "\xDF", wide = window + "\x82\x60";
  ASSERT_TRUE(locale.SetCodePage(932));
  EXPECT_TRUE(CompareNoCase(one, wide) > 0 && CompareNoCase(wide, one) < 0);
  EXPECT_TRUE(Find("a", "", 1) == 1 && Find("a", "", 2) == npos && FindNoCase("a", "", 2) == npos);
}

TEST(MultiByte, CountsABytesPlacesInCrowdsAndFarApart) {
  std::string text(300, ';');
  for (const std::size_t distance : {2, 3, 255, 256, 1023, 1024, 5000}) {
    for (int i = 0; i < 99; ++i) text.append(distance - 1, 'x') += ';';
  }
  const Searcher searcher(";");
  std::size_t at = npos;
  for (std::size_t i = 0; i <= 300 + 7 * 99; ++i) {
    at = text.find(';', at + 1);
    EXPECT_EQ(searcher.FindAt(text, i), at) << i;
  }
  EXPECT_TRUE(searcher.Count(text) == 300 + 7 * 99 && at == npos);
}

TEST(MultiByte, RepetitiveTextsTakeLinearTime) {
  // A search that compares anew at each place would take hours for each of these.
  constexpr std::size_t kSize = 1 << 21;
  const std::string text(kSize, 'a'), half(kSize / 2, 'a'), quarter(kSize / 4, 'a');
  for (const std::string& wanted : {half + "b", "b" + half, quarter + "b" + quarter}) {
    // What is there is found, far as it is.
    const std::string around = text + wanted + text;
    const std::size_t hit = around.find('b') - wanted.find('b');
    for (const auto& [in, place] : {std::pair(&text, npos), {&around, hit}}) {
      EXPECT_TRUE(Find(*in, wanted) == place && ReverseFindBytes(*in, wanted) == place);
      EXPECT_EQ(NoCaseWalk(*in, Upper(wanted)).Find(0), place);
    }
  }
  // Nor does one that meets the bytes at every place, and never at the start of a character.
  ScriptedLocale locale;
  ASSERT_TRUE(locale.SetCodePage(932));
  std::string wide;
  for (std::size_t i = 0; i < kSize / 2; ++i) wide.append("\x83\x61");
  const std::string halves = wide.substr(1, kSize / 2);
  EXPECT_TRUE(Find(wide, halves) == npos && Find(wide + "a" + wide, halves) == kSize);
}

TEST(OleDateTime, CountsDaysAndFractionsAwayFromZero) {
  constexpr std::pair<const char*, DATE> kDates[] = {
      {"1899-12-30 00:00:00", 0},       {"1899-12-29 06:00:00", -1.25},
      {"1900-01-01 12:00:00", 2.5},     {"0100-01-01 00:00:00", -657434},
      {"9999-12-31 00:00:00", 2958465}, {"1600-02-29 06:00:00", -109512.25},
      {"1899-12-30 06:00:00", 0.25},    {"1899-12-31 00:00:01", 1 + 1 / 86400.0}};
  for (const auto& [text, date] : kDates) {
    SYSTEMTIME parts;
    ASSERT_TRUE(COleDateTime(date).GetAsSystemTime(parts));
    EXPECT_DOUBLE_EQ(COleDateTime(parts).ToDate(), date);
    EXPECT_EQ(COleDateTime(date).Format("%Y-%m-%d %H:%M:%S"), text);
  }
  // Rounded to the second, across midnight.
  EXPECT_EQ(COleDateTime(36925 - 0.1 / 86400).Format("%Y-%m-%d %X"), "2001-02-03 00:00:00");
  EXPECT_EQ(COleDateTime(-1 - 86399.9 / 86400).Format("%d %X"), "30 00:00:00");
  const COleDateTime time(2004, 12, 31, 1, 2, 3);
  SYSTEMTIME parts;
  EXPECT_TRUE(time.GetAsSystemTime(parts) && parts == (SYSTEMTIME{2004, 12, 5, 31, 1, 2, 3, 0}));
  EXPECT_TRUE(time.GetYear() == 2004 && time.GetMonth() == 12 && time.GetDay() == 31 &&
              time.GetHour() == 1 && time.GetMinute() == 2 && time.GetSecond() == 3 &&
              time.GetDayOfWeek() == 6 && time.GetDayOfYear() == 366);
}

TEST(OleDateTime, WhatIsNotOnTheCalendarIsInvalid) {
  SYSTEMTIME parts;
  for (const DATE date : {-657435.0, 2958466.0, 2958466 - 0.4 / 86400, 1e300, -HUGE_VAL,
                          std::numeric_limits<double>::quiet_NaN()}) {
    const COleDateTime time(date);
    EXPECT_EQ(time.GetStatus(), COleDateTime::invalid) << date;
    EXPECT_TRUE(!time.GetAsSystemTime(parts) && time.GetYear() == -1 && time.GetMonth() == -1 &&
                time.GetDay() == -1 && time.GetHour() == -1 && time.GetMinute() == -1 &&
                time.GetSecond() == -1 && time.GetDayOfWeek() == -1 && time.GetDayOfYear() == -1);
  }
  COleDateTime time;
  constexpr std::array<int, 6> kParts[] = {{99, 1, 1, 0, 0, 0},    {10'000, 1, 1, 0, 0, 0},
                                           {2001, 2, 29, 0, 0, 0}, {2001, 13, 1, 0, 0, 0},
                                           {2001, 1, 0, 0, 0, 0},  {2001, 1, 1, 24, 0, 0},
                                           {2001, 1, 1, 0, 60, 0}, {2001, 1, 1, 0, 0, -1}};
  for (const auto& [year, month, day, hour, minute, second] : kParts) {
    EXPECT_FALSE(time.SetDateTime(year, month, day, hour, minute, second)) << year << month << day;
    EXPECT_EQ(time.GetStatus(), COleDateTime::invalid);
  }
  EXPECT_TRUE(time.SetTime(18, 0, 0) && time.ToDate() == 0.75 && time.Format("%d %H") == "30 18");
  EXPECT_TRUE(time.SetDate(2001, 2, 3) && time.ToDate() == 36925 && COleDateTime().ToDate() == 0);
}

/// What is read, without a time of midnight and without the day that a time alone has; "" if it is
/// no date or time.
std::string Read(Text text, DWORD flags = 0, DWORD language = LANG_USER_DEFAULT) {
  COleDateTime time;
  const bool read = time.ParseDateTime(text, flags, language);
  EXPECT_EQ(read, time.GetStatus() == COleDateTime::valid);
  if (!read) return "";
  const std::string value(time.Format("%Y-%m-%d %H:%M:%S").View());
  if (value.starts_with("1899-12-30 ")) return value.substr(11);
  return value.substr(0, value.find(" 00:00:00"));
}

/// Reads the text of each case in each of the locales.
void ExpectRead(const std::string& locales, const std::string& cases, DWORD flags = 0,
                DWORD language = LANG_USER_DEFAULT) {
  std::istringstream names(locales);
  for (std::string name; names >> name;) {
    const SystemLocale locale(name);
    for (const auto& [text, value] : Cases<2>(cases)) {
      EXPECT_EQ(Read(text.c_str(), flags, language), value) << text << " in " << name;
    }
  }
}

TEST(OleDateTime, PrintsItsPartsAndTheLocalesNames) {
  const COleDateTime time(1993, 4, 3, 17, 5, 9);
  const COleDateTime early(100, 3, 1, 0, 0, 0);
  for (const auto& [name, format, late, first] : Rows<Text, Text, Text, Text>{
           {"C", "%#Y-%#m-%#d %#H:%#M:%#S %y %#y", "1993-4-3 17:5:9 93 93", "100-3-1 0:0:0 00 0"},
           {"C", "%I %#I %p %j %#j %w %U %W", "05 5 PM 093 93 6 13 13", "12 12 AM 060 60 1 09 09"},
           {"C", "%#c|%x", "Saturday, April 03, 1993 17:05:09|04/03/93",
            "Monday, March 01, 0100 00:00:00|03/01/00"},
           {"C", "%c|%X", "04/03/93 17:05:09|17:05:09", "03/01/00 00:00:00|00:00:00"},
           {"C", "%#x|%Y", "Saturday, April 03, 1993|1993", "Monday, March 01, 0100|0100"},
           {"C", "%a %#A %b%%%Z%q%#q%", "Sat Saturday Apr%%q%#q%", "Mon Monday Mar%%q%#q%"},
           {"de_DE", "%a %A %b %B %p", "Sa Samstag Apr April PM", "Mo Montag M\xC3\xA4r März AM"},
           {"ja_JP", "%A %b %B %p", "土曜日 4月 4月 午後", "月曜日 3月 3月 午前"}}) {
    const SystemLocale locale(name);
    EXPECT_EQ(time.Format(format), late) << name << " " << format;
    EXPECT_EQ(early.Format(format), first) << name << " " << format;
  }
  // Sunday, Monday and the last day of a year that begins with a Sunday.
  const SystemLocale locale("C");
  EXPECT_EQ(COleDateTime(1995, 1, 1, 11, 0, 0).Format("%a %j %U %W %p") + "|" +
                COleDateTime(1995, 1, 2, 12, 0, 0).Format("%a %j %U %#W %I %p") + "|" +
                COleDateTime(1995, 12, 31, 13, 0, 0).Format("%a %j %U %W %I"),
            "Sun 001 01 00 AM|Mon 002 01 1 12 PM|Sun 365 53 52 01");
  const std::string many(1000, 'x');
  EXPECT_EQ(time.Format((many + "%d" + many).c_str()).View(), many + "03" + many);
  EXPECT_TRUE(time.Format("").IsEmpty() && time.Format(nullptr).IsEmpty());
  EXPECT_EQ(COleDateTime(1e9).Format("%d"), "Invalid DateTime");
}

TEST(OleDateTime, ReadsDatesAndTimes) {
  constexpr char kAll[] = "C de_DE ja_JP";
  // Year, month, day; then month and day exchanged; then month and year. Digits glued to a name.
  // The half day.
  ExpectRead(kAll, R"(
1993-04-03 05:34:00 PM => 1993-04-03 17:34:00 ;; 12 Apr => 2001-04-12 ;; 99/12/31 => 1999-12-31
2001-25-12 => 2001-12-25 ;; 4/2001 => 2001-04-01 ;; 2001-4 => 2001-04-01 ;; 12/100 => 0100-12-01
Apr 2001 => 2001-04-01 ;; 2001April => 2001-04-01 ;; 3Apr2001 => 2001-04-03 ;; 5p => 17:00:00
2001Apr03 5p => 2001-04-03 17:00:00 ;; 12:30 am => 00:30:00 ;; 5 PM => 17:00:00 ;; 5PM => 17:00:00
2001Apr3 => 2001-04-03 ;; 12 a => 00:00:00 ;; 0 AM => 00:00:00 ;; 5 PM 2001-04-03 => 2001-04-03 17:00:00
10:20:30, 3-Apr-2001 => 2001-04-03 10:20:30 ;; 2001-04-03, 10:20 => 2001-04-03 10:20:00)");
  // Full stops, where "." isn't the date separator; blanks and zeros.
  ExpectRead("C", R"(
1/2/29 => 2029-01-02 ;; 1/2/30 => 1930-01-02 ;; 4/3 => 2001-04-03 ;; 1/2/100 => 0100-01-02
0:30:01 PM => 12:30:01 ;; 12:59:59 pm => 12:59:59 ;; 13:30 AM => 13:30:00 ;; 23:59:59 => 23:59:59
10.20 => 10:20:00 ;; 10.20.30 => 10:20:30 ;; 001/02/003 => 2003-01-02
4/3/1993 5.30 PM => 1993-04-03 17:30:00 ;; 004/0003/2001 010:00020 => 2001-04-03 10:20:00)");
  ExpectRead("C de_DE", R"(
13/4 => 2001-04-13 ;; 4/13 => 2001-04-13 ;; apr 3, 1993 5:34pm => 1993-04-03 17:34:00
3-APRIL-93 => 1993-04-03 ;; 3-Apr-01 => 2001-04-03 ;; 31/12/99 => 1999-12-31
8:30:00 January 25, 1996 => 1996-01-25 08:30:00 ;; 25.12.2001 => 2001-12-25
12.2001 => 2001-12-01 ;; 3.Apr.93 => 1993-04-03 ;; 3 march 1993 5:00 pm => 1993-03-03 17:00:00)");
  ExpectRead("C ja_JP", "00-01-02 => 2000-01-02 ;; 13/12/11 => 2013-12-11");
  ExpectRead("de_DE", R"(
13/12/11 => 2011-12-13 ;; 12/31/99 => 1999-12-31 ;; 3DEZ1993 => 1993-12-03 ;; 10.12.30 => 1930-12-10
Dezember 2001 => 2001-12-01 ;; 10.12 => 2001-12-10 ;; 3. März 1993 => 1993-03-03)");
  // The English names are always known.
  ExpectRead("ja_JP", R"(January 2001 => 2001-01-01 ;; February 2001 => 2001-02-01
March 2001 => 2001-03-01 ;; April 2001 => 2001-04-01 ;; May 2001 => 2001-05-01
June 2001 => 2001-06-01 ;; July 2001 => 2001-07-01 ;; August 2001 => 2001-08-01
September 2001 => 2001-09-01 ;; October 2001 => 2001-10-01 ;; November 2001 => 2001-11-01
December 2001 => 2001-12-01 ;; 93/4/3 => 1993-04-03 ;; 1993-11月-3 5:34 午後 => 1993-11-03 17:34:00
3 Apr 1993 => 1993-04-03)");
  // Names that hold separators, and one that another month has in English.
  ExpectRead("es_CR",
             "3/4/1993 5 p.m. => 1993-04-03 17:00:00 ;; 5:30 a.m. => 05:30:00 ;; "
             "12:15 a.m => 00:15:00");
  ExpectRead("fr_FR", "03-oct.-1993 => 1993-10-03 ;; 03-oct-1993 => 1993-10-03");
  ExpectRead("mn_MN", "03-1-р сар-1993 => 1993-01-03");
  ExpectRead("st_ZA", "3-Jan-1993 => 1993-06-03");
  // The fixed order, in which "00" is a year.
  ExpectRead(kAll, R"(00-04-03 => 2000-04-03 ;; 2001-25-12 => 2001-12-25 ;; 1993-Apr-3 => 1993-04-03
12-4 => 2001-12-04 ;; 31/12/99 => ;; Apr-3-1993 =>)",
             LOCALE_NOUSEROVERRIDE, LANG_SYSTEM_DEFAULT);
  ExpectRead(kAll, "1993-4-3 5:34 => 05:34:00", VAR_TIMEVALUEONLY, 0);
  ExpectRead(kAll, "1993-4-3 5:34 => 1993-04-03", VAR_DATEVALUEONLY);
  const SystemLocale locale("C");
  EXPECT_EQ(Read(" \t4/3/1993\r\n5 : 34\t:09 \n"), "1993-04-03 05:34:09");
}

TEST(OleDateTime, ReadsNothingElse) {
  ExpectRead("C de_DE ja_JP", R"(;; 4 ;; 1993 ;; 2/30/2001 ;; 1900-02-29 ;; 1993-13-13 ;; 0099-01-01
0001-01-01 ;; 1/2/0009 ;; 10000-01-01 ;; 1-1-10000 ;; 4/3/1993 24:00 ;; 5:60 ;; 5:3:60 ;; 5:30 XM
5:30 PM PM ;; 4//3/1993 ;; 4/3/1993/ ;; Apr Apr 1993 ;; 4/3/1993 5:30 x ;; 1 2 3 4 5 6 7 8 9 1 2 3
Marching 3 ;; 31/31/31 ;; 13/14/15 ;; 10:20:30,5 ;; 2001-13 ;; 2001-0 ;; 13/2001 ;; 0/2001 ;; 4/99
24.00 ;; 24.00.00 ;; 10.20:30 ;; 10:20.30 ;; 1.2.3.4 ;; 36925 ;; 36925.5 ;; 5 x ;; 24 PM ;; PM
5 PM 6 PM ;; 4/3/1993 5 ;; 10:20 10:30 ;; 5 4/3/1993 ;; 3AprMay ;; Apr3Apr ;; 1993-13月-3
4/3/1993,,5:30 ;; 4/3/1993/5:30)");
  EXPECT_EQ(Read("5:30\xFF") + Read(nullptr), "");
}

TEST(Time, CountsSecondsFromTheUsersMidnightOf1970) {
  const CTime day(1970, 1, 1, 0, 0, 0), time(2001, 2, 3, 4, 5, 6);
  EXPECT_EQ((CTime(1970, 1, 1, 7, 30, 5) - day).GetTotalSeconds(), 27005);
  EXPECT_EQ(time.Format("%Y/%m/%d(%H:%M:%S) %a") + time.Format(nullptr),
            "2001/02/03(04:05:06) Sat");
  EXPECT_EQ(time.GetYear() + time.GetMonth() + time.GetDay(), 2006);
  EXPECT_EQ(time.GetHour() + time.GetMinute() * 10 + time.GetSecond() * 100, 654);
  EXPECT_TRUE(time.GetDayOfWeek() == 7 && CTime(time.GetTime()) == time && day < time);
  SYSTEMTIME parts;
  EXPECT_TRUE(time.GetAsSystemTime(parts) && CTime(parts) == time);
  EXPECT_FALSE(CTime(1969, 12, 31, 23, 0, 0).IsValid() || CTime(2001, 2, 29, 0, 0, 0).IsValid() ||
               CTime(2001, 2, 1, 24, 0, 0).IsValid() || CTime(10000, 1, 1, 0, 0, 0).IsValid() ||
               CTime(2001, 1, 0x10001, 0, 0, 0).IsValid() || CTime(-86400 * 3).IsValid() ||
               CTime(1LL << 62).IsValid() || CTime().GetAsSystemTime(parts));
  EXPECT_EQ(CTime().GetYear() + CTime().GetDayOfWeek() + (time - CTime()).GetTotalSeconds(), -2);
}

}  // namespace
}  // namespace dq::test
