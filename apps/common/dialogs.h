// The dialogs of the library that a person can run by themselves, in whatever host.

#pragma once

#include <span>
#include <string>

namespace dqapps {

/// How a dialog was left.
struct DialogOutcome {
  /// It could be opened.
  bool is_opened = false;
  /// It was left by OK.
  bool is_ok = false;
  /// What it gives the host, if that is more than what is kept.
  std::string answer;

  /// As lines without the last one's end: "ok", with the answer behind it if there is one, or
  /// "cancel".
  std::string Lines() const;
};

/// A dialog: the id of its template, and how it is run.
struct LibraryDialog {
  unsigned id;
  /// Returns the dialog's result; puts what it gives the host into `answer`.
  int (*run)(std::string& answer);

  /// That of its template.
  std::string Caption() const;
  DialogOutcome Run() const;
};

std::span<const LibraryDialog> LibraryDialogs();

}  // namespace dqapps
