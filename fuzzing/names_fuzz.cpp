// Names through every platform's quoting, and cut into parts. Input: the name.

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "dqlib/dbvocab/identifier_name.h"
#include "dqlib/dbvocab/oracle_name.h"
#include "dqlib/dbvocab/quote_name.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string name(reinterpret_cast<const char*>(data), size);
  static const std::unique_ptr<dq::QuoteName> platforms[] = {
      std::make_unique<dq::SybaseQuoteName>(),   std::make_unique<dq::SS65QuoteName>(),
      std::make_unique<dq::SS7QuoteName>(),      std::make_unique<dq::OracleQuoteName>(),
      std::make_unique<dq::DB2OS390QuoteName>(), std::make_unique<dq::DB2QuoteName>()};
  for (const auto& platform : platforms) {
    std::string quoted = name;
    platform->Quote(quoted);
    const std::size_t added = platform->NeedsQuotes(name) ? 2 : 0;
    if (quoted.size() != size + added || quoted.substr(added / 2, size) != name) std::abort();
    const char open = quoted.empty() ? '\0' : quoted.front();
    const char close = quoted.empty() ? '\0' : quoted.back();
    if (added != 0 && dq::RemoveWrappingChar(quoted.c_str(), open, close) != name.c_str() &&
        name.find('\0') == std::string::npos) {
      std::abort();
    }
  }
  dq::CString result;
  dq::COracleName().QuoteIdentifier(8.1, name.c_str(), result);
  if (result.GetLength() > 32) std::abort();
  dq::CString a, b, c;
  if (dq::GetThreePartName(name, a, b, c) && (a + "." + b + "." + c).View() != name) std::abort();
  if (dq::GetTwoPartName(name, a, b) && (a + "." + b).View() != name) std::abort();
  return 0;
}
