// Printers, and what is handed to them.

#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "dqlib/platform/error.h"

namespace dq::platform {

/// What a person wants printed, and how.
struct PrintJob {
  /// By name; "" is the default one.
  std::string printer{};
  /// What the job is called among others that wait.
  std::string title{};
  /// Below 1 counts as 1.
  int copies = 1;
  /// The pages that are printed, from 1. A last one below the first stands for the end.
  int first_page = 1;
  int last_page = 0;
  /// The file that is made instead of a printer's sheets; "" for none.
  std::string to_file{};
};

/// Gives a document, piece by piece: fills at most the whole of `buffer`, which isn't empty, and
/// returns the number of bytes, 0 at the end.
using DocumentReader = std::function<Result<std::size_t>(std::span<char> buffer)>;

/// How printing went.
struct PrintOutcome {
  Error error{};
  /// What went wrong, in words for a person, if anything did.
  std::string words{};
};

/// The printers of the system. Any thread; each operation waits for the system's answer, and the
/// questions some seconds at most.
class Printing {
 public:
  Printing() = default;
  Printing(const Printing&) = delete;
  Printing& operator=(const Printing&) = delete;
  virtual ~Printing();

  /// Names of the printers, in the system's order. `kUnsupported` if the system doesn't tell,
  /// `kOther` if it failed to, or not in time.
  virtual Result<std::vector<std::string>> Printers() = 0;

  /// The printer that is taken if none is named; "" if there is none, `kUnsupported` as above.
  virtual Result<std::string> DefaultPrinter() = 0;

  /// Hands a document in PDF, finished as it is, to a printer, with the title and the number of
  /// copies; the job's pages and its file are its maker's business. Returns when the system has all
  /// of it. `kUnsupported` if the system can't print, `kOther` if it refused; the error of the
  /// reader if that failed, of which nothing is printed then, as far as that can be helped.
  virtual PrintOutcome Print(const PrintJob& job, const DocumentReader& document) = 0;
};

}  // namespace dq::platform
