// Names through every platform's quoting, and cut into parts. Input: the name.

#include <memory>

#include "dqlib/dbvocab/identifier_name.h"
#include "dqlib/dbvocab/oracle_name.h"
#include "dqlib/dbvocab/quote_name.h"
#include "fuzzing/fuzzing.h"

void dq::fuzz::Try(std::string_view input) {
  const std::string name(input);
  static const std::unique_ptr<dq::QuoteName> platforms[] = {
      std::make_unique<dq::SybaseQuoteName>(),   std::make_unique<dq::SS65QuoteName>(),
      std::make_unique<dq::SS7QuoteName>(),      std::make_unique<dq::OracleQuoteName>(),
      std::make_unique<dq::DB2OS390QuoteName>(), std::make_unique<dq::DB2QuoteName>()};
  for (const auto& platform : platforms) {
    std::string quoted = name;
    platform->Quote(quoted);
    const std::size_t added = platform->NeedsQuotes(name) ? 2 : 0;
    Require(quoted.size() == name.size() + added && quoted.substr(added / 2, name.size()) == name);
    const char open = quoted.empty() ? '\0' : quoted.front();
    const char close = quoted.empty() ? '\0' : quoted.back();
    Require(added == 0 || name.find('\0') != std::string::npos ||
            dq::RemoveWrappingChar(quoted.c_str(), open, close) == name.c_str());
  }
  dq::CString result;
  dq::COracleName().QuoteIdentifier(8.1, name.c_str(), result);
  Require(result.GetLength() <= 32);
  dq::CString a, b, c;
  Require(!dq::GetThreePartName(name, a, b, c) || (a + "." + b + "." + c).View() == name);
  Require(!dq::GetTwoPartName(name, a, b) || (a + "." + b).View() == name);
}
