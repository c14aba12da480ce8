// What the desktop does with documents and addresses.

#pragma once

#include <string>
#include <string_view>

#include "dqlib/platform/error.h"

namespace dq::platform {

/// What is done with a document.
enum class ShellVerb {
  kOpen,
  kPrint,
  /// Shows what is in a folder.
  kExplore,
};

/// The desktop. Any thread.
class Shell {
 public:
  Shell() = default;
  Shell(const Shell&) = delete;
  Shell& operator=(const Shell&) = delete;
  virtual ~Shell();

  /// Has the program that the person uses for it do something with a document, a folder or, to be
  /// opened, an address as "https://host/page". Returns when it has begun, as far as that can be
  /// seen. `kNotFound` if the document isn't there, or what is to be explored is no folder;
  /// `kUnsupported` if there is no program for it.
  virtual Error Execute(ShellVerb verb, std::string_view target) = 0;

  /// The document that a shortcut stands for: on POSIX, a symbolic link, and a link file of the
  /// desktop (`.desktop`) to a file. "" for what is no shortcut to a document. The error is that of
  /// reading it, or that a link leads nowhere.
  virtual Result<std::string> ShortcutTarget(std::string_view path) = 0;
};

}  // namespace dq::platform
