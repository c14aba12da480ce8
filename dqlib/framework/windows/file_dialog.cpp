#include "dqlib/framework/windows/file_dialog.h"

#include <algorithm>
#include <utility>

#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/base/text.h"
#include "dqlib/platform/paths.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

using detail::OrEmpty;

/// The pairs of a filter, up to an empty name. A name without patterns is none.
std::vector<platform::FileKind> ReadFilter(std::string_view filter) {
  std::vector<platform::FileKind> kinds;
  const auto take = [&filter] {
    const std::size_t end = std::min(multi_byte::Find(filter, '|'), filter.size());
    const std::string_view part = filter.substr(0, end);
    filter.remove_prefix(std::min(end + 1, filter.size()));
    return std::string(part);
  };
  while (!filter.empty()) {
    std::string name = take();
    std::string patterns = take();
    if (name.empty() || patterns.empty()) break;
    kinds.push_back({std::move(name), std::move(patterns)});
  }
  return kinds;
}

platform::PathParts PartsOf(const CString& path) { return platform::SplitPath(path.View()); }

}  // namespace

IMPLEMENT_DYNAMIC(CFileDialog, CDialog)

CFileDialog::CFileDialog(bool open, const char* extension, const char* file, DWORD flags,
                         const char* filter, CWnd* parent)
    : CDialog(UINT{0}, parent),
      question_{.open = open,
                .name = std::string(OrEmpty(file)),
                .kinds = ReadFilter(OrEmpty(filter)),
                .extension = std::string(OrEmpty(extension)),
                .file_must_exist = (flags & OFN_FILEMUSTEXIST) != 0,
                .folder_must_exist = (flags & (OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST)) != 0,
                .ask_to_replace = (flags & OFN_OVERWRITEPROMPT) != 0,
                .multiple = (flags & OFN_ALLOWMULTISELECT) != 0} {}

void CFileDialog::SetTitle(const char* title) { question_.title = OrEmpty(title); }

void CFileDialog::SetInitialFolder(const char* folder) { question_.folder = OrEmpty(folder); }

int CFileDialog::DoModal() {
  std::optional<platform::ChosenFiles> chosen = platform::Current().prompts->ChooseFile(question_);
  if (!chosen) return IDCANCEL;
  paths_ = std::move(chosen->paths);
  question_.kind = chosen->kind;
  return IDOK;
}

CString CFileDialog::GetPathName() const {
  return CString(paths_.empty() ? question_.name : paths_.front());
}

CString CFileDialog::GetFileName() const {
  const platform::PathParts parts = PartsOf(GetPathName());
  return CString(parts.name + parts.extension);
}

CString CFileDialog::GetFileExt() const {
  const std::string extension = PartsOf(GetPathName()).extension;
  return CString(extension.substr(extension.empty() ? 0 : 1));
}

CString CFileDialog::GetFileTitle() const { return CString(PartsOf(GetPathName()).name); }

void CFileDialog::GetPathNames(CStringArray& paths) const {
  paths.RemoveAll();
  for (const std::string& path : paths_) paths.Add(CString(path));
}

std::optional<CString> ChooseFolder(const char* title, const char* start) {
  const std::optional<std::string> chosen =
      platform::Current().prompts->ChooseFolder(OrEmpty(title), OrEmpty(start));
  return chosen ? std::optional(CString(*chosen)) : std::nullopt;
}

}  // namespace dq
