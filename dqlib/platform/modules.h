// Modules of code and the resources they carry.

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "dqlib/platform/types.h"

namespace dq {

/// Type numbers of resources.
enum ResourceType : WORD {
  RESOURCE_CURSOR = 1,
  RESOURCE_BITMAP = 2,
  RESOURCE_ICON = 3,
  RESOURCE_MENU = 4,
  RESOURCE_DIALOG = 5,
  RESOURCE_STRING = 6,
  RESOURCE_FONTDIR = 7,
  RESOURCE_FONT = 8,
  RESOURCE_ACCELERATOR = 9,
  RESOURCE_RCDATA = 10,
  RESOURCE_GROUP_CURSOR = 12,
  RESOURCE_GROUP_ICON = 14,
  RESOURCE_VERSION = 16,
  RESOURCE_TOOLBAR = 241,
};

namespace platform {

/// One resource of a module.
struct Resource {
  WORD type = 0;
  WORD name = 0;
  /// The resource's bytes in the form that its type has; for a block of strings, empty, because the
  /// module answers single strings by `Module::String`.
  std::string_view data;
};

/// A unit of code with a file and resources. Its address is its handle. Once it is in use it
/// doesn't change, and it may be asked from any thread.
class Module {
 public:
  Module() = default;
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;
  virtual ~Module();

  /// The resource of the type and name, or null. The name of a block of strings is the string id
  /// divided by 16, plus 1.
  virtual const Resource* Find(WORD type, WORD name) const = 0;

  /// The string with the id, valid as long as the module; no value if there is none.
  virtual std::optional<std::string_view> String(UINT id) const = 0;
};

/// The modules of the process. Any thread.
class Modules {
 public:
  Modules() = default;
  Modules(const Modules&) = delete;
  Modules& operator=(const Modules&) = delete;
  virtual ~Modules();

  /// Full path of the file that the module was loaded from; null means the program itself. A module
  /// that is linked into the program has the program's path.
  virtual std::string FileName(const Module* module) = 0;

  /// The system's own resources: stock cursors and icons.
  virtual const Module& System() = 0;
};

}  // namespace platform
}  // namespace dq
