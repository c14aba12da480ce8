// dqtool ini: reads and changes private profile files.

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "apps/common/content.h"
#include "apps/dqtool/command.h"
#include "dqlib/core/ini_file.h"
#include "dqlib/framework/base/error_text.h"
#include "dqlib/platform/platform.h"
#include "dqlib/platform/profile_text.h"

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
  Error CheckReadable(std::string_view path) override { return target_.CheckReadable(path); }

  Error error;

 private:
  dq::platform::ProfileFiles& target_ = *dq::platform::Current().profile_files;
};

/// One file, and the store that the library reads it from.
class IniFile {
 public:
  /// For reading: "-" is standard input. False from `ok` has been said.
  static std::unique_ptr<IniFile> ToRead(const std::string& word) {
    if (word.empty()) throw WrongUsage("FILE is empty");
    auto file = std::make_unique<IniFile>(word, std::make_unique<dqapps::InputFile>(word));
    if (!file->input_->ok()) return nullptr;
    Error error = file->error_;
    const auto& services = dq::platform::Current();
    if (error.ok()) error = services.profile_files->CheckReadable(file->path_.View());
    if (error.ok()) return file;
    Complain(file->name_ + ": " + dq::detail::ErrorText(error));
    return nullptr;
  }

  IniFile(const std::string& word, std::unique_ptr<dqapps::InputFile> input)
      : input_(std::move(input)), name_(dqapps::NameOfInput(word)) {
    const std::string& path = input_ != nullptr ? input_->path() : word;
    // Without a directory the library would look among the user's settings.
    const auto full = dq::platform::Current().files->FullPath(path);
    error_ = full.error;
    if (full.ok()) path_ = full.value;
    file_.SetIniFile(path_);
  }

  /// Has the library write, and tells a failure.
  template <typename Write>
  static int Change(const std::string& word, Write write) {
    if (word.empty()) throw WrongUsage("FILE is empty");
    if (word == "-")
      throw WrongUsage("standard input can't be changed; for a file of that name: ./-");
    IniFile file(word, nullptr);
    RememberingProfiles profiles;
    dq::platform::Platform services = dq::platform::Current();
    services.profile_files = &profiles;
    const dq::platform::ScopedPlatform scope(services);
    if (file.error_.ok()) {
      write(file.file_);
      file.error_ = profiles.error;
    }
    return file.error_.ok() ? int{kYes}
                            : Complain(file.name_ + ": " + dq::detail::ErrorText(file.error_));
  }

  CDQIniFile& file() { return file_; }
  const std::string& name() const { return name_; }

 private:
  std::unique_ptr<dqapps::InputFile> input_;
  std::string name_;
  CString path_;
  Error error_;
  CDQIniFile file_{""};
};

int PrintNames(const Arguments& arguments, const CStringList& names) {
  Listing listing(arguments);
  for (dq::POSITION position = names.GetHeadPosition(); position != nullptr;) {
    const CString& name = names.GetNext(position);
    listing.Add(name.View(), {{"name", name.View()}});
  }
  return listing.End();
}

int Get(const Arguments& arguments) {
  const auto file = IniFile::ToRead(arguments.words[0]);
  if (file == nullptr) return kNo;
  const std::string& section = arguments.words[1];
  const std::string& key = arguments.words[2];
  CString value;
  CString again;
  file->file().ReadKey(section.c_str(), key.c_str(), value, "0");
  file->file().ReadKey(section.c_str(), key.c_str(), again, "1");
  // Only what isn't there is once the one fallback and once the other.
  if (value != again) {
    return Complain(file->name() + ": no key " + key + " in section " + section);
  }
  return PrintAnswer(arguments, value.View(), {{"value", value.View()}});
}

int PrintSections(const Arguments& arguments) {
  const auto file = IniFile::ToRead(arguments.words[0]);
  if (file == nullptr) return kNo;
  CStringList names;
  file->file().EnumSections(names);
  return PrintNames(arguments, names);
}

int PrintKeys(const Arguments& arguments) {
  const auto file = IniFile::ToRead(arguments.words[0]);
  if (file == nullptr) return kNo;
  CStringList names;
  file->file().EnumKeys(arguments.words[1].c_str(), names);
  return PrintNames(arguments, names);
}

void RequireName(const std::string& name) {
  if (name.empty()) throw WrongUsage("a name is empty");
}

/// Whether a file can hold the section and key; what it can't has been said.
bool CanBeNames(const std::string& file, const std::string& section, const std::string& key) {
  if (!dq::platform::IsProfileSectionName(section)) {
    Complain(file + ": no section can be named '" + section + "'");
    return false;
  }
  if (!dq::platform::IsProfileKeyName(key)) {
    Complain(file + ": no key can be named '" + key + "'");
    return false;
  }
  return true;
}

int Set(const Arguments& arguments) {
  const std::vector<std::string>& words = arguments.words;
  RequireName(words[1]);
  RequireName(words[2]);
  if (!words[0].empty() && !CanBeNames(words[0], words[1], words[2])) return kNo;
  CString kept;
  const int status = IniFile::Change(words[0], [&](CDQIniFile& file) {
    file.WriteKey(words[1].c_str(), words[2].c_str(), words[3].c_str());
    file.ReadKey(words[1].c_str(), words[2].c_str(), kept, "");
  });
  // The form keeps no blanks and quotes round a value, nor all line ends and lengths.
  if (status == kYes && kept != words[3].c_str()) {
    Complain(words[0] + ": key " + words[2] + " in section " + words[1] +
             " isn't read back as the value given");
  }
  return status;
}

int DeleteKey(const Arguments& arguments) {
  const std::vector<std::string>& words = arguments.words;
  RequireName(words[1]);
  RequireName(words[2]);
  return IniFile::Change(
      words[0], [&words](CDQIniFile& file) { file.DeleteKey(words[1].c_str(), words[2].c_str()); });
}

int DeleteSection(const Arguments& arguments) {
  const std::vector<std::string>& words = arguments.words;
  RequireName(words[1]);
  return IniFile::Change(words[0],
                         [&words](CDQIniFile& file) { file.DeleteSection(words[1].c_str()); });
}

const Command kIni{
    "ini",
    "Reads and changes private profile files.",
    "S is a section, K a key and V its value. The case of names doesn't count.\n"
    "\n"
    "  get             print the value, at most 2047 bytes of it; absent keys are a no\n"
    "  set             write the value; line feeds stand as </N/>, carriage returns are dropped;\n"
    "                  on reading, blanks and one pair of quotes round it are too, and what so\n"
    "                  isn't read back as it was given is told on standard error\n"
    "  delete-key      reset the key: its value becomes 0, because an absent key reads as never\n"
    "                  set\n"
    "  delete-section  remove the section with all its keys\n"
    "  sections, keys  print names in the order of the file\n"
    "\n"
    "What is only read may be '-', standard input. A file that isn't there reads as empty.\n"
    "\n"
    "JSON: get {\"value\"}, sections and keys [{\"name\"}].\n",
    {{"FILE get S K", Get, {kJson}},
     {"FILE set S K V", Set},
     {"FILE delete-key S K", DeleteKey},
     {"FILE delete-section S", DeleteSection},
     {"FILE sections", PrintSections, {kJson}},
     {"FILE keys S", PrintKeys, {kJson}}}};

}  // namespace
}  // namespace dqtool
