// The options that quoting asks.

#pragma once

#include "siblings/options/options_server.h"

namespace dq::detail {

/// Whether lower-case letters of Oracle names count, so that a name with one must be quoted.
inline bool OracleLowerCaseCounts() {
  constexpr int kOracleLowerCaseNames = 50270;
  return CDQOptionsServer::GetObject()->GetBool(kOracleLowerCaseNames);
}

/// Whether the user wants names quoted at all.
inline bool IsQuotingOn() {
  constexpr int kQuoteNames = 50274;
  const CDQOption* const option = CDQOptionsServer::GetObject()->GetOptionByID(kQuoteNames);
  return option != nullptr && option->GetBool();
}

}  // namespace dq::detail
