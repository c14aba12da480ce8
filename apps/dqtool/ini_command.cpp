// dqtool ini: reads and changes private profile files.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/dqtool/command.h"
#include "dqlib/core/ini_file.h"
#include "dqlib/framework/base/error_text.h"
#include "dqlib/platform/platform.h"

namespace dqtool {
namespace {

using dq::CDQIniFile;
using dq::CString;
using dq::CStringList;
using dq::platform::Error;

/// Profile files that keep the error of a write, which `CDQIniFile` doesn't report.
class RememberingProfiles : public dq::platform::ProfileFiles {
 public:
  std::optional<std::string> Read(std::string_view path, std::string_view section,
                                  std::string_view key) override {
    return target_.Read(path, section, key);
  }
  Error Write(std::string_view path, std::string_view section, std::optional<std::string_view> key,
              std::optional<std::string_view> value) override {
    return error = target_.Write(path, section, key, value);
  }
  std::vector<std::string> Sections(std::string_view path) override {
    return target_.Sections(path);
  }
  std::vector<std::string> Keys(std::string_view path, std::string_view section) override {
    return target_.Keys(path, section);
  }

  Error error;

 private:
  dq::platform::ProfileFiles& target_ = *dq::platform::Current().profile_files;
};

int PrintNames(const CStringList& names) {
  for (dq::POSITION position = names.GetHeadPosition(); position != nullptr;) {
    PrintLine(names.GetNext(position).View());
  }
  return kYes;
}

int PrintValue(CDQIniFile& file, const std::string& section, const std::string& key) {
  CString value;
  CString again;
  file.ReadKey(section.c_str(), key.c_str(), value, "0");
  file.ReadKey(section.c_str(), key.c_str(), again, "1");
  // Only what isn't there is once the one fallback and once the other.
  if (value != again) return Complain("ini: no key " + key + " in section " + section);
  PrintLine(value.View());
  return kYes;
}

void RequireWords(Words words, std::size_t count, const char* needed) {
  if (words.size() != count) throw WrongUsage(words[1] + " needs " + needed);
}

void RequireName(const std::string& name) {
  if (name.empty()) throw WrongUsage("a name is empty");
}

int RunIni(Words words) {
  if (words.empty()) throw WrongUsage("a FILE is needed");
  if (words.size() < 2) throw WrongUsage("get, set, delete-key, delete-section, sections or keys?");
  // Without a directory the library would look among the user's settings.
  const auto full = dq::platform::Current().files->FullPath(words[0]);
  if (!full.ok()) return Complain("ini: " + words[0] + ": " + dq::detail::ErrorText(full.error));
  const CString path = full.value;
  const std::string& action = words[1];
  RememberingProfiles profiles;
  dq::platform::Platform services = dq::platform::Current();
  services.profile_files = &profiles;
  const dq::platform::ScopedPlatform scope(services);
  CDQIniFile file(path);
  CStringList names;

  const auto reading = [&] {
    std::string bytes;
    const Error error = services.files->ReadAll(path.View(), bytes);
    if (error.ok() || error.kind == dq::platform::ErrorKind::kNotFound) return true;
    Complain("ini: " + words[0] + ": " + dq::detail::ErrorText(error));
    return false;
  };
  const auto written = [&] {
    return profiles.error.ok()
               ? int{kYes}
               : Complain("ini: " + words[0] + ": " + dq::detail::ErrorText(profiles.error));
  };
  if (action == "get") {
    RequireWords(words, 4, "a SECTION and a KEY");
    return reading() ? PrintValue(file, words[2], words[3]) : kNo;
  }
  if (action == "sections") {
    RequireWords(words, 2, "no more words");
    if (!reading()) return kNo;
    file.EnumSections(names);
    return PrintNames(names);
  }
  if (action == "keys") {
    RequireWords(words, 3, "a SECTION");
    if (!reading()) return kNo;
    file.EnumKeys(words[2].c_str(), names);
    return PrintNames(names);
  }
  if (action == "set") {
    RequireWords(words, 5, "a SECTION, a KEY and a VALUE");
    RequireName(words[2]);
    RequireName(words[3]);
    file.WriteKey(words[2].c_str(), words[3].c_str(), words[4].c_str());
    return written();
  }
  if (action == "delete-key") {
    RequireWords(words, 4, "a SECTION and a KEY");
    RequireName(words[2]);
    RequireName(words[3]);
    file.DeleteKey(words[2].c_str(), words[3].c_str());
    return written();
  }
  if (action == "delete-section") {
    RequireWords(words, 3, "a SECTION");
    RequireName(words[2]);
    file.DeleteSection(words[2].c_str());
    return written();
  }
  throw WrongUsage("no action " + action);
}

const Command kIni{
    "ini", "FILE get S K | set S K V | delete-key S K | delete-section S | sections | keys S",
    "Reads and changes private profile files.",
    "S is a section, K a key and V its value. The case of names doesn't count.\n"
    "\n"
    "  get             print the value, at most 2047 bytes of it; absent keys are a no\n"
    "  set             write the value; line feeds stand as </N/>, carriage returns are dropped\n"
    "  delete-key      reset the key: its value becomes 0, because an absent key reads as never "
    "set\n"
    "  delete-section  remove the section with all its keys\n"
    "  sections, keys  print names in the order of the file\n",
    RunIni};

}  // namespace
}  // namespace dqtool
