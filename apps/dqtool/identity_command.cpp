// dqtool identity: what the library takes its host for.

#include <concepts>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "apps/dqtool/command.h"
#include "dqlib/frame/application_info.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/platform/platform.h"

namespace dqtool {
namespace {

/// The program stands for another one.
class OtherProgram : public dq::platform::Modules {
 public:
  explicit OtherProgram(std::string path) : path_(std::move(path)) {}
  std::string FileName(const dq::platform::Module* module) override {
    return module == nullptr ? path_ : own_.FileName(module);
  }
  const dq::platform::Module& System() override { return own_.System(); }

 private:
  dq::platform::Modules& own_ = *dq::platform::Current().modules;
  std::string path_;
};

struct Options {
  std::string code;
  std::string executable;
  std::optional<std::string> version;
};

Options Parse(Words words) {
  Options options;
  for (; !words.empty(); words = words.subspan(2)) {
    const std::string& name = words[0];
    if (name != "--app" && name != "--exe" && name != "--file-version") {
      RefuseOption(name);
    }
    if (words.size() < 2) throw WrongUsage(name + " needs a value");
    if (name == "--app") options.code = words[1];
    if (name == "--exe") options.executable = words[1];
    if (name == "--file-version") options.version = words[1];
  }
  return options;
}

void Print(std::string_view name, std::string_view value) {
  PrintLine(std::string(name) + '\t' + OnOneLine(value));
}

void Print(std::string_view name, bool value) {
  Print(name, std::string_view(value ? "true" : "false"));
}

template <std::integral Number>
void Print(std::string_view name, Number number) {
  Print(name, std::string_view(std::to_string(number)));
}

void PrintAll() {
  using Info = dq::CDQApplicationInfo;
  Info info;
  Print("LanguageString", info.GetLanguageString().View());
  Print("VersionString", info.GetVersionString().View());
  Print("Comments", info.GetComments().View());
  Print("CompanyName", info.GetCompanyName().View());
  Print("FileDescription", info.GetFileDescription().View());
  Print("InternalName", info.GetInternalName().View());
  Print("LegalCopyright", info.GetLegalCopyright().View());
  Print("LegalTrademarks", info.GetLegalTrademarks().View());
  Print("OriginalFileName", info.GetOriginalFileName().View());
  Print("ProductVersion", info.GetProductVersion().View());
  Print("AppCode", Info::GetAppCode().View());
  Print("Title", info.GetTitle().View());
  Print("ExecutablePath", info.GetExecutablePath().View());
  Print("ExecutableDirectory", info.GetExecutableDirectory().View());
  Print("RunningFromNetwork", info.RunningFromNetwork());
  Print("OptionsFile", info.GetOptionsFile().View());
  Print("RegistryKey", info.GetRegistryKey().View());
  Print("ProductName", info.GetProductName().View());
  Print("SplashIDB", info.GetSplashIDB());
  Print("LongVersionNumber", info.GetLongVersionNumber().View());
  Print("MediumVersionNumber", info.GetMediumVersionNumber().View());
  Print("ShortVersionNumber", info.GetShortVersionNumber().View());
  Print("MajorVersionNumber", info.GetMajorVersionNumber());
  Print("MinorVersionNumber", info.GetMinorVersionNumber());
  Print("BuildNumber", info.GetBuildNumber());
  Print("IsAppLumenSql", Info::IsAppLumenSql());
  Print("IsAppDeltaKeeper", Info::IsAppDeltaKeeper());
  Print("IsAppQuillbase", Info::IsAppQuillbase());
  Print("IsAppDQPacer", Info::IsAppDQPacer());
}

int PrintIdentity(Words words) {
  const Options options = Parse(words);
  dq::platform::Platform services = dq::platform::Current();
  OtherProgram other(options.executable);
  if (!options.executable.empty()) services.modules = &other;
  const dq::platform::ScopedPlatform scope(services);
  dq::AfxGetApp()->SetExecutablePath(services.modules->FileName(nullptr).c_str());
  if (options.version) {
    services.version_resources->SetTable(services.modules->FileName(nullptr),
                                         {{"FileVersion", *options.version}});
  }
  dq::CDQApplicationInfo::SetAppCode(options.code.c_str());
  PrintAll();
  return kYes;
}

const Command kIdentity{
    "identity", "[--app CODE] [--exe PATH] [--file-version V]",
    "Prints what the library takes its host for.",
    "Lines are NAME<TAB>VALUE, control characters as '\\xHH'. The first ones are of the version\n"
    "resource that V replaces, without its product name, which stands further down.\n"
    "\n"
    "  --app CODE        the host's application code\n"
    "  --exe PATH        the host's executable, which need not exist; this program's by default\n"
    "  --file-version V  its version, in place of what it or PATH.version carries\n",
    PrintIdentity};

}  // namespace
}  // namespace dqtool
