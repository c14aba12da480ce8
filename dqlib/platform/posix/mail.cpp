#include "dqlib/platform/mail.h"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "dqlib/platform/paths.h"
#include "dqlib/platform/platform.h"
#include "dqlib/platform/posix/desktop_command.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

namespace fs = std::filesystem;

/// Where copies of attachments stand, one directory for each mail.
constexpr std::string_view kCopies = "velmora-mail-";
/// How long a mail program may need them: until the person has sent the mail.
constexpr std::chrono::hours kCopiesLast{48};

std::string_view NameOf(std::string_view path) { return path.substr(FindLastSeparator(path) + 1); }

/// Removes the user's own copies of mails that must have been sent by now.
void RemoveOldCopies(const std::string& directory) {
  const fs::file_time_type oldest = fs::file_time_type::clock::now() - kCopiesLast;
  // What fails is left: copies of other users can't be removed, and others remove theirs meanwhile.
  std::error_code error;
  for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
       entry.increment(error)) {
    if (!entry->path().filename().string().starts_with(kCopies)) continue;
    std::error_code gone;
    const fs::file_time_type written = entry->last_write_time(gone);
    if (!gone && written < oldest) fs::remove_all(entry->path(), gone);
  }
}

/// Copies of a mail's attachments, which a program may read long after it was handed the mail.
class AttachmentCopies {
 public:
  AttachmentCopies() = default;
  AttachmentCopies(const AttachmentCopies&) = delete;
  AttachmentCopies& operator=(const AttachmentCopies&) = delete;
  ~AttachmentCopies() {
    std::error_code ignored;
    if (!directory_.empty()) fs::remove_all(directory_, ignored);
  }

  /// The path of the copy.
  Result<std::string> Add(const MailAttachment& attachment);
  /// Leaves them to the program.
  void Keep() { directory_.clear(); }

 private:
  std::string directory_;
  int count_ = 0;
};

Result<std::string> AttachmentCopies::Add(const MailAttachment& attachment) {
  Files& files = *Current().files;
  if (directory_.empty()) {
    const std::string temporary = files.TempDirectory();
    RemoveOldCopies(temporary);
    std::string made = temporary + std::string(kCopies) + "XXXXXX";
    if (mkdtemp(made.data()) == nullptr) return ErrorFromErrno(errno);
    directory_ = std::move(made);
  }
  // Each in a directory of its own, because two may have one name.
  const std::string directory = JoinPath(directory_, std::to_string(++count_));
  if (const Error error = files.MakeDirectory(directory); !error.ok()) return error;
  const std::string_view wanted = NameOf(attachment.name);
  const std::string_view name = wanted.empty() ? NameOf(attachment.path) : wanted;
  const std::string copy = JoinPath(directory, name);
  if (const Error error = files.Copy(attachment.path, copy, false); !error.ok()) return error;
  return copy;
}

/// By the cross-desktop command, which knows the user's mail program. Other commands that can
/// attach something ask for the receivers on a terminal, and are none for a desktop.
class DesktopMail final : public Mail {
 public:
  Result<MailOutcome> Send(const MailMessage& message) override try {
    std::vector<std::string> arguments = {"xdg-email"};
    // Texts of the plain page are UTF-8, others in the encoding of the locale, as the command
    // takes them otherwise.
    if (Current().locale->code_page().number() == 0) arguments.emplace_back("--utf8");
    const auto add = [&arguments](const char* option, const std::string& value) {
      if (value.empty()) return;
      arguments.emplace_back(option);
      arguments.push_back(value);
    };
    add("--subject", message.subject);
    add("--body", message.text);
    AttachmentCopies copies;
    for (const MailAttachment& attachment : message.attachments) {
      const Result<std::string> copy = copies.Add(attachment);
      if (!copy.ok()) return copy.error;
      add("--attach", copy.value);
    }
    const Error error = RunDesktopCommand(arguments);
    if (error.kind == ErrorKind::kUnsupported) return MailOutcome::kNoProgram;
    if (!error.ok()) return error;
    copies.Keep();
    return MailOutcome::kHandedOver;
  } catch (const std::exception&) {
    return ErrorOfException();
  }
};

}  // namespace

Mail& SystemMail() {
  static DesktopMail& mail = *new DesktopMail;
  return mail;
}

}  // namespace dq::platform::posix
