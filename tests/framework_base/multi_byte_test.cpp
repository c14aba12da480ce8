
#include "tests/support/doubles.h"

namespace dq::multi_byte {
namespace {

/// Where `wanted` begins, going by character from `start`: the rule, word for word.
std::size_t PlainFind(std::string_view text, std::string_view wanted, std::size_t start) {
  while (start < text.size() && !text.substr(start).starts_with(wanted)) {
    start += CurrentCodePage().CharacterSize(text.substr(start));
  }
  return start < text.size() ? start : npos;
}

/// The first or the last place of one of some one-byte characters, going by character.
std::size_t PlainFindByte(std::string_view text, const std::string& bytes, std::size_t start,
                          bool last) {
  std::size_t hit = npos;
  while (start < text.size() && (last || hit == npos)) {
    const std::size_t size = CurrentCodePage().CharacterSize(text.substr(start));
    if (size == 1 && bytes.find(text[start]) != npos) hit = start;
    start += size;
  }
  return hit;
}

TEST(MultiByte, SearchesAgreeWithPlainOnesInEveryCodePage) {
  test::ScriptedLocale locale;
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
    ASSERT_EQ(Find(text, byte[0], start), PlainFindByte(text, byte, start, false));
    ASSERT_EQ(ReverseFind(text, byte[0]), PlainFindByte(text, byte, 0, true));
    ASSERT_EQ(FindNoCase(text, byte[0], start),
              PlainFindByte(text, Lower(byte) + Upper(byte), start, false));
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
    for (std::size_t at = 0; (at = PlainFind(text, wanted, at)) != npos; at += wanted.size())
      ++count;
    ASSERT_EQ(Searcher(wanted).Count(text), count);
    const std::string other = is_long ? text.substr(0, start) + wanted : wanted;
    const int order = CompareNoCase(text, other), plain = lower.compare(Lower(other));
    ASSERT_TRUE((order < 0) == (plain < 0) && (order > 0) == (plain > 0));
  }
  // In the last window each text ends elsewhere, for one ends in half of a character.
  const std::string window(255, 'x'), one = window + "\xDF", wide = window + "\x82\x60";
  ASSERT_TRUE(locale.SetCodePage(932));
  EXPECT_TRUE(CompareNoCase(one, wide) > 0 && CompareNoCase(wide, one) < 0);
  EXPECT_TRUE(Find("a", "", 1) == 1 && Find("a", "", 2) == npos && FindNoCase("a", "", 2) == npos);
}

TEST(MultiByte, CountsABytesPlacesInCrowdsAndFarApart) {
  std::string text;
  std::vector<std::size_t> places;
  for (const std::size_t distance : {1, 2, 3, 255, 256, 1023, 1024, 5000}) {
    for (int i = 0; i < 300; ++i) {
      text.append(distance - 1, 'x').append(";");
      places.push_back(text.size() - 1);
    }
  }
  const Searcher searcher(";");
  EXPECT_EQ(searcher.Count(text), places.size());
  for (std::size_t i = 0; i < places.size(); i += 7) EXPECT_EQ(searcher.FindAt(text, i), places[i]);
  EXPECT_EQ(searcher.FindAt(text, places.size()), npos);
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
      EXPECT_EQ(Find(*in, wanted), place);
      EXPECT_EQ(NoCaseWalk(*in, Upper(wanted)).Find(0), place);
      EXPECT_EQ(ReverseFindBytes(*in, wanted), place);
    }
  }
  // Nor does one that meets the bytes at every place, and never at the start of a character.
  test::ScriptedLocale locale;
  ASSERT_TRUE(locale.SetCodePage(932));
  std::string wide;
  for (std::size_t i = 0; i < kSize / 2; ++i) wide.append("\x83\x61");
  const std::string halves = wide.substr(1, kSize / 2);
  EXPECT_EQ(Find(wide, halves), npos);
  EXPECT_EQ(Find(wide + "a" + wide, halves), kSize);
}

}  // namespace
}  // namespace dq::multi_byte
