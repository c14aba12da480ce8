// The POSIX implementations of the services, one maker each. Every service lives until the process
// ends.

#pragma once

#include "dqlib/platform/platform.h"

namespace dq::platform::posix {

Clock& SystemClock();
Locale& SystemLocale();
Modules& SystemModules();
Network& SystemNetwork();
Processes& SystemProcesses();
Prompts& SystemPrompts();
SystemErrors& SystemErrorTexts();
SystemFacts& SystemFactsService();

/// The one mapping of errno to an error value; 0 is success.
Error ErrorFromErrno(int number);

/// Makes `error` the calling thread's last network error. For code that talks to a network provider
/// and was refused.
void RecordNetworkError(NetworkError error);

}  // namespace dq::platform::posix
