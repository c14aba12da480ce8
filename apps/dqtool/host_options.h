// The options that dqtool registers as a host.

#pragma once

#include "siblings/options/options_server.h"

namespace dqtool {

/// The format that values of dates with times are shown by.
inline constexpr int kDateFormatOption = 60000;

/// The options server with the options of the library, of the syntax editor and of dqtool.
inline dq::CDQOptionsServer& HostOptions() {
  dq::CDQOptionsServer& server = *dq::CDQOptionsServer::GetObject();
  server.AddOptions("DQSyntax.Dqo", 52500, 52639, true, true);
  server.AddOptions("dqtool.dqo", 60000, 60099, true, false);
  return server;
}

}  // namespace dqtool
