#include "siblings/options/options_server.h"

#include <algorithm>
#include <limits>

#include "dqlib/framework/base/error_text.h"
#include "dqlib/framework/base/text.h"
#include "dqlib/framework/base/trace.h"
#include "dqlib/platform/ascii.h"
#include "dqlib/platform/paths.h"
#include "dqlib/platform/platform.h"
#include "siblings/options/option_store.h"

namespace dq {
namespace {

constexpr char kLibraryFile[] = "DQLib.dqo";
constexpr int kCommandDelimiter = 50390;
/// Many times the largest file there is; beyond that it isn't an options file.
constexpr std::uint64_t kLargestFile = 16 << 20;

using detail::OrEmpty;

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), platform::AsciiLower);
  return lower;
}

void Trace(std::string_view text) { AfxTrace(std::string(text) + "\n"); }

std::vector<CString> DefaultDirectories() {
  const std::string program = platform::Current().modules->FileName(nullptr);
  const platform::PathParts parts = platform::SplitPath(program);
  const std::string directory = parts.drive + parts.directory;
  return {directory, platform::JoinPath(directory, DQLIB_OPTIONS_FROM_PROGRAM), DQLIB_RESOURCE_DIR};
}

}  // namespace

CDQOptionsServer* CDQOptionsServer::GetObject() {
  static CDQOptionsServer& server = *new CDQOptionsServer;
  return &server;
}

CDQOptionsServer::CDQOptionsServer() { SetOptionsDirectories(DefaultDirectories()); }

CDQOptionsServer::~CDQOptionsServer() = default;

void CDQOptionsServer::SetOptionsDirectories(std::vector<CString> directories) {
  m_directories = std::move(directories);
  // Without its file the server has no options of its own, which the trace log tells.
  AddOptions(kLibraryFile, 1, std::numeric_limits<int>::max(), true, false);
}

bool CDQOptionsServer::AddOptions(const char* file, int firstId, int lastId, bool required,
                                  bool shared) {
  const std::string name(OrEmpty(file));
  const Registration registration{name, firstId, lastId};
  const bool registered = std::ranges::find(m_registrations, registration) != m_registrations.end();
  if (shared && registered) return true;
  std::string path;
  OptionsFile contents;
  if (!ReadFile(name, required, path, contents)) return false;
  if (path.empty()) return true;
  const std::string conflict = FindConflict(name, contents, firstId, lastId, shared);
  if (!conflict.empty()) {
    Trace(path + ": " + conflict);
    return false;
  }
  SetVariables(contents, path, shared);
  Register(name, std::move(contents), firstId, lastId, shared);
  if (!registered) m_registrations.push_back(registration);
  return true;
}

/// Leaves `path` empty if the file is missing and not required.
bool CDQOptionsServer::ReadFile(const std::string& file, bool required, std::string& path,
                                OptionsFile& contents) {
  platform::Files& files = *platform::Current().files;
  std::vector<std::string> paths;
  if (platform::FindSeparator(file) != std::string::npos) {
    paths.push_back(file);
  } else if (!file.empty()) {
    for (const CString& each : m_directories) {
      if (each.IsEmpty()) continue;
      paths.push_back(platform::JoinPath(each.View(), file));
    }
  }
  for (const std::string& each : paths) {
    const auto status = files.Status(each);
    if (status.error.kind == platform::ErrorKind::kNotFound) continue;
    std::string text;
    platform::Error error = status.error;
    if (error.ok() &&
        ((status.value.attributes & FILE_ARCHIVE) == 0 || status.value.size > kLargestFile)) {
      Trace(each + ": no options file");
      return false;
    }
    if (error.ok()) error = files.ReadAll(each, text);
    if (!error.ok()) {
      Trace(each + ": " + detail::ErrorText(error));
      return false;
    }
    if (const auto wrong = ReadOptionsText(text, contents)) {
      Trace(each + "(" + std::to_string(wrong->line) + "): " + wrong->text);
      return false;
    }
    path = each;
    return true;
  }
  if (required) Trace("The options file '" + file + "' could not be found.");
  return !required;
}

