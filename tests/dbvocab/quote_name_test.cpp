#include "dqlib/dbvocab/quote_name.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "dqlib/dbvocab/identifier_name.h"
#include "dqlib/dbvocab/oracle_name.h"
#include "dqlib/dbvocab/version_string.h"
#include "dqlib/platform/checksum.h"
#include "dqlib/resources/string_table.h"
#include "gtest/gtest.h"
#include "siblings/options/options_server.h"
#include "tests/support/forked_process.h"
#include "tests/support/own_settings.h"
#include "tests/support/rows.h"

namespace dq {
namespace {

using test::Rows;

void SetOptions(bool lower_case_counts, bool quoting_on) {
  CDQOptionsServer& options = *CDQOptionsServer::GetObject();
  ASSERT_TRUE(options.SetBool(50270, lower_case_counts) && options.SetBool(50274, quoting_on));
}

/// The rules of a platform, to be read letter by letter.
struct Rules {
  const char* first;
  const char* other;
  UINT words;
  char open;
  char close;
  enum { kServer, kOracle, kDb2 } family;
  std::unique_ptr<QuoteName> (*make)();
};
template <typename Quoting>
std::unique_ptr<QuoteName> Make() {
  return std::make_unique<Quoting>();
}
const Rules kRules[] = {
    {"_@#", "_@#$", 43989, '"', '"', Rules::kServer, Make<SS65QuoteName>},
    {"_@#", "_@#$", 43989, '[', ']', Rules::kServer, Make<SS7QuoteName>},
    {"_@#", "_@#$\xA5\xA3", 43991, '"', '"', Rules::kServer, Make<SybaseQuoteName>},
    {"", "_$#()", 43985, '"', '"', Rules::kOracle, Make<OracleQuoteName>},
    {"", "_.", 0, '"', '"', Rules::kDb2, Make<DB2QuoteName>},
    {"", "_.", 0, '"', '"', Rules::kDb2, Make<DB2OS390QuoteName>},
};

bool NeedsQuotes(const Rules& rules, const std::set<std::string>& words, const std::string& name,
                 bool lower_case_counts, bool quoting_on) {
  if (rules.family != Rules::kOracle && !quoting_on) return false;
  const bool lower_needs =
      rules.family == Rules::kOracle ? lower_case_counts : rules.family == Rules::kDb2;
  std::string upper;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const int byte = static_cast<unsigned char>(name[i]);
    const std::string allowed = i == 0 ? rules.first : rules.other;
    const bool is_digit = i > 0 && std::isdigit(byte) != 0;
    if (!std::isalpha(byte) && !is_digit && allowed.find(name[i]) == std::string::npos) return true;
    if (std::islower(byte) && lower_needs) return true;
    upper += static_cast<char>(std::toupper(byte));
  }
  return words.contains(upper);
}

TEST(QuoteName, AgreesWithItsRulesOnEveryShortName) {
  const std::string alphabet("azAZdDlLsSBy09_@#$().\"[]'; -\n\0\x7F\x80\xA3\xA5\xE4\xFF", 36);
  std::vector<std::string> names = {""};
  for (std::size_t at = 0; names[at].size() < 3; ++at) {
    for (const char last : alphabet) names.push_back(names[at] + last);
  }
  names.emplace_back(10'000, 'A');
  for (const Rules& rules : kRules) {
    test::ForkedProcess child([&] {
      std::set<std::string> words;
      std::istringstream list(std::string(LibraryResources().String(rules.words).value_or("")));
      for (std::string word; std::getline(list, word, ',');) words.insert(word);
      for (const std::string& word : words) {
        names.insert(names.end(), {word, word + "X"});
        names.push_back(static_cast<char>(std::tolower(word[0])) + word.substr(1));
      }
      const auto quoting = rules.make();
      for (int options = 0; options < 4; ++options) {
        SetOptions((options & 1) != 0, (options & 2) != 0);
        for (const std::string& name : names) {
          const bool needs = NeedsQuotes(rules, words, name, (options & 1) != 0, options >= 2);
          ASSERT_EQ(quoting->NeedsQuotes(name), needs) << name;
          std::string quoted = name;
          quoting->Quote(quoted);
          ASSERT_EQ(quoted, needs ? rules.open + name + rules.close : name);
        }
      }
    });
    EXPECT_TRUE(child.EndsWell()) << rules.words << rules.open;
  }
}

TEST(QuoteName, TheFirstPlatformOfAProcessSetsTheWordsOfAll) {
  test::ForkedProcess child([] {
    SetOptions(false, true);
    OracleQuoteName oracle;
    SS7QuoteName sql_server;
    SybaseQuoteName sybase;
    EXPECT_TRUE(sql_server.NeedsQuotes("rownum") && !sql_server.NeedsQuotes("begin"));
    EXPECT_TRUE(sybase.NeedsQuotes("ROWNUM") && !sybase.NeedsQuotes("BEGIN"));
  });
  EXPECT_TRUE(child.EndsWell());
}

TEST(QuoteName, TheWordListsAreAsTheyAlwaysWere) {
  for (const auto& [id, delimiters, checksum] : Rows<UINT, int, std::uint32_t>{
           {43985, 108, 0xA57DCF7F}, {43989, 315, 0xB3121BA2}, {43991, 199, 0x5C7D4054}}) {
    std::string text(LibraryResources().String(id).value_or(""));
    std::erase(text, ' ');
    EXPECT_EQ(std::ranges::count(text, ','), delimiters) << id;
    EXPECT_EQ(platform::Checksum(text), checksum) << id;
  }
}

TEST(IdentifierName, UnwrapsAndSplits) {
  for (const auto& [text, first, last, inner] :
       Rows<const char*, char, char, const char*>{{"[a]", '[', ']', "a"},
                                                  {"[a]", '"', '"', "[a]"},
                                                  {"\"", '"', '"', ""},
                                                  {"", 'x', 'x', ""},
                                                  {nullptr, 'x', 'x', ""}}) {
    EXPECT_EQ(RemoveWrappingChar(text, first, last), inner);
    EXPECT_EQ(IsWrappedWithChars(text, first, last), text != nullptr && CString(text) != inner);
  }
  // A false result of two parts sets them all the same, unless there are more dots.
  for (const auto& [name, two, two_parts, three, three_parts] :
       Rows<const char*, bool, const char*, bool, const char*>{
           {"a.b", true, "a|b", false, "1|2|3"},
           {"a.b.c", false, "1|2", true, "a|b|c"},
           {"a.b.c.d", false, "1|2", true, "a|b|c.d"},
           {"\"a.b\"", true, "\"a|b\"", false, "1|2|3"},
           {"a", false, "|a", false, "1|2|3"},
           {".b.c", false, "1|2", false, "1|2|3"},
           {"", false, "|", false, "1|2|3"}}) {
    CString a = "1", b = "2", c = "3";
    EXPECT_EQ(GetTwoPartName(name, a, b), two) << name;
    EXPECT_EQ(a + "|" + b, two_parts) << name;
    a = "1", b = "2";
    EXPECT_EQ(GetThreePartName(name, a, b, c), three) << name;
    EXPECT_EQ(a + "|" + b + "|" + c, three_parts) << name;
  }
}

TEST(IdentifierName, QuoteCharactersGoByPlatformAndVersion) {
  for (const auto& [platform, version, expected] :
       Rows<int, const char*, const char*>{{DBMS_SYBASE, "12.5", "\"\""},
                                           {DBMS_DB2, "8.1", "\"\""},
                                           {DBMS_ORACLE, "8.1", "\"\""},
                                           {DBMS_DB2OS390, "7.1", "\"\""},
                                           {DBMS_SQLSERVER, "6.50.201", "\"\""},
                                           {DBMS_SQLSERVER, "", "\"\""},
                                           {DBMS_SQLSERVER, "7.00.623", "[]"},
                                           {DBMS_SQLSERVER, "08.00.0194", "[]"},
                                           {DBMS_NONE, "7.0", "<>"},
                                           {7, "7.0", "<>"}}) {
    char characters[] = "<>";
    const auto dbms = static_cast<DBMS>(platform);
    GetIdentifierQuoteChars(CDQDBVersionString(version, dbms), dbms, characters[0], characters[1]);
    EXPECT_STREQ(characters, expected) << platform << " " << version;
  }
}

TEST(OracleName, QuotesAfterTheCut) {
  const std::string n30(30, 'N');
  const std::string q30 = "\"" + std::string(28, 'n') + "\"";
  for (const auto& [name, plain, lower_counts] : Rows<std::string, std::string, std::string>{
           {"emp", "emp", "\"emp\""},
           {"A(b)", "A(b)", "\"A(b)\""},
           {"_A", "\"_A\"", "\"_A\""},
           {"LEVEL", "\"LEVEL\"", "\"LEVEL\""},
           {"Level", "Level", "\"Level\""},
           {"default", "DEFAULT", "DEFAULT"},
           {"a\"b", "\"a\"b\"", "\"a\"b\""},
           {n30 + "N", n30, n30},
           {n30 + "?", n30, n30},
           {q30, q30, q30},
           {"\"" + n30, "\"\"" + n30.substr(1) + "\"", "\"\"" + n30.substr(1) + "\""}}) {
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
  EXPECT_TRUE(fresh.IsQuoteRequired("1 ?"));
  EXPECT_FALSE(fresh.IsQuoteRequired("a?") || fresh.IsQuoteRequired("'1 ?'"));
  EXPECT_FALSE(fresh.IsQuoteRequired(nullptr));
  EXPECT_TRUE(COracleName::DBLinkHasInvalidCharacters("a;b") &&
              !COracleName::DBLinkHasInvalidCharacters("a.b@c"));
}

}  // namespace
}  // namespace dq
