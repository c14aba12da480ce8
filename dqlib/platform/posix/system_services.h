// The POSIX implementations of the services, one maker each. Every service lives until the process
// ends.

#pragma once

#include <memory>

#include "dqlib/platform/platform.h"

namespace dq::platform::posix {

Clock& SystemClock();
Console& SystemConsole();
Locale& SystemLocale();
Modules& SystemModules();
Network& SystemNetwork();
Processes& SystemProcesses();
Prompts& SystemPrompts();
SystemErrors& SystemErrorTexts();
SystemFacts& SystemFactsService();

/// Another locale by the environment (`LC_ALL`, `LC_NUMERIC`, `LC_TIME`, `LANG`), which is read
/// when its first item is asked for and then holds. US English stands for the locales C, POSIX and
/// en_US, and for one that isn't installed.
std::unique_ptr<Locale> MakeLocale();

/// The one mapping of errno to an error value; 0 is success.
Error ErrorFromErrno(int number);

/// Makes `error` the calling thread's last network error. For code that talks to a network provider
/// and was refused.
void RecordNetworkError(NetworkError error);

}  // namespace dq::platform::posix
