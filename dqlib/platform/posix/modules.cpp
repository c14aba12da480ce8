#include "dqlib/platform/modules.h"

#include <filesystem>

#include "dqlib/platform/posix/stock_resources.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

/// Path of the file that the process was started from; "" where the system doesn't say.
std::string ProgramPath() {
  constexpr std::string_view kDeleted = " (deleted)";
  std::error_code error;  // without an answer the path is empty, which is the result then
  std::string path = std::filesystem::read_symlink("/proc/self/exe", error).string();
  // The system marks a file that has been replaced or removed since; the name was without the mark.
  if (path.ends_with(kDeleted) && !std::filesystem::exists(path, error)) {
    path.resize(path.size() - kDeleted.size());
  }
  return path;
}

/// All code of a process is linked into the program, so each module has the program's file.
class LinkedModules : public Modules {
 public:
  std::string FileName(const Module*) override {
    static const std::string& path = *new std::string(ProgramPath());
    return path;
  }

  const Module& System() override {
    static const StockResources& system = *new StockResources;
    return system;
  }
};

}  // namespace

Modules& SystemModules() {
  static LinkedModules& modules = *new LinkedModules;
  return modules;
}

}  // namespace dq::platform::posix
