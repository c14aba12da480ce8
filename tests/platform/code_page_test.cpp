#include "dqlib/platform/code_page.h"

#include "tests/support/testing.h"

namespace dq::platform {
namespace {

/// The runs of codes that are told alike, with what is told of each; codes told as "" are left out.
std::string Runs(unsigned count, const std::function<std::string(unsigned)>& tell) {
  std::ostringstream runs;
  runs << std::hex << std::uppercase;
  std::string former;
  for (unsigned code = 0, first = 0; code <= count; ++code) {
    const std::string now = code < count ? tell(code) : "";
    if (now == former) continue;
    if (!former.empty()) runs << first << '-' << code - 1 << former << ' ';
    former = now;
    first = code;
  }
  return runs.str();
}

/// How far the other case is, "" if there is none.
std::string Distance(int from, int to) {
  return from == to ? "" : (to > from ? "+" : "") + std::to_string(to - from);
}

TEST(CodePage, BytesHaveTheCaseAndClassOfTheirCharacters) {
  const std::string latin = "41-5AUa+32 61-7ALa-32 ";
  for (const auto& [number, rest] : test::Rows<UINT, const char*>{
           {0, ""},
           {932, "81-9Fm A6-DFa E0-FCm "},
           {936, "81-FEm "},
           {949, "81-FEm "},
           {950, "81-FEm "},
           {1252,
            "83-83La 8A-8AUa+16 8C-8CUa+16 8E-8EUa+16 9A-9ALa-16 9C-9CLa-16 9E-9ELa-16 9F-9FUa+96 "
            "AA-AALa B5-B5La BA-BALa C0-D6Ua+32 D8-DEUa+32 DF-DFLa E0-F6La-32 F8-FELa-32 "
            "FF-FFLa-96 "}}) {
    const CodePage& page = *CodePage::Get(number);
    const auto tell = [&](unsigned code) {
      const auto byte = static_cast<unsigned char>(code);
      return std::string(page.IsUpper(byte) ? "U" : "") + (page.IsLower(byte) ? "L" : "") +
             (page.IsAlpha(byte) ? "a" : "") + (page.IsLeadByte(byte) ? "m" : "") +
             Distance(byte, page.Lower(byte)) + Distance(byte, page.Upper(byte));
    };
    EXPECT_EQ(Runs(256, tell), latin + rest) << number;
    EXPECT_EQ(page.number(), number);
    EXPECT_EQ(page.IsSingleByte(), number == 0 || number == 1252);
  }
  for (const UINT number : {1U, 1251U, 65001U}) EXPECT_EQ(CodePage::Get(number), nullptr);
}

TEST(CodePage, OnlyFullWidthLatinLettersBehindTheLeadBytesHaveCase) {
  for (const auto& [number, runs] : test::Rows<UINT, const char*>{
           {932, "8260-8279+33 8281-829A-33 "},
           {936, "A3C1-A3DA+32 A3E1-A3FA-32 "},
           {949, "A3C1-A3DA+32 A3E1-A3FA-32 "},
           {950, "A2CF-A2E4+26 A2E5-A2E8+91 A2E9-A2FE-26 A340-A343-91 "}}) {
    const CodePage& page = *CodePage::Get(number);
    const auto tell = [&](unsigned code) {
      const std::string bytes = {static_cast<char>(code >> 8), static_cast<char>(code)};
      if (!page.IsLeadByte(static_cast<unsigned char>(bytes[0]))) return std::string();
      std::string lower = bytes;
      page.LowerInPlace(lower.data(), 2);
      std::string upper = bytes;
      page.UpperInPlace(upper.data(), 2);
      const auto number_of = [](std::string_view pair) {
        return static_cast<unsigned char>(pair[0]) * 256 + static_cast<unsigned char>(pair[1]);
      };
      return Distance(number_of(bytes), number_of(lower)) +
             Distance(number_of(bytes), number_of(upper));
    };
    EXPECT_EQ(Runs(0x10000, tell), runs) << number;
  }
}

TEST(CodePage, CaseChangesByCharacter) {
  for (const auto& [page, text, upper] : test::Rows<UINT, std::string, const char*>{
           {932, "a\x83\x61\x62\x63", "A\x83\x61\x42\x43"},  // whose second looks like a letter
           {936, "ab\x81", "AB\x81"},                        // a lead byte at the very end
           {1252, "ra\xDF \xFF", "RA\xDF \x9F"},
           {0, "gr\xC3\xBC\xC3\x9F", "GR\xC3\xBC\xC3\x9F"}}) {
    std::string changed = text;
    CodePage::Get(page)->UpperInPlace(changed.data(), changed.size());
    EXPECT_EQ(changed, upper);
  }
  EXPECT_EQ(CodePage::Get(932)->CharacterSize("\x83\x61"), 2U);
  EXPECT_EQ(CodePage::Get(932)->CharacterSize("\x83"), 1U);
}

}  // namespace
}  // namespace dq::platform
