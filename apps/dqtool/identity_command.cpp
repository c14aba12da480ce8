// dqtool identity: what the library takes its host for.

#include <string>
#include <string_view>
#include <utility>

#include "apps/dqtool/command.h"
#include "apps/dqtool/vocabulary.h"
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

Fields AllFacts() {
  using Info = dq::CDQApplicationInfo;
  Info info;
  return {
      {"LanguageString", info.GetLanguageString().View()},
      {"VersionString", info.GetVersionString().View()},
      {"Comments", info.GetComments().View()},
      {"CompanyName", info.GetCompanyName().View()},
      {"FileDescription", info.GetFileDescription().View()},
      {"InternalName", info.GetInternalName().View()},
      {"LegalCopyright", info.GetLegalCopyright().View()},
      {"LegalTrademarks", info.GetLegalTrademarks().View()},
      {"OriginalFileName", info.GetOriginalFileName().View()},
      {"ProductVersion", info.GetProductVersion().View()},
      {"AppCode", Info::GetAppCode().View()},
      {"Title", info.GetTitle().View()},
      {"ExecutablePath", info.GetExecutablePath().View()},
      {"ExecutableDirectory", info.GetExecutableDirectory().View()},
      {"RunningFromNetwork", info.RunningFromNetwork()},
      {"OptionsFile", info.GetOptionsFile().View()},
      {"RegistryKey", info.GetRegistryKey().View()},
      {"ProductName", info.GetProductName().View()},
      {"SplashIDB", info.GetSplashIDB()},
      {"LongVersionNumber", info.GetLongVersionNumber().View()},
      {"MediumVersionNumber", info.GetMediumVersionNumber().View()},
      {"ShortVersionNumber", info.GetShortVersionNumber().View()},
      {"MajorVersionNumber", info.GetMajorVersionNumber()},
      {"MinorVersionNumber", info.GetMinorVersionNumber()},
      {"BuildNumber", info.GetBuildNumber()},
      {"IsAppLumenSql", Info::IsAppLumenSql()},
      {"IsAppDeltaKeeper", Info::IsAppDeltaKeeper()},
      {"IsAppQuillbase", Info::IsAppQuillbase()},
      {"IsAppDQPacer", Info::IsAppDQPacer()},
  };
}

int PrintIdentity(const Arguments& arguments) {
  const std::string* const version = arguments.Find("--file-version");
  if (version != nullptr && !IsNumbersWithDots(*version)) {
    throw WrongUsage("V is numbers with dots between, not '" + *version + "'");
  }
  if (const std::string* const code = arguments.Find("--app")) SetApplication(*code);
  dq::platform::Platform services = dq::platform::Current();
  OtherProgram other(arguments.Get("--exe"));
  if (arguments.Has("--exe")) {
    if (arguments.Get("--exe").empty()) throw WrongUsage("PATH is empty");
    services.modules = &other;
  }
  const dq::platform::ScopedPlatform scope(services);
  dq::AfxGetApp()->SetExecutablePath(services.modules->FileName(nullptr).c_str());
  if (version != nullptr) {
    services.version_resources->SetTable(services.modules->FileName(nullptr),
                                         {{"FileVersion", *version}});
  }
  return PrintFacts(arguments, AllFacts());
}

const Command kIdentity{
    "identity",
    "Prints what the library takes its host for.",
    "Lines are NAME<TAB>VALUE, control characters as '\\xHH'. The first ones are of the version\n"
    "resource that V replaces, without its product name, which stands further down.\n"
    "\n"
    "JSON: one object, with the names of the lines.\n",
    {{"",
      PrintIdentity,
      {{"--app", "CODE", "the host's application code, one of those that the library knows"},
       {"--exe", "PATH", "the host's executable, which need not exist; this program's by default"},
       {"--file-version", "V", "its version, in place of what it or PATH.version carries"},
       kJson}}}};

}  // namespace
}  // namespace dqtool
