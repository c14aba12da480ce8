// Mails that the person sends with a mail program.

#pragma once

#include <string>
#include <vector>

#include "dqlib/platform/error.h"

namespace dq::platform {

struct MailAttachment {
  std::string path;
  /// What the file is called in the mail; "" for its own name. What stands before a separator
  /// doesn't count.
  std::string name = {};
};

/// A mail without the persons it goes to, whom the sender chooses.
struct MailMessage {
  std::string subject = {};
  std::string text = {};
  std::vector<MailAttachment> attachments = {};
};

enum class MailOutcome {
  /// A mail program has it, for the person to complete and send, or has sent it.
  kHandedOver,
  /// The person didn't want to send it. Programs that go on by themselves don't tell.
  kCancelled,
  /// There is no mail program.
  kNoProgram,
};

/// The user's mail program. Any thread.
class Mail {
 public:
  Mail() = default;
  Mail(const Mail&) = delete;
  Mail& operator=(const Mail&) = delete;
  virtual ~Mail();

  /// Hands a mail over and returns when the program has it, or the person is through with it. The
  /// files may be removed or changed then, whatever the program still has to do. The error is that
  /// of reading them, or that the program failed.
  virtual Result<MailOutcome> Send(const MailMessage& message) = 0;
};

}  // namespace dq::platform
