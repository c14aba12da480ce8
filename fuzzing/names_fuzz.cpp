// Names through every platform's quoting, and cut into parts. Input: the name.

#include "fuzzing/fuzzing.h"

void dq::fuzz::Try(std::string_view input) {
  const std::string name(input);
  static const std::unique_ptr<QuoteName> platforms[] = {
      std::make_unique<SybaseQuoteName>(),   std::make_unique<SS65QuoteName>(),
      std::make_unique<SS7QuoteName>(),      std::make_unique<OracleQuoteName>(),
      std::make_unique<DB2OS390QuoteName>(), std::make_unique<DB2QuoteName>()};
  for (const auto& platform : platforms) {
    std::string quoted = name;
    platform->Quote(quoted);
    const std::size_t added = platform->NeedsQuotes(name) ? 2 : 0;
    Require(quoted.size() == name.size() + added && quoted.substr(added / 2, name.size()) == name);
    Require(added == 0 || name.find('\0') != std::string::npos ||
            RemoveWrappingChar(quoted.c_str(), quoted.front(), quoted.back()) == name.c_str());
  }
  CString result, a, b, c;
  COracleName().QuoteIdentifier(8.1, name.c_str(), result);
  Require(result.GetLength() <= 32);
  Require(!GetThreePartName(name, a, b, c) || (a + "." + b + "." + c).View() == name);
  Require(!GetTwoPartName(name, a, b) || (a + "." + b).View() == name);
}
