// The POSIX implementations of the services, one maker each. Every service lives until the process
// ends.

#pragma once

#include <memory>

#include "dqlib/platform/platform.h"

namespace dq::platform::posix {

class SystemCalls;

ChangeNotifications& SystemChangeNotifications();
Clipboard& SystemClipboard();
Clock& SystemClock();
Console& SystemConsole();
Files& SystemFiles();
HotKeys& SystemHotKeys();
Locale& SystemLocale();
Mail& SystemMail();
Modules& SystemModules();
Network& SystemNetwork();
Printing& SystemPrinting();
Processes& SystemProcesses();
ProfileFiles& SystemProfileFiles();
Prompts& SystemPrompts();
Registry& SystemRegistry();
Shell& SystemShell();
SystemErrors& SystemErrorTexts();
SystemFacts& SystemFactsService();
Threads& SystemThreads();
VersionResources& SystemVersionResources();

/// Another locale by the environment (`LC_ALL`, `LC_NUMERIC`, `LC_TIME`, `LANG`), which is read
/// when its first item is asked for and then holds. US English stands for the locales C, POSIX and
/// en_US, and for one that isn't installed.
std::unique_ptr<Locale> MakeLocale();

/// Others on system calls that may fail otherwise than the system's, which must outlive them.
std::unique_ptr<Files> MakeFiles(SystemCalls& calls);
std::unique_ptr<ProfileFiles> MakeProfileFiles(SystemCalls& calls);

/// The one mapping of errno to an error value; 0 is success.
Error ErrorFromErrno(int number);

/// The error for the exception that is being handled, which goes no further: want of memory is
/// `ENOMEM`, what the standard library has from the system keeps its number. To be called in a
/// handler only. Every operation of a service that returns an error ends in it; one that returns
/// a plain value has no place for an error, and lets want of memory through as any value does.
Error ErrorOfException() noexcept;

/// Makes `error` the calling thread's last network error. For a host's code that talks to a network
/// provider and was refused; the library itself talks to none.
void RecordNetworkError(NetworkError error);

}  // namespace dq::platform::posix
