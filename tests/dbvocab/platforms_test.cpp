#include "dqlib/dbvocab/version_number.h"
#include "tests/support/forked_process.h"
#include "tests/support/own_settings.h"

namespace dq::test {
namespace {

void SetOptions(bool lower_case_counts, bool quoting_on) {
  CDQOptionsServer& options = *CDQOptionsServer::GetObject();
  ASSERT_TRUE(options.SetBool(50270, lower_case_counts) && options.SetBool(50274, quoting_on));
}

/// Checks the bytes that need no quotes, first of all and behind a letter, and some names where the
/// option, 1 or 2, is off and on. In a process of its own, whose first platform sets its words.
template <typename Quoting, typename First = Quoting>
void ExpectQuotes(int option, const std::string& first, const std::string& other,
                  const std::string& off, const std::string& on) {
  ForkedProcess child([&] {
    const First of_words;
    Quoting quoting;
    SetOptions(false, true);
    std::string plain[2];
    for (int at = 0; at < 512; ++at) {
      const std::string name = (at < 256 ? "" : "Q") + std::string(1, static_cast<char>(at % 256));
      if (!quoting.NeedsQuotes(name)) plain[at / 256] += name.back();
    }
    EXPECT_TRUE(plain[0] == first && plain[1] == other) << plain[0] << ' ' << plain[1];
    EXPECT_FALSE(quoting.NeedsQuotes(std::string(10'000, 'A')));
    for (int options = 0; options < 4; ++options) {
      SetOptions((options & 1) != 0, (options & 2) != 0);
      std::string quoted;
      for (std::string name : {"A B", "Emp", "Begin", "rowNum", "ORDER", "ORDERS", "", "\"A"}) {
        quoting.Quote(name);
        quoted += name + ",";
      }
      EXPECT_EQ(quoted, (options & option) != 0 ? on : off) << options;
    }
  });
  EXPECT_TRUE(child.EndsWell()) << on << other;
}

TEST(QuoteName, EachPlatformHasItsOwnPlainCharactersWordsAndQuotes) {
  const std::string upper = "ABCDEFGHIJKLMNOPQRSTUVWXYZ", lower = "abcdefghijklmnopqrstuvwxyz";
  const std::string digits = "0123456789", both = upper + "_" + lower, first = "#@" + both;
  const std::string sql = "#$" + digits + "@" + both, db2 = "." + digits + upper + "_";
  const char* const off = R"(A B,Emp,Begin,rowNum,ORDER,ORDERS,,"A,)";
  const char* const on = R"("A B",Emp,"Begin",rowNum,"ORDER",ORDERS,,""A",)";
  const char* const oracle_words = R"("A B",Emp,Begin,"rowNum","ORDER",ORDERS,,""A",)";
  const char* const db2_on = R"("A B","Emp","Begin","rowNum",ORDER,ORDERS,,""A",)";
  ExpectQuotes<SS65QuoteName>(2, first, sql, off, on);
  ExpectQuotes<SS7QuoteName>(2, first, sql, off, "[A B],Emp,[Begin],rowNum,[ORDER],ORDERS,,[\"A],");
  ExpectQuotes<SybaseQuoteName>(2, first, sql + "\xA3\xA5", off, on);
  ExpectQuotes<SybaseQuoteName, OracleQuoteName>(2, first, sql + "\xA3\xA5", off, oracle_words);
  ExpectQuotes<OracleQuoteName>(1, upper + lower, "#$()" + digits + both, oracle_words,
                                R"("A B","Emp","Begin","rowNum","ORDER",ORDERS,,""A",)");
  ExpectQuotes<DB2QuoteName>(2, upper, db2, off, db2_on);
  ExpectQuotes<DB2OS390QuoteName>(2, upper, db2, off, db2_on);
}

TEST(IdentifierName, UnwrapsAndSplits) {
  for (const auto& [text, ends, inner] :
       Cases<3>("[a] => [] => a ;; [a] => '' => [a] ;; ' => '' => ;; => xx =>")) {
    EXPECT_EQ(RemoveWrappingChar(text.c_str(), ends[0], ends[1]).View(), inner);
    EXPECT_EQ(IsWrappedWithChars(text.c_str(), ends[0], ends[1]), text != inner) << text;
  }
  EXPECT_TRUE(!IsWrappedWithChars(nullptr, 0, 0) && RemoveWrappingChar(nullptr, 0, 0) == "");
  // A false result of two parts sets them all the same, unless there are more dots.
  for (const auto& [name, expected] : Cases<2>(R"(a.b => 1:a|b 0:1|2|3 ;; a.b.c => 0:1|2 1:a|b|c
      a.b.c.d => 0:1|2 1:a|b|c.d ;; => 0:| 0:1|2|3 ;; "a.b" => 1:"a|b" 0:1|2|3 ;; a => 0:|a 0:1|2|3
      .b.c => 0:1|2 0:1|2|3 ;; a.b. => 0:1|2 0:1|2|3)")) {
    CString a = "1", b = "2", c = "3";
    CString text = (GetTwoPartName(name, a, b) ? "1:" : "0:") + a + "|" + b;
    a = "1", b = "2";
    text += GetThreePartName(name, a, b, c) ? " 1:" : " 0:";
    EXPECT_EQ((text + a + "|" + b + "|" + c).View(), expected) << name;
  }
}

TEST(IdentifierName, QuoteCharactersGoByPlatformAndVersion) {
  // On SQL Server; the others have theirs whatever the version.
  for (const auto& [text, own] : Cases<2>(R"(=> "" ;; 6.50.2 => "" ;; 6.6 => [] ;; 8.00 => [])")) {
    std::string all;
    for (int number = -1; number < 11; ++number) {
      char ends[] = "<>";
      const auto platform = static_cast<DBMS>(number);
      const CDQDBVersionString version(text.c_str(), platform);
      GetIdentifierQuoteChars(version, platform, ends[0], ends[1]);
      all += ends;
    }
    EXPECT_EQ(all, "<><><>\"\"" + own + "\"\"\"\"<><><><>\"\"") << text;
  }
}

TEST(OracleName, QuotesAfterTheCut) {
  const std::string n30(30, 'N'), q30 = " \"" + std::string(28, 'n') + "\"";
  const std::string cut = " \"\"" + n30.substr(1) + "\"";
  // Names, and what they become where case doesn't count and where it does.
  std::istringstream rows(R"(emp emp "emp"  A(b)9 A(b)9 "A(b)9"  _A "_A" "_A"  a"b "a"b" "a"b"
      LEVEL "LEVEL" "LEVEL"  Level Level "Level"  default DEFAULT DEFAULT  " """ """ )" +
                          n30 + "? " + n30 + " " + n30 + q30 + q30 + q30 + " \"" + n30 + cut + cut);
  for (std::string name, plain, lower_counts; rows >> name >> plain >> lower_counts;) {
    for (const bool counts : {false, true}) {
      SetOptions(counts, false);
      CString result = name;
      COracleName().QuoteIdentifier(8.1, result, result);
      EXPECT_EQ(result.View(), counts ? lower_counts : plain) << name;
    }
  }
  COracleName fresh;
  EXPECT_FALSE(fresh.IsQuoteRequired("1 ?"));
  fresh.SetQuotes('\'');
  fresh.SetAllowableSymbols("?");
  SetOptions(false, true);
  EXPECT_TRUE(fresh.IsQuoteRequired("1 ?") && !fresh.IsQuoteRequired("a?") &&
              !fresh.IsQuoteRequired("'1 ?'") && !fresh.IsQuoteRequired(nullptr));
  EXPECT_TRUE(COracleName::DBLinkHasInvalidCharacters("a;b") &&
              !COracleName::DBLinkHasInvalidCharacters("a.b@c"));
}

TEST(VersionString, TakesTheFormOfItsPlatformAndMisordersNoServers) {
  // Of each platform the older ones first; some banners, some that are none.
  std::string before, older;
  for (const auto& [number, text, form] : Cases<3>(R"(2 => a/b/c.d => b
      2 => SQL Server/11.9 => 11.9 ;; 2 => Adaptive Server Enterprise/12.5.0.3/EBF 11449/P => 12.503
      2 => A/12.5.4/EBF 15446/P => 12.54 ;; 5 => Oracle7 Server Release 7.3.4.0.0 => 7.340
      5 => 08.1 => 08.1 ;; 5 => Oracle8i Release 8.1.7.0.0 => 8.170
      5 => Oracle Database 10g Release 10.1.0.2.0 => 10.102 ;; 3 => Release 6.50.201 => Release 6.50
      3 => 08.00.0194 => 8.00 ;; 3 => 008.00 => 08.00 ;; 3 => 10.50.1600 => 10.50 ;; 4 => =>
      4 => SQL08.01.0 => SQL08.010 ;; 4 => DB2 v 07.2b.x => 7.2bx ;; 4 => 9.1 => 9.1
      10 => 0.5 => .5 ;; 10 => DSN 08.01.5 => 8.015 ;; 10 => DSN 09.01.0 => 9.010
      0 => x 08.1.7.9 => x 08.1.7.9)")) {
    if (number != std::exchange(before, number)) older = "-1";
    const CDQDBVersionString version(text.c_str(), static_cast<DBMS>(std::stoi(number)));
    EXPECT_EQ(version.View(), form) << text;
    EXPECT_TRUE(version >= std::exchange(older, text).c_str()) << text;
  }
  EXPECT_STREQ(CDQDBVersionString(8.1, DBMS_ORACLE), "8.100000");
}

TEST(VersionString, ComparesAtThePrecisionOfTheRightSide) {
  const auto compared = [](auto&& a, auto&& b) {
    return a == b ? a <= b && a >= b && !(a != b) ? 0 : 9 : a < b ? -1 : a > b ? 1 : 9;
  };
  for (const auto& [text, digits, order] : Cases<3>(R"(8.170 => 8.2 => -1 ;; 8.1 => 8.17 => -1
      Informix 9 => 8.1 => -1 ;; -1 => 0 => -1 ;; 8.170 => 8.1 => 0 ;; 8.170 => 8.17 => 0
      12.503 => 12.5 => 0 ;; 8.a => 8 => 0 ;; nano => 0 => 0 ;; -0xnan => 0 => 0
      10.204 => 8.1 => 1 ;; 1000.5 => 8.1 => 1)")) {
    const CDQDBVersionString version(text.c_str(), DBMS_NONE);
    const double number = std::stod(digits);
    const std::string right = std::to_string(number);
    const auto order_of = [&](const auto&... each) { return std::set{compared(version, each)...}; };
    SCOPED_TRACE(text + (" " + right));
    EXPECT_EQ(order_of(number, CDQDBVersionString(number, DBMS_NONE), right.c_str(), CString(right),
                       std::string_view(right)),
              std::set{std::stoi(order)});
    EXPECT_EQ(compared(number, version), -std::stoi(order));
    EXPECT_EQ(compared(right.c_str(), version), -std::stoi(order));
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
  // Longer than what fits the usual key.
  const CString text('1', 1000);
  EXPECT_EQ(&GetCachedDBMSVersion(text, DBMS_DB2), &GetCachedDBMSVersion(text, DBMS_DB2));
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

std::string g_reports;

int Record(int code, const char* text) {
  g_reports += g_reports.empty() && text != nullptr ? text : "|" + std::to_string(code);
  return 0;
}

TEST(DBUtility, PutsTheConnectionBehindTheCommandAndHidesThePassword) {
  CDQDBUtility utility;
  utility.SetCallback(Record);
  for (const auto& [command, user, password, datasource, mode, printed, reported] : Cases<7>(R"(
      echo a:secret => u => secret => => -1 => a:secret u/secret => echo a:**** u/**** |
      env USERID=1 echo => u => p1 => d => 0 => u/p1@d => env USERID=1 echo u/****@d |
      echo => u => p => d => 2 => u/p@d AS SYSDBA => echo 'u/****@d AS SYSDBA' |
      echo => => p => => 4 => /p AS SYSOPER => echo '/**** AS SYSOPER' |
      /bin/echo => u => secret => d => 0 => u/secret@d => /****@d |
      echo => u => a/b@c => d => 0 => u/a/b@c@d => echo u/****@d |
      echo => u => u => d => 0 => u/u@d => echo ****/****@d |
      echo @* => u => * => => 0 => @* u/* => echo @* u/**** |
      echo => u => p => d => 0 => u/p@d => echo u/****@d | ;; echo a => => => => 0 => a => echo a  |
      echo => u => => d => 1 => u@d => echo 'u@d' |)")) {
    utility.SetUser(user.c_str()), utility.SetPassword(password.c_str());
    utility.SetDatasource(datasource.c_str()), utility.SetAuthenticationMode(std::stoi(mode));
    EXPECT_TRUE(utility.GetUser() == user && utility.GetPassword() == password &&
                utility.GetDatasource() == datasource &&
                utility.GetAuthenticationMode() == std::stoi(mode));
    CString output;
    g_reports.clear();
    EXPECT_EQ(utility.RunExecutable(command.c_str(), output, nullptr), 1) << reported;
    EXPECT_EQ(output.View(), printed);
    EXPECT_EQ(g_reports, reported + "1");
  }
}

TEST(DBUtility, NullCommandIsNoProgramWhateverRanBefore) {
  const TempDirectory files;
  CDQDBUtility utility;
  CString output;
  utility.SetCallback(Record);
  EXPECT_EQ(utility.RunExecutable("pwd -P", output, files.path().c_str()), 1);
  g_reports.clear();
  EXPECT_EQ(utility.RunExecutable(nullptr, output, nullptr), 0);
  EXPECT_EQ(g_reports, "|-6");
  EXPECT_EQ(utility.RunExecutable("pwd -P", output, nullptr), 1);
  EXPECT_EQ(output.View(), std::filesystem::canonical(files.path()).string());
}

TEST(DBMSFactory, CallsThePlatformsCreatorBetweenItsHooks) {
  struct Factory : CDBMSFactoryT<std::string> {
    using CDBMSFactoryT::CDBMSFactoryT;
    void PreCreateObject() override { calls += "<"; }
    std::string* CreateSybase() override { return &(calls += "2"); }
    std::string* CreateSpare5() override { return &(calls += "8"); }
    std::string* CreateDefault() override { return m_eDBMS < 10 ? &(calls += "d") : nullptr; }
    void PostCreateObject(std::string* object) override { calls += object == &calls ? "> " : ". "; }
    std::string calls;
  };
  std::string calls;
  for (int platform = 0; platform < 12; ++platform) {
    Factory factory(static_cast<DBMS>(platform));
    EXPECT_EQ(factory.CreateObject() != nullptr, factory.GetDBMS() < 10) << platform;
    calls += factory.calls;
  }
  EXPECT_EQ(calls, "<d> <d> <2> <d> <d> <d> <d> <d> <8> <d> <. <. ");
}

}  // namespace
}  // namespace dq::test
