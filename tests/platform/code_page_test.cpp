#include "dqlib/platform/code_page.h"

#include <gtest/gtest.h>
#include <iconv.h>
#include <locale.h>
#include <set>
#include <string>
#include <wctype.h>

#include "tests/support/rows.h"

namespace dq::platform {
namespace {

/// Converts one character by the system's tables; "" if the target doesn't have it.
std::string Convert(const std::string& from, const std::string& to, std::string text) {
  const iconv_t converter = iconv_open(to.c_str(), from.c_str());
  std::string result(4, '\0');
  char* in = text.data();
  char* out = result.data();
  std::size_t in_left = text.size();
  std::size_t out_left = result.size();
  const bool converted = iconv(converter, &in, &in_left, &out, &out_left) == 0;
  iconv_close(converter);
  return converted ? result.substr(0, result.size() - out_left) : "";
}

/// A character of a code page, by its number in Unicode.
std::string Encode(UINT page, wint_t character) {
  const std::string text = {static_cast<char>(character >> 8), static_cast<char>(character)};
  return Convert("UTF-16BE", "CP" + std::to_string(page), text);
}

std::string Lower(UINT page, std::string text) {
  CodePage::Get(page)->LowerInPlace(text.data(), text.size());
  return text;
}

std::string Upper(UINT page, std::string text) {
  CodePage::Get(page)->UpperInPlace(text.data(), text.size());
  return text;
}

TEST(CodePage, SingleBytesHaveTheCaseAndClassOfTheirCharacters) {
  const locale_t reference = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  ASSERT_NE(reference, nullptr);
  // Small letters without a capital in 1252.
  const std::set<unsigned> only_lower = {0x83, 0xAA, 0xB5, 0xBA, 0xDF};
  for (const UINT number : {0U, 932U, 936U, 949U, 950U, 1252U}) {
    const CodePage& page = *CodePage::Get(number);
    EXPECT_EQ(page.number(), number);
    const auto in_page = [number](wint_t character, unsigned otherwise) -> unsigned {
      const std::string bytes = character < 0x80 ? std::string(1, static_cast<char>(character))
                                                 : Encode(number, character);
      return bytes.size() == 1 ? static_cast<unsigned char>(bytes[0]) : otherwise;
    };
    for (unsigned byte = 0; byte < 0x100; ++byte) {
      SCOPED_TRACE(testing::Message() << number << " byte " << byte);
      const auto b = static_cast<unsigned char>(byte);
      wint_t character = byte;  // A byte without a character counts as a control character.
      if (number != 0) {
        const std::string text = Convert("CP" + std::to_string(number), "UTF-16BE",
                                         std::string(1, static_cast<char>(b)));
        if (text.size() == 2)
          character =
              static_cast<unsigned char>(text[0]) * 0x100U + static_cast<unsigned char>(text[1]);
      }
      const bool known = byte < 0x80 || number == 1252;
      const unsigned lower = known ? in_page(towlower_l(character, reference), byte) : byte;
      const unsigned upper = known ? in_page(towupper_l(character, reference), byte) : byte;
      const bool katakana = number == 932 && byte >= 0xA6 && byte <= 0xDF;
      EXPECT_EQ(page.Lower(b), lower);
      EXPECT_EQ(page.Upper(b), upper);
      EXPECT_EQ(page.IsUpper(b), lower != byte);
      EXPECT_EQ(page.IsLower(b), upper != byte || (number == 1252 && only_lower.contains(byte)));
      // The circumflex that stands alone at 88h of 1252 is a sign here.
      EXPECT_EQ(page.IsAlpha(b),
                katakana || (known && byte != 0x88 && iswalpha_l(character, reference) != 0));
    }
  }
  freelocale(reference);
  for (const UINT number : {1U, 1251U, 65001U}) EXPECT_EQ(CodePage::Get(number), nullptr);
}

TEST(CodePage, OnlyFullWidthLatinLettersBehindTheLeadBytesHaveCase) {
  // Where lead bytes begin or end, going up.
  for (const auto& [number, edges] :
       test::Rows<UINT, std::set<int>>{{932, {0x81, 0xA0, 0xE0, 0xFD}},
                                       {936, {0x81, 0xFF}},
                                       {949, {0x81, 0xFF}},
                                       {950, {0x81, 0xFF}},
                                       {0, {}},
                                       {1252, {}}}) {
    const CodePage& page = *CodePage::Get(number);
    std::set<std::string> upper;
    std::set<std::string> lower;
    for (unsigned i = 0; i < 26 && !edges.empty(); ++i) {
      upper.insert(Encode(number, 0xFF21 + i));
      lower.insert(Encode(number, 0xFF41 + i));
      EXPECT_EQ(Lower(number, Encode(number, 0xFF21 + i)), Encode(number, 0xFF41 + i));
      EXPECT_EQ(Upper(number, Encode(number, 0xFF41 + i)), Encode(number, 0xFF21 + i));
    }
    EXPECT_EQ(page.IsSingleByte(), edges.empty());
    bool lead = false;
    for (int byte = 0; byte < 0x100; ++byte) {
      lead ^= edges.contains(byte);
      EXPECT_EQ(page.IsLeadByte(static_cast<unsigned char>(byte)), lead)
          << number << " byte " << byte;
      for (int trail = 0; trail < 0x100 && lead; ++trail) {
        const std::string pair = {static_cast<char>(byte), static_cast<char>(trail)};
        SCOPED_TRACE(testing::Message() << number << ' ' << testing::PrintToString(pair));
        EXPECT_EQ(Lower(number, pair) != pair, upper.contains(pair));
        EXPECT_EQ(Upper(number, pair) != pair, lower.contains(pair));
      }
    }
  }
}

TEST(CodePage, CaseChangesByCharacter) {
  for (const auto& [page, text, upper] : test::Rows<UINT, const char*, const char*>{
           {932, "a\x83\x61\x62\x63",
            "A\x83\x61\x42\x43"},      // a second byte that looks like a letter
           {936, "ab\x81", "AB\x81"},  // a lead byte at the very end
           {1252, "ra\xDF \xFF", "RA\xDF \x9F"},
           {0, "gr\xC3\xBC\xC3\x9F", "GR\xC3\xBC\xC3\x9F"}}) {
    EXPECT_EQ(Upper(page, text), upper);
  }
  EXPECT_EQ(CodePage::Get(932)->CharacterSize("\x83\x61"), 2U);
  EXPECT_EQ(CodePage::Get(932)->CharacterSize("\x83"), 1U);
}

}  // namespace
}  // namespace dq::platform
