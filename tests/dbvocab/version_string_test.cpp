#include "dqlib/dbvocab/version_string.h"

#include "dqlib/dbvocab/version_number.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using test::Rows;

TEST(VersionString, TakesTheFormOfItsPlatform) {
  for (const auto& [platform, text, form] : Rows<DBMS, const char*, const char*>{
           {DBMS_SYBASE, "Adaptive Server Enterprise/12.5.0.3/EBF 11449/P", "12.503"},
           {DBMS_SYBASE, "12.0.0.4", "12.004"},
           {DBMS_SYBASE, "SQL Server/11.9", "11.9"},
           {DBMS_SYBASE, "a/b/c.d", "b"},
           {DBMS_ORACLE, "Oracle8i Release 8.1.7.0.0", "8.170"},
           {DBMS_ORACLE, "08.1", "08.1"},
           {DBMS_ORACLE, "Oracle Database 10g Release 10.1.0.2.0", "10.102"},
           {DBMS_DB2OS390, "DSN 08.01.5", "8.015"},
           {DBMS_SQLSERVER, "08.00.0194", "8.00"},
           {DBMS_SQLSERVER, "008.00", "08.00"},
           {DBMS_SQLSERVER, "Release 6.50.201", "Release 6.50"},
           {DBMS_DB2, "SQL08.01.0", "SQL08.010"},
           {DBMS_DB2, "DB2 v 07.2b.x", "7.2bx"},
           {DBMS_DB2OS390, "0.5", ".5"},
           {DBMS_DB2, "", ""},
           {DBMS_NONE, "x 08.1.7.9", "x 08.1.7.9"}}) {
    EXPECT_EQ(CDQDBVersionString(text, platform).View(), form) << text;
  }
  EXPECT_STREQ(CDQDBVersionString(8.1, DBMS_ORACLE), "8.100000");
}

TEST(VersionString, ComparesAtThePrecisionOfTheRightSide) {
  for (const auto& [text, number, order] : Rows<const char*, double, int>{{"8.170", 8.1, 0},
                                                                          {"8.170", 8.17, 0},
                                                                          {"8.170", 8.2, -1},
                                                                          {"12.503", 12.5, 0},
                                                                          {"10.204", 8.1, 1},
                                                                          {"8.1", 8.17, -1},
                                                                          {"8.a", 8.0, 0},
                                                                          {"Informix 9", 8.1, -1},
                                                                          {"nano", 0.0, 0},
                                                                          {"-0xnan", 0.0, 0},
                                                                          {"1000.5", 8.1, 1},
                                                                          {"-1", 0.0, -1}}) {
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
  const std::string long_text(1000, '1');
  EXPECT_EQ(&GetCachedDBMSVersion(long_text.c_str(), DBMS_DB2),
            &GetCachedDBMSVersion(long_text.c_str(), DBMS_DB2));
}

TEST(VersionNumber, AgreesWithTheRunTimeOnNumbersAndTexts) {
  std::mt19937 random(7);
  std::vector<double> numbers = {0.0,  -0.0, 999999.999999, 1e6,    1e15,      1e300,   -8.1,
                                 1e-6, 5e-7, 1.0000005,     1e-300, 0.9999999, INFINITY};
  for (int i = 0; i < 20'000; ++i) {
    numbers.push_back(static_cast<double>(random() % 10'000'000) / std::pow(10.0, random() % 9));
  }
  for (const double number : numbers) {
    char text[400];
    std::snprintf(text, sizeof(text), "%lf", number);
    EXPECT_EQ(detail::VersionNumberText(number).View(), text);
    std::size_t length = std::string(text).find_last_not_of('0') + 1;
    if (text[length - 1] == '.') ++length;
    EXPECT_EQ(detail::SignificantLength(number), length) << text;
    const double read = std::isfinite(number) ? std::strtod(text, nullptr) : 0;
    EXPECT_EQ(detail::LeadingNumber(text), read) << text;
  }
  const std::string alphabet = "0189.+-eExX a";
  for (int i = 0; i < 20'000; ++i) {
    std::string text;
    for (std::size_t k = random() % 8; k > 0; --k) text += alphabet[random() % alphabet.size()];
    if (!std::isfinite(std::strtod(text.c_str(), nullptr))) continue;
    EXPECT_EQ(detail::LeadingNumber(text), std::strtod(text.c_str(), nullptr)) << text;
  }
}

}  // namespace
}  // namespace dq
