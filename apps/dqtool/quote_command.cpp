// dqtool quote: quotes names where a platform needs it.

#include <cstdio>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "apps/dqtool/command.h"
#include "apps/dqtool/platform_word.h"
#include "dqlib/dbvocab/identifier_name.h"
#include "dqlib/dbvocab/quote_name.h"
#include "dqlib/dbvocab/version_string.h"
#include "siblings/options/options_server.h"

namespace dqtool {
namespace {

constexpr int kOracleLowerCaseNames = 50270;
constexpr int kQuoteNames = 50274;

struct Wish {
  std::optional<dq::DBMS> platform;
  std::string version;
  bool is_case_sensitive = false;
  bool has_no_quoting = false;
};

/// Takes the options off the front of the words.
Wish TakeWish(Words& words) {
  Wish wish;
  while (!words.empty() && words[0].starts_with("-") && words[0] != "-") {
    const std::string& word = words[0];
    words = words.subspan(1);
    if (word == "--") break;
    if (word == "--case-sensitive") {
      wish.is_case_sensitive = true;
    } else if (word == "--no-quoting") {
      wish.has_no_quoting = true;
    } else if (word == "--platform") {
      wish.platform = TakePlatform(words);
    } else if (word == "--version") {
      if (words.empty()) throw WrongUsage("--version needs a V");
      wish.version = words[0];
      words = words.subspan(1);
    } else {
      RefuseOption(word);
    }
  }
  if (!wish.platform) throw WrongUsage("--platform P is needed");
  if (*wish.platform == dq::DBMS_NONE) throw WrongUsage("the platform none quotes no names");
  return wish;
}

std::unique_ptr<dq::QuoteName> QuotingOf(dq::DBMS platform, const std::string& version) {
  switch (platform) {
    case dq::DBMS_SYBASE:
      return std::make_unique<dq::SybaseQuoteName>();
    case dq::DBMS_SQLSERVER: {
      char open = 0;
      char close = 0;
      const dq::CDQDBVersionString server(version.c_str(), platform);
      dq::GetIdentifierQuoteChars(server, platform, open, close);
      if (open == '[') return std::make_unique<dq::SS7QuoteName>();
      return std::make_unique<dq::SS65QuoteName>();
    }
    case dq::DBMS_DB2:
      return std::make_unique<dq::DB2QuoteName>();
    case dq::DBMS_ORACLE:
      return std::make_unique<dq::OracleQuoteName>();
    case dq::DBMS_DB2OS390:
      return std::make_unique<dq::DB2OS390QuoteName>();
    case dq::DBMS_NONE:
      break;
  }
  return nullptr;
}

int RunQuote(Words words) {
  const Wish wish = TakeWish(words);
  dq::CDQOptionsServer& options = *dq::CDQOptionsServer::GetObject();
  if (wish.is_case_sensitive) options.HoldValue(kOracleLowerCaseNames, "1");
  if (wish.has_no_quoting) options.HoldValue(kQuoteNames, "0");
  const std::unique_ptr<dq::QuoteName> quoting = QuotingOf(*wish.platform, wish.version);
  for (std::string name : words) {
    quoting->Quote(name);
    PrintLine(name);
  }
  if (!words.empty()) return kYes;
  for (std::string name; std::getline(std::cin, name);) {
    quoting->Quote(name);
    PrintLine(name);
  }
  // The stream, which works on C's own, takes a failure for the end.
  const bool has_failed = std::cin.bad() || std::ferror(stdin) != 0;
  return has_failed ? Complain("quote: cannot read standard input") : kYes;
}

const Command kQuote{
    "quote", "--platform P [--version V] [--case-sensitive] [--no-quoting] [NAME ...]",
    "Quotes names where a platform needs it.",
    "Prints each NAME, or each line of standard input without any, in quotes if its characters\n"
    "need it or it is a reserved word. '--' ends the options.\n"
    "\n"
    "  --platform P      sybase, sqlserver, db2, oracle or db2os390\n"
    "  --version V       the server's version; above 6.5, SQL Server has square brackets\n"
    "  --case-sensitive  lower-case letters of Oracle names need quotes\n"
    "  --no-quoting      no quotes but on Oracle\n"
    "\n"
    "Without the last two, what the user has set as options 50270 and 50274 holds.\n",
    RunQuote};

}  // namespace
}  // namespace dqtool
