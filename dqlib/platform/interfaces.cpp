// Out-of-line destructors of the interfaces, so that each has its virtual table in one place, and
// what they offer on top of their own operations.

#include "dqlib/platform/change_notifications.h"
#include "dqlib/platform/clipboard.h"
#include "dqlib/platform/clock.h"
#include "dqlib/platform/console.h"
#include "dqlib/platform/dialog_view.h"
#include "dqlib/platform/files.h"
#include "dqlib/platform/hot_keys.h"
#include "dqlib/platform/locale.h"
#include "dqlib/platform/mail.h"
#include "dqlib/platform/modules.h"
#include "dqlib/platform/network.h"
#include "dqlib/platform/printing.h"
#include "dqlib/platform/processes.h"
#include "dqlib/platform/profile_files.h"
#include "dqlib/platform/prompts.h"
#include "dqlib/platform/registry.h"
#include "dqlib/platform/shell.h"
#include "dqlib/platform/system_errors.h"
#include "dqlib/platform/system_facts.h"
#include "dqlib/platform/threads.h"
#include "dqlib/platform/version_resources.h"

namespace dq::platform {

ChangeNotifications::~ChangeNotifications() = default;
Clipboard::~Clipboard() = default;
Clock::~Clock() = default;
Console::~Console() = default;
Console::StopWatch::~StopWatch() = default;
DialogView::~DialogView() = default;
Files::~Files() = default;
Result<std::uint64_t> Files::WriteAndTell(HANDLE file, std::string_view bytes) {
  const Error error = Write(file, bytes);
  if (!error.ok()) return error;
  return Seek(file, 0, SeekOrigin::kCurrent).value;
}
HotKeys::~HotKeys() = default;
Locale::~Locale() = default;
Mail::~Mail() = default;
Module::~Module() = default;
Modules::~Modules() = default;
Network::~Network() = default;
Result<std::vector<std::string>> Network::Machines() { return Error{ErrorKind::kUnsupported}; }
Printing::~Printing() = default;
Processes::~Processes() = default;
ProfileFiles::~ProfileFiles() = default;
Prompts::~Prompts() = default;
std::optional<ChosenFiles> Prompts::ChooseFile(const FileQuestion& question) {
  return ChooseFileByDialog(*this, question);
}
std::optional<std::string> Prompts::ChooseFolder(std::string_view title, std::string_view start) {
  return ChooseFolderByDialog(*this, title, start);
}
std::optional<PrintChoice> Prompts::ChoosePrint(const PrintQuestion& question) {
  return ChoosePrintByDialog(*this, question);
}
Registry::~Registry() = default;
Shell::~Shell() = default;
SystemErrors::~SystemErrors() = default;
SystemFacts::~SystemFacts() = default;
Threads::~Threads() = default;
VersionResources::~VersionResources() = default;

}  // namespace dq::platform
