#include "dqlib/platform/code_page.h"

#include <gtest/gtest.h>
#include <iconv.h>
#include <locale.h>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <wctype.h>

namespace dq::platform {
namespace {

/// Converts by the system's tables; no value for what the target can't write.
std::optional<std::string> Convert(const std::string& from, const std::string& to,
                                   std::string text) {
  iconv_t converter = iconv_open(to.c_str(), from.c_str());
  if (converter == reinterpret_cast<iconv_t>(-1)) throw std::runtime_error(from + " or " + to);
  std::string result(16, '\0');
  char* in = text.data();
  char* out = result.data();
  std::size_t in_left = text.size();
  std::size_t out_left = result.size();
  const std::size_t failed = iconv(converter, &in, &in_left, &out, &out_left);
  iconv_close(converter);
  if (failed != 0) return std::nullopt;
  result.resize(result.size() - out_left);
  return result;
}

std::string PageName(UINT number) { return "CP" + std::to_string(number); }

/// A character of the Basic Multilingual Plane in a code page.
std::optional<std::string> Encode(UINT page, wint_t character) {
  const std::string text = {static_cast<char>(character >> 8), static_cast<char>(character & 0xFF)};
  return Convert("UTF-16BE", PageName(page), text);
}

std::optional<wint_t> Decode(UINT page, unsigned char byte) {
  const auto text = Convert(PageName(page), "UTF-16BE", std::string(1, static_cast<char>(byte)));
  if (!text || text->size() != 2) return std::nullopt;
  return static_cast<unsigned char>((*text)[0]) * 0x100U + static_cast<unsigned char>((*text)[1]);
}

std::string Lower(UINT page, std::string text) {
  CodePage::Get(page)->LowerInPlace(text.data(), text.size());
  return text;
}

std::string Upper(UINT page, std::string text) {
  CodePage::Get(page)->UpperInPlace(text.data(), text.size());
  return text;
}

TEST(CodePage, KnowsItsSixPagesAndNoOther) {
  for (const UINT number : {0U, 932U, 936U, 949U, 950U, 1252U}) {
    ASSERT_NE(CodePage::Get(number), nullptr) << number;
    EXPECT_EQ(CodePage::Get(number)->number(), number);
    EXPECT_EQ(CodePage::Get(number)->IsSingleByte(), number == 0 || number == 1252);
  }
  for (const UINT number : {1U, 437U, 1251U, 65001U, 0xFFFFFFFFU}) {
    EXPECT_EQ(CodePage::Get(number), nullptr) << number;
  }
}

TEST(CodePage, AsciiHasTheSameCaseAndClassInEveryPage) {
  for (const UINT number : {0U, 932U, 936U, 949U, 950U, 1252U}) {
    const CodePage& page = *CodePage::Get(number);
    for (unsigned byte = 0; byte < 0x80; ++byte) {
      SCOPED_TRACE(testing::Message() << number << " byte " << byte);
      const bool upper = byte >= 'A' && byte <= 'Z';
      const bool lower = byte >= 'a' && byte <= 'z';
      const auto b = static_cast<unsigned char>(byte);
      EXPECT_FALSE(page.IsLeadByte(b));
      EXPECT_EQ(page.IsUpper(b), upper);
      EXPECT_EQ(page.IsLower(b), lower);
      EXPECT_EQ(page.IsAlpha(b), upper || lower);
      EXPECT_EQ(page.Lower(b), upper ? byte + 32 : byte);
      EXPECT_EQ(page.Upper(b), lower ? byte - 32 : byte);
    }
  }
}

TEST(CodePage, DefaultPageLetsUtf8PassUnharmed) {
  EXPECT_EQ(Upper(0, "gr\xC3\xBC\xC3\x9F"), "GR\xC3\xBC\xC3\x9F");
  for (unsigned byte = 0x80; byte < 0x100; ++byte) {
    const auto b = static_cast<unsigned char>(byte);
    const CodePage& page = *CodePage::Get(0);
    EXPECT_FALSE(page.IsLeadByte(b) || page.IsAlpha(b) || page.IsLower(b) || page.IsUpper(b));
    EXPECT_TRUE(page.Lower(b) == b && page.Upper(b) == b) << byte;
  }
}

TEST(CodePage, WesternLettersHaveTheCaseOfTheirCharacters) {
  const CodePage& page = *CodePage::Get(1252);
  locale_t reference = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  ASSERT_NE(reference, nullptr);
  // Small letters without a capital in the page.
  const std::set<unsigned> only_lower = {0x83, 0xAA, 0xB5, 0xBA, 0xDF};
  const auto in_page = [](wint_t character, unsigned otherwise) -> unsigned {
    const auto bytes = Encode(1252, character);
    return bytes ? static_cast<unsigned char>(bytes->front()) : otherwise;
  };
  for (unsigned byte = 0x80; byte < 0x100; ++byte) {
    SCOPED_TRACE(testing::Message() << std::hex << byte);
    const auto b = static_cast<unsigned char>(byte);
    // A byte without a character counts as a control character.
    const wint_t character = Decode(1252, b).value_or(byte);
    const unsigned lower = in_page(towlower_l(character, reference), byte);
    const unsigned upper = in_page(towupper_l(character, reference), byte);
    EXPECT_EQ(page.Lower(b), lower);
    EXPECT_EQ(page.Upper(b), upper);
    EXPECT_EQ(page.IsUpper(b), lower != byte);
    EXPECT_EQ(page.IsLower(b), upper != byte || only_lower.contains(byte));
    // The circumflex that stands alone at 88h is a sign here.
    EXPECT_EQ(page.IsAlpha(b), byte != 0x88 && iswalpha_l(character, reference) != 0);
    EXPECT_FALSE(page.IsLeadByte(b));
  }
  freelocale(reference);
}

TEST(CodePage, LeadBytesAreThoseOfThePage) {
  struct {
    UINT page;
    std::set<unsigned> edges;  // Where the class changes, going up from 80h.
  } const cases[] = {
      {932, {0x81, 0xA0, 0xE0, 0xFD}},
      {936, {0x81, 0xFF}},
      {949, {0x81, 0xFF}},
      {950, {0x81, 0xFF}},
  };
  for (const auto& c : cases) {
    bool lead = false;
    for (unsigned byte = 0x80; byte < 0x100; ++byte) {
      if (c.edges.contains(byte)) lead = !lead;
      const CodePage& page = *CodePage::Get(c.page);
      const auto b = static_cast<unsigned char>(byte);
      EXPECT_EQ(page.IsLeadByte(b), lead) << c.page << " byte " << byte;
      const bool katakana = c.page == 932 && byte >= 0xA6 && byte <= 0xDF;
      EXPECT_EQ(page.IsAlpha(b), katakana) << c.page << " byte " << byte;
      EXPECT_TRUE(page.Lower(b) == b && page.Upper(b) == b);
    }
  }
}

TEST(CodePage, FullWidthLatinLettersAreTheOnlyTwoByteOnesWithCase) {
  for (const UINT page : {932U, 936U, 949U, 950U}) {
    std::set<std::string> upper;
    std::set<std::string> lower;
    for (unsigned i = 0; i < 26; ++i) {
      const std::string capital = Encode(page, 0xFF21 + i).value();
      const std::string small = Encode(page, 0xFF41 + i).value();
      EXPECT_EQ(Lower(page, capital), small) << page << " letter " << i;
      EXPECT_EQ(Upper(page, small), capital) << page << " letter " << i;
      upper.insert(capital);
      lower.insert(small);
    }
    for (int lead = 0x81; lead < 0xFF; ++lead) {
      if (!CodePage::Get(page)->IsLeadByte(static_cast<unsigned char>(lead))) continue;
      for (int trail = 0; trail < 0x100; ++trail) {
        const std::string pair = {static_cast<char>(lead), static_cast<char>(trail)};
        EXPECT_EQ(Lower(page, pair) != pair, upper.contains(pair))
            << page << ' ' << testing::PrintToString(pair);
        EXPECT_EQ(Upper(page, pair) != pair, lower.contains(pair))
            << page << ' ' << testing::PrintToString(pair);
      }
    }
  }
}

TEST(CodePage, CaseChangesByCharacter) {
  struct {
    UINT page;
    const char* text;
    const char* upper;
  } const cases[] = {
      {932,
       "a\x83"
       "abc",
       "A\x83"
       "aBC"},  // A trail byte that looks like a letter.
      {932,
       "\xB1"
       "a",
       "\xB1"
       "A"},
      {950, "z\xA3\x40z", "Z\xA2\xE5Z"},
      {936, "ab\x81", "AB\x81"},  // A lead byte at the very end.
      {1252,
       "stra\xDF"
       "e \xFF",
       "STRA\xDF"
       "E \x9F"},
      {0, "", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(Upper(c.page, c.text), c.upper) << c.page << ' ' << c.text;
  const CodePage& page = *CodePage::Get(932);
  EXPECT_EQ(page.CharacterSize("\x83"
                               "a"),
            2U);
  EXPECT_EQ(page.CharacterSize("\x83"), 1U);
  EXPECT_EQ(page.CharacterSize("a\x83"), 1U);
}

}  // namespace
}  // namespace dq::platform
