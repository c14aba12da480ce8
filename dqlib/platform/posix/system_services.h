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

/// The one mapping of errno to an error value.
Error ErrorFromErrno(int number);

}  // namespace dq::platform::posix
