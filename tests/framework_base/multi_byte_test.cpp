#include "dqlib/framework/base/multi_byte.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/support/rows.h"
#include "tests/support/scripted_locale.h"

namespace dq::multi_byte {
namespace {

/// Calls `check` with every text of up to `longest` bytes from the alphabet.
void ForEachText(std::string_view alphabet, std::size_t longest,
                 const std::function<void(const std::string&)>& check) {
  const std::function<void(std::string)> extend = [&](const std::string& text) {
    check(text);
    if (text.size() == longest) return;
    for (const char character : alphabet) extend(text + character);
  };
  extend("");
}

/// Where `wanted` begins, going by character from `start`: the rule, word for word.
std::size_t PlainFind(const std::string& text, const std::string& wanted, std::size_t start) {
  for (std::size_t at = start; at <= text.size();) {
    if (text.compare(at, wanted.size(), wanted) == 0) return at;
    if (at == text.size()) break;
    at += CurrentCodePage().CharacterSize(std::string_view(text).substr(at));
  }
  return npos;
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
    EXPECT_EQ(Find(text, wanted), npos);
    EXPECT_EQ(NoCaseWalk(text, wanted).Find(0), npos);
    EXPECT_EQ(ReverseFindBytes(text, wanted), npos);
    // What is there is found, far as it is.
    const std::string around = text + wanted + text;
    const std::size_t hit = around.find('b') - wanted.find('b');
    EXPECT_EQ(Find(around, wanted), hit);
    EXPECT_EQ(NoCaseWalk(around, Upper(wanted)).Find(0), hit);
    EXPECT_EQ(ReverseFindBytes(around, wanted), hit);
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
