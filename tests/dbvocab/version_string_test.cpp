#include "dqlib/dbvocab/version_string.h"

#include "dqlib/dbvocab/version_number.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using test::Rows;

TEST(VersionString, TakesTheFormOfItsPlatformAndMisordersNoServers) {
  using Forms = std::vector<std::pair<const char*, const char*>>;
  // Of each platform the older ones first; some banners, some that are none.
  for (const auto& [platform, forms] : Rows<DBMS, Forms>{
           {DBMS_SYBASE,
            {{"a/b/c.d", "b"},
             {"SQL Server/11.9", "11.9"},
             {"Adaptive Server Enterprise/12.5.0.3/EBF 11449/P", "12.503"},
             {"A/12.5.4/EBF 15446/P", "12.54"}}},
           {DBMS_ORACLE,
            {{"Oracle7 Server Release 7.3.4.0.0", "7.340"},
             {"08.1", "08.1"},
             {"Oracle8i Release 8.1.7.0.0", "8.170"},
             {"Oracle Database 10g Release 10.1.0.2.0", "10.102"}}},
           {DBMS_SQLSERVER,
            {{"Release 6.50.201", "Release 6.50"},
             {"08.00.0194", "8.00"},
             {"008.00", "08.00"},
             {"10.50.1600", "10.50"}}},
           {DBMS_DB2,
            {{"", ""}, {"SQL08.01.0", "SQL08.010"}, {"DB2 v 07.2b.x", "7.2bx"}, {"9.1", "9.1"}}},
           {DBMS_DB2OS390, {{"0.5", ".5"}, {"DSN 08.01.5", "8.015"}, {"DSN 09.01.0", "9.010"}}},
           {DBMS_NONE, {{"x 08.1.7.9", "x 08.1.7.9"}}}}) {
    const char* older = forms[0].first;
    for (const auto& [text, form] : forms) {
      const CDQDBVersionString version(text, platform);
      EXPECT_EQ(version.View(), form) << text;
      EXPECT_TRUE(version >= std::exchange(older, text)) << text;
    }
  }
  EXPECT_STREQ(CDQDBVersionString(8.1, DBMS_ORACLE), "8.100000");
}

TEST(VersionString, ComparesAtThePrecisionOfTheRightSide) {
  for (const auto& [order, pairs] : Rows<int, std::vector<std::pair<const char*, double>>>{
           {-1, {{"8.170", 8.2}, {"8.1", 8.17}, {"Informix 9", 8.1}, {"-1", 0.0}}},
           {0, {{"8.170", 8.1}, {"8.170", 8.17}, {"12.503", 12.5}, {"8.a", 8.0}}},
           {0, {{"nano", 0.0}, {"-0xnan", 0.0}}},
           {1, {{"10.204", 8.1}, {"1000.5", 8.1}}}}) {
    for (const auto& [text, number] : pairs) {
      const CDQDBVersionString version(text, DBMS_NONE);
      const std::string right = std::to_string(number);
      const auto compared = [](auto&& a, auto&& b) {
        return a == b ? a <= b && a >= b && !(a != b) ? 0 : 9 : a < b ? -1 : a > b ? 1 : 9;
      };
      const int orders[] = {compared(version, number),
                            compared(version, CDQDBVersionString(number, DBMS_NONE)),
                            compared(version, right.c_str()),
                            compared(version, CString(right)),
                            compared(version, std::string_view(right)),
                            -compared(number, version),
                            -compared(right.c_str(), version)};
      EXPECT_THAT(orders, testing::Each(order)) << text << " " << number;
      EXPECT_TRUE(&(version + 1.0) == &version && &(version - 1.0) == &version);
    }
  }
  enum Release { SEVEN = 7 };
  const CDQDBVersionString oracle("8.170", DBMS_ORACLE);
  EXPECT_TRUE(oracle > 8L && oracle != 8 && oracle < 9u && oracle > SEVEN && 8 <= oracle);
}

TEST(VersionString, TheCacheKeepsOneObjectForATextOnAPlatform) {
  const CDQDBVersionString& first = GetCachedDBMSVersion("8.1.7", DBMS_ORACLE);
  for (int i = 0; i < 1000; ++i) GetCachedDBMSVersion(std::to_string(i).c_str(), DBMS_ORACLE);
  EXPECT_EQ(&GetCachedDBMSVersion("8.1.7", DBMS_ORACLE), &first);
  EXPECT_NE(&GetCachedDBMSVersion("8.1.7", DBMS_SQLSERVER), &first);
  EXPECT_STREQ(GetCachedDBMSVersion(8.1, DBMS_SQLSERVER), "8.10");
  // Longer than what fits the usual key.
  const std::string text(1000, '1');
  const auto find = [&] { return &GetCachedDBMSVersion(text.c_str(), DBMS_DB2); };
  EXPECT_EQ(find(), find());
}

TEST(VersionNumber, AgreesWithTheRunTimeOnNumbersAndTexts) {
  std::mt19937 random(7);
  std::vector<double> numbers = {0.0,  -0.0, 999999.999999, 1e6,    1e15,      1e300,   -8.1,
                                 1e-6, 5e-7, 1.0000005,     1e-300, 0.9999999, INFINITY};
  for (int i = 0; i < 20'000; ++i) {
    numbers.push_back(static_cast<double>(random() % 10'000'000) / std::pow(10.0, random() % 9));
  }
  for (const double number : numbers) {
    const std::string text = std::to_string(number);
    EXPECT_EQ(detail::VersionNumberText(number).View(), text);
    const std::size_t last = text.find_last_not_of('0');
    EXPECT_EQ(detail::SignificantLength(number), last + (text[last] == '.' ? 2 : 1)) << text;
    EXPECT_EQ(detail::LeadingNumber(text), std::isfinite(number) ? std::stod(text) : 0) << text;
  }
  for (int i = 0; i < 20'000; ++i) {
    std::string text;
    for (std::size_t k = random() % 8; k > 0; --k) text += "0189.+-eExX a"[random() % 13];
    const double read = std::strtod(text.c_str(), nullptr);
    EXPECT_TRUE(!std::isfinite(read) || detail::LeadingNumber(text) == read) << text;
  }
}

}  // namespace
}  // namespace dq
