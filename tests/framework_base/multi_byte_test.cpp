#include "dqlib/framework/base/multi_byte.h"

#include "tests/support/scripted_locale.h"
#include "tests/support/testing.h"

namespace dq::multi_byte {
namespace {

/// Calls `check` with every text of up to `longest` bytes from the alphabet.
void ForEachText(std::string_view alphabet, std::size_t longest,
                 const std::function<void(const std::string&)>& check,
                 const std::string& begun = "") {
  check(begun);
  if (begun.size() == longest) return;
  for (const char character : alphabet) ForEachText(alphabet, longest, check, begun + character);
}

/// Where `wanted` begins, going by character from `start`: the rule, word for word.
std::size_t PlainFind(const std::string& text, const std::string& wanted, std::size_t start) {
  while (start < text.size() && !text.substr(start).starts_with(wanted)) {
    start += CurrentCodePage().CharacterSize(std::string_view(text).substr(start));
  }
  return start < text.size() || wanted.empty() ? start : npos;
}

TEST(MultiByte, EverySearchAgreesWithAPlainOne) {
  for (const auto& [number, alphabet] :
       test::Rows<UINT, const char*>{{0, "aBb"}, {1252, "a\xE9\xC9"}, {932, "aA\x83"}}) {
    test::ScriptedLocale locale;
    ASSERT_TRUE(locale.SetCodePage(number));
    std::vector<std::string> wanted;
    ForEachText(alphabet, 3, [&](const std::string& text) { wanted.push_back(text); });
    ForEachText(alphabet, 5, [&](const std::string& text) {
      for (const std::string& find : wanted) {
        SCOPED_TRACE(::testing::PrintToString(text) + " " + ::testing::PrintToString(find));
        NoCaseWalk walk(text, find);
        for (std::size_t start = 0; start <= text.size(); ++start) {
          ASSERT_EQ(Find(text, find, start), PlainFind(text, find, start));
          ASSERT_EQ(walk.Find(start), PlainFind(Lower(text), Lower(find), start));
        }
        ASSERT_EQ(Find(text, find, text.size() + 1), npos);
        if (find.empty()) continue;
        ASSERT_EQ(ReverseFindBytes(text, find), text.rfind(find));
        std::size_t count = 0;
        for (std::size_t at = 0; (at = PlainFind(text, find, at)) != npos; at += find.size()) {
          ++count;
        }
        ASSERT_EQ(Searcher(find).Count(text), count);
      }
    });
  }
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
  const std::string text(kSize, 'a');
  const std::string half(kSize / 2, 'a');
  const std::string quarter(kSize / 4, 'a');
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
