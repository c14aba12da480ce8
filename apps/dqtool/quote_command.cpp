// dqtool quote: quotes names where a platform needs it.

#include <memory>
#include <string>

#include "apps/common/content.h"
#include "apps/dqtool/command.h"
#include "apps/dqtool/vocabulary.h"
#include "dqlib/dbvocab/identifier_name.h"
#include "dqlib/dbvocab/quote_name.h"
#include "dqlib/dbvocab/version_string.h"
#include "siblings/options/options_server.h"

namespace dqtool {
namespace {

constexpr int kOracleLowerCaseNames = 50270;
constexpr int kQuoteNames = 50274;

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

int RunQuote(const Arguments& arguments) {
  const dq::DBMS platform = PlatformOf(arguments.Get("--platform"));
  if (platform == dq::DBMS_NONE) throw WrongUsage("the platform none quotes no names");
  const std::string version = arguments.Get("--version");
  if (arguments.Has("--version")) VersionOf(version, platform);
  dq::CDQOptionsServer& options = *dq::CDQOptionsServer::GetObject();
  if (arguments.Has("--case-sensitive")) options.HoldValue(kOracleLowerCaseNames, "1");
  if (arguments.Has("--no-quoting")) options.HoldValue(kQuoteNames, "0");
  const std::unique_ptr<dq::QuoteName> quoting = QuotingOf(platform, version);
  Listing listing(arguments);
  const auto quote = [&](const std::string& name) {
    std::string quoted = name;
    quoting->Quote(quoted);
    listing.Add(quoted, {{"name", name}, {"quoted", quoted}});
  };
  for (const std::string& name : arguments.words) quote(name);
  if (arguments.words.empty()) {
    for (std::string name; dqapps::ReadInputLine(name);) quote(name);
    if (dqapps::EndOfInputLines() != kYes) return kNo;
  }
  return listing.End();
}

const Command kQuote{
    "quote",
    "Quotes names where a platform needs it.",
    "Prints each NAME, or each line of standard input without any, in quotes if its characters\n"
    "need it or it is a reserved word.\n"
    "\n"
    "Without --case-sensitive and --no-quoting, what the user has set as options 50270 and 50274\n"
    "holds.\n"
    "\n"
    "JSON: [{\"name\", \"quoted\"}].\n",
    {{"[NAME ...]",
      RunQuote,
      {{"--platform", "P", "sybase, sqlserver, db2, oracle or db2os390", Times::kOnce},
       {"--version", "V", "the server's version; above 6.5, SQL Server has square brackets"},
       {"--case-sensitive", "", "lower-case letters of Oracle names need quotes"},
       {"--no-quoting", "", "no quotes but on Oracle"},
       kJson}}}};

}  // namespace
}  // namespace dqtool