std::string CDQOptionsServer::FindConflict(const std::string& file, const OptionsFile& contents,
                                           int first, int last, bool shared) {
  for (const OptionDefinition& each : contents.options) {
    if (each.id < first || each.id > last) continue;
    const CDQOption* const present = GetOptionByID(each.id);
    if (present != nullptr && shared) continue;
    const std::string subject = "option " + std::to_string(each.id);
    if (present != nullptr && present->GetFile().View() != file) {
      return subject + " is one of " + std::string(present->GetFile().View());
    }
    const int owner = GetOptionIDByName(each.name.c_str());
    // An option of the same file and range gives its name up.
    const bool taken =
        owner >= 0 && owner != each.id &&
        !(m_options[owner]->GetFile().View() == file && owner >= first && owner <= last && !shared);
    if (taken) return subject + " has the name of option " + std::to_string(owner);
  }
  return {};
}

void CDQOptionsServer::Register(const std::string& file, OptionsFile contents, int first, int last,
                                bool shared) {
  if (!shared) {
    std::set<int> defined;
    for (const OptionDefinition& each : contents.options) defined.insert(each.id);
    Unregister(file, first, last, defined);
  }
  for (OptionDefinition& each : contents.options) {
    if (each.id < first || each.id > last) continue;
    const int id = each.id;
    auto& option = m_options[id];
    if (option == nullptr) {
      option = std::make_unique<CDQOption>(*this, std::move(each), file);
    } else if (!shared) {
      ForgetName(*option);
      option->SetDefinition(std::move(each));
    }
    m_ids[LowerCase(option->GetName().View())] = id;
  }
}

void CDQOptionsServer::Unregister(std::string_view file, int first, int last,
                                  const std::set<int>& kept) {
  std::erase_if(m_options, [&](const auto& entry) {
    const auto& [id, option] = entry;
    if (id < first || id > last || option->GetFile().View() != file || kept.contains(id)) {
      return false;
    }
    ForgetName(*option);
    m_binaries.erase(id);
    return true;
  });
}

void CDQOptionsServer::ForgetName(const CDQOption& option) {
  // The name may have passed to another option of the file already.
  const auto found = m_ids.find(LowerCase(option.GetName().View()));
  if (found != m_ids.end() && found->second == option.GetID()) m_ids.erase(found);
}

void CDQOptionsServer::SetVariables(const OptionsFile& contents, const std::string& path,
                                    bool shared) {
  const platform::PathParts parts = platform::SplitPath(path);
  for (const OptionVariable& each : contents.variables) {
    const std::string name = "$$" + each.name + "$$";
    if (shared && m_engine.HasVariable(name.c_str())) continue;
    std::string value = each.value;
    if (each.is_directory) {
      // Below the directory of the file, whose own may be relative too.
      const auto base = platform::Current().files->FullPath(parts.drive + parts.directory);
      value = platform::FullPath(value, base.ok() ? base.value : parts.drive + parts.directory);
    }
    m_engine.SetVariable(name.c_str(), value.c_str());
  }
}

void CDQOptionsServer::RemoveOptions(const char* file, int firstId, int lastId) {
  // A copy, because it may be that of an option that goes.
  const std::string name(OrEmpty(file));
  Unregister(name, firstId, lastId, {});
  std::erase_if(m_registrations, [&](const Registration& each) {
    return each.file == name && each.first <= lastId && each.last >= firstId;
  });
}

CDQOption* CDQOptionsServer::GetOptionByID(int id) {
  const auto found = m_options.find(id);
  return found == m_options.end() ? nullptr : found->second.get();
}

int CDQOptionsServer::GetOptionIDByName(const char* name) {
  const auto found = m_ids.find(LowerCase(OrEmpty(name)));
  return found == m_ids.end() ? -1 : found->second;
}

CString CDQOptionsServer::GetOptionNameByID(int id) {
  const CDQOption* const option = GetOptionByID(id);
  return option == nullptr ? CString() : option->GetName();
}

std::vector<int> CDQOptionsServer::GetOptionIDs() const {
  std::vector<int> ids;
  ids.reserve(m_options.size());
  for (const auto& [id, option] : m_options) ids.push_back(id);
  return ids;
}

bool CDQOptionsServer::SetVariable(const char* name, const char* value) {
  return m_engine.SetVariable(name, value);
}

CString CDQOptionsServer::ResolveVariableString(const char* text) {
  return m_engine.ResolveVariableString(text);
}

CString CDQOptionsServer::GetCommandDelimiter(DBMS platform) {
  const CDQOption* const option = GetOptionByID(kCommandDelimiter);
  return option == nullptr ? CString() : CString(ValueOf(*option, platform));
}

}  // namespace dq
