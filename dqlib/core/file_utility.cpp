#include "dqlib/core/file_utility.h"

#include <algorithm>
#include <cstring>

#include "dqlib/core/system_info.h"
#include "dqlib/framework/base/random.h"
#include "dqlib/framework/base/registry_key.h"
#include "dqlib/framework/base/text.h"
#include "dqlib/framework/windows/file_failure.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/platform/paths.h"
#include "dqlib/platform/platform.h"
#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

constexpr char kDefaultPrefix[] = "TMP";
/// What a search takes as "any file" when directories are left out.
constexpr DWORD kFileAttributes = FILE_READ_ONLY | FILE_HIDDEN | FILE_SYSTEM | FILE_ARCHIVE;

platform::Files& Files() { return *platform::Current().files; }

using detail::OrEmpty;

bool IsWindowsForm(std::string_view path) {
  return platform::FormOf(path) == platform::PathForm::kWindows;
}

/// Paths of the Windows form are compared, and come back, in lower case. A path without a root
/// takes the form of its base. Whether both have one form.
bool LowerWindowsForm(CDQString& base, CDQString& path) {
  const std::string_view text = path.View();
  const bool rooted =
      platform::HasDrive(text) || (!text.empty() && platform::IsSeparator(text.front()));
  const bool windows = IsWindowsForm(base.View());
  const bool path_windows = rooted || base.IsEmpty() ? IsWindowsForm(text) : windows;
  if (path_windows) path.MakeLower();
  if (windows) base.MakeLower();
  return windows == path_windows;
}

void ShowFileError(const char* path, const CFileException& error, bool saving) {
  const CString message =
      CDQFileUtility::GetExceptionErrorMessage(path, &error, saving, IDS_INVALID_FILENAME);
  AfxMessageBox(message + "\n");
}

/// Whether a path with this name could lead out of its directory, where nothing may be deleted.
bool HasSeparator(std::string_view name) { return platform::FindSeparator(name) != name.npos; }

bool IsDirectory(std::string_view path) {
  const auto status = Files().Status(path);
  return status.ok() && (status.value.attributes & FILE_DIRECTORY) != 0;
}

void ShowNotCreated(std::string_view directory) {
  CString message;
  message.Format(IDS_DIRECTORY_NOT_CREATED, static_cast<const char*>(CString(directory)));
  AfxMessageBox(message, BOX_OK);
}

/// Puts new contents in the place of the file's, which `file` has open and keeps others from
/// writing.
void ReplaceContents(CFile& file, const char* path, std::string_view bytes) {
  const auto status = Files().Status(path);
  if (status.value.attributes & FILE_SYSTEM) {
    file.Write(bytes.data(), static_cast<UINT>(bytes.size()));
    return file.Close();
  }
  const platform::Error error = Files().Replace(path, bytes, false);
  if (error.ok()) return file.Abort();
  if (error.kind != platform::ErrorKind::kAccessDenied) {
    throw CFileException(CFileException::CauseOf(error), static_cast<LONG>(error.code), path);
  }
  // The directory takes no new file, but the file itself may be written.
  std::string former;
  const bool is_known = Files().ReadAll(path, former).ok();
  const auto write = [&file](std::string_view contents) {
    file.SetLength(0);
    file.Write(contents.data(), static_cast<UINT>(contents.size()));
    file.Flush();
  };
  try {
    write(bytes);
  } catch (const CFileException&) {
    if (is_known) write(former);
    throw;
  }
  file.Close();
}

/// The default value of a key below the root of file types.
bool SetFileTypeValue(const CString& key_path, const CString& text) {
  return SetRegistryText(kClassesRoot, key_path.View(), "", std::string(text.View())).ok();
}

CString FileTypeValue(const CString& key_path) {
  constexpr std::size_t kLongest = 520;
  platform::Registry& registry = *platform::Current().registry;
  const RegistryKey key(registry.OpenKey(kClassesRoot, key_path.View()));
  if (!key.ok()) return {};
  char data[kLongest + 1] = {};
  const auto read = registry.ReadValue(key.get(), "", std::span(data, kLongest));
  return read.ok() ? CString(data) : CString();
}

}  // namespace

CDQFileUtility::CDQFileUtility(const char* path) { SetFullPath(path); }

void CDQFileUtility::SetFullPath(const char* path) {
  const platform::PathParts parts = platform::SplitPath(OrEmpty(path));
  // The first, since the path may be one of the other parts.
  m_strFullPath = path;
  m_strDrive = parts.drive;
  m_strDirectory = parts.directory;
  m_strFileName = parts.name;
  m_strExtension = parts.extension;
}

long long CDQFileUtility::GetFileSize(const char* path) {
  if (path == nullptr) return 0;
  const auto file = Files().Open(path, {});
  if (!file.ok()) return 0;
  const auto length = Files().Length(file.value);
  Files().Close(file.value);
  return static_cast<long long>(length.value);
}

CString CDQFileUtility::SearchPath(const char* name) {
  return Files().SearchPath(OrEmpty(name)).value;
}

CString CDQFileUtility::GetFullPath(const char* name) {
  return Files().FullPath(OrEmpty(name)).value;
}

CString CDQFileUtility::GetTempDirectory() { return Files().TempDirectory(); }

CString CDQFileUtility::GetUniversalName(const char* path) {
  const std::string_view name = OrEmpty(path);
  const std::size_t colon = name.find(':');
  if (colon == name.npos || !CDQSystemInfo::IsWindowsNT()) return name;
  const auto universal = Files().UniversalName(name);
  if (universal.ok()) return universal.value;
  if (!platform::HasDrive(name)) return name;
  CString share(name);
  share.SetAt(static_cast<int>(colon), '$');
  return CDQSystemInfo::GetComputerName() + "\\" + share;
}

CString CDQFileUtility::CreateTempFile(const char* prefix, const char* directory,
                                       const char* extension) {
  const std::string where(OrEmpty(directory).empty() ? Files().TempDirectory()
                                                     : std::string(directory));
  if (OrEmpty(extension).empty()) {
    return Files().MakeTempFile(where, prefix == nullptr ? kDefaultPrefix : prefix).value;
  }
  SeedRandom(static_cast<DWORD>(platform::Current().clock->SecondsSince1970()));
  const char* const stem = OrEmpty(prefix).empty() ? kDefaultPrefix : prefix;
  for (int number = NextRandom();; ++number) {
    CString name;
    name.Format("%s%X.%s", stem, static_cast<UINT>(number), extension);
    CString path = platform::JoinPath(where, name.View());
    const platform::Error error = Files().Status(path.View()).error;
    if (error.kind == platform::ErrorKind::kNotFound) return path;
    if (!error.ok()) return {};
  }
}

bool CDQFileUtility::CreateDirectory(const char* path, bool ask, CStringArray* created) {
  // A copy, because it may be one of the texts that have been created.
  const std::string whole(OrEmpty(path));
  std::string_view wanted = whole;
  if (wanted.empty()) return false;
  if (platform::IsSeparator(wanted.back())) wanted.remove_suffix(1);
  if (wanted.empty() || wanted.back() == ':' || IsDirectory(wanted)) return true;
  if (ask) {
    CString question;
    question.Format(IDS_DIRECTORY_DOES_NOT_EXIST, static_cast<const char*>(CString(wanted)));
    if (AfxMessageBox(question, BOX_YES_NO) != BUTTON_YES) return false;
  }
  for (std::size_t level = platform::RootSize(wanted); level < wanted.size();) {
    const std::size_t end = std::min(platform::FindSeparator(wanted, level), wanted.size());
    const std::string_view part = wanted.substr(0, end);
    level = end + 1;
    if (IsDirectory(part)) continue;
    const platform::Error error = Files().MakeDirectory(part);
    // Somebody else may have made it meanwhile, which is as good.
    if (!error.ok() && !IsDirectory(part)) {
      ShowNotCreated(part);
      return false;
    }
    if (error.ok() && created != nullptr) created->Add(Files().FullPath(part).value);
  }
  // A server or a share has no level that could be made.
  if (IsDirectory(wanted)) return true;
  ShowNotCreated(wanted);
  return false;
}

bool CDQFileUtility::CreateFile(const char* path) {
  CFile file;
  return file.Open(path, CFile::modeCreate) != 0;
}

bool CDQFileUtility::EmptyFile(const char* path) {
  CFile file;
  CDQFileException error;
  if (file.Open(path, CFile::modeCreate | CFile::modeWrite | CFile::shareDenyWrite, &error)) {
    return true;
  }
  ShowFileError(path, error, true);
  return false;
}

CString CDQFileUtility::MakePath(const char* drive, const char* directory, const char* file,
                                 const char* extension) {
  return platform::MakePath(OrEmpty(drive), OrEmpty(directory), OrEmpty(file), OrEmpty(extension));
}

int CDQFileUtility::WriteFile(const char* path, CString& text) {
  return WriteFile(path, text, text.GetLength(), true, false);
}

int CDQFileUtility::WriteFile(const char* path, const char* text, int length, bool replace,
                              bool addLineEnd) try {
  const std::string_view bytes = text == nullptr || length < 0
                                     ? OrEmpty(text)
                                     : std::string_view(text, static_cast<std::size_t>(length));
  // A file whose status can't be read may be there, and isn't this one's to remove.
  const bool existed = Files().Status(OrEmpty(path)).error.kind != platform::ErrorKind::kNotFound;
  CFile file;
  CDQFileException error;
  // What is appended and fails goes again.
  const UINT flags =
      (existed ? 0U : UINT{CFile::modeCreate}) | (replace ? 0U : UINT{CFile::modeAppend});
  if (!file.Open(path, CFile::modeWrite | CFile::shareDenyWrite | flags, &error)) {
    ShowFileError(path, error, true);
    return 0;
  }
  std::string written(bytes);
  if (addLineEnd) written += "\r\n";
  if (replace) {
    try {
      ReplaceContents(file, path, written);
    } catch (const CFileException&) {
      // What was just made goes again, unless it is whole and only may not be on the disk yet.
      std::string now;
      const bool whole = Files().ReadAll(path, now).ok() && now == written;
      if (!existed && !whole) Files().Delete(path);
      throw;
    }
  } else {
    file.Write(written.data(), static_cast<UINT>(written.size()));
    file.Flush();
    file.Close();
  }
  return static_cast<int>(bytes.size());
} catch (const CFileException&) {
  return 0;
}

bool CDQFileUtility::ReadFile(CString& text, const char* path) {
  std::string bytes;
  const bool read = path != nullptr && Files().ReadAll(path, bytes).ok();
  text = read ? std::string_view(bytes) : std::string_view();
  return read;
}

bool CDQFileUtility::ListFiles(const char* pattern, CStringList& list, DWORD attributes) {
  if (OrEmpty(pattern).empty()) return false;
  const auto found = Files().Find(pattern);
  for (const platform::FoundFile& file : found.value) {
    if (file.name == "." || file.name == ".." || (file.status.attributes & attributes) == 0) {
      continue;
    }
    list.AddTail(file.name);
  }
  return found.ok();
}

CString CDQFileUtility::GetExceptionErrorMessage(const char* path, const CException* exception,
                                                 bool saving, UINT stringId) {
  return DescribeFileFailure(path, exception, saving, stringId);
}

void CDQFileUtility::AbbreviateName(char* path, int length, int atLeastName) {
  const std::size_t room = static_cast<std::size_t>(std::max(length, 0));
  const std::string shortened = platform::AbbreviatePath(OrEmpty(path), room, atLeastName != 0);
  if (path != nullptr) std::memcpy(path, shortened.c_str(), shortened.size() + 1);
}

CString CDQFileUtility::AbsolutePathToRelative(const char* base, const char* path) {
  CDQString from(base);
  CDQString to(path);
  const bool comparable = LowerWindowsForm(from, to);
  if (from.IsEmpty() || to.IsEmpty() || !comparable) return to;
  if (to.Find(from) >= 0) return "." + to.Mid(from.GetLength());
  const CString drive = platform::SplitPath(from.View()).drive;
  if (drive.IsEmpty() || to.Find(drive) < 0) return to;
  CString rest = to.Mid(drive.GetLength());
  if (rest.IsEmpty() || !platform::IsSeparator(rest[0])) rest = "\\" + rest;
  return ".." + rest;
}

CString CDQFileUtility::RelativePathToAbsolute(const char* base, const char* path) {
  CDQString from(base);
  CDQString to(path);
  LowerWindowsForm(from, to);
  if (from.IsEmpty() || to.IsEmpty()) return to;
  if (to.Left(2) == "..") return CString(platform::SplitPath(from.View()).drive) + to.Mid(2);
  if (to.Left(1) == ".") return from + to.Mid(1);
  return to;
}

bool CDQFileUtility::RegisterFileType(const char* typeId, const char* typeName,
                                      const char* extension) {
  if (OrEmpty(typeId).empty()) return false;
  CString program = platform::Current().modules->FileName(nullptr);
  // There is no short form of a path that would do without.
  if (program.Find(' ') >= 0) program = "\"" + program + "\"";
  const CString shell = CString(typeId) + "\\shell\\open\\";
  if (!SetFileTypeValue(typeId, typeName)) return false;
  if (!SetFileTypeValue(shell + "ddeexec", "[open(\"%1\")]")) return false;
  if (!SetFileTypeValue(shell + "command", program + " \"%1\"")) return false;
  const std::string_view type = OrEmpty(extension);
  if (type.empty()) return true;
  if (type.front() != '.') return false;
  if (FileTypeValue(type) == typeId) return true;
  return SetFileTypeValue(type, typeId);
}

bool CDQFileUtility::DeleteDirectory(const CString& path, bool recursive) {
  // Nothing but the search would know a directory by no name: the current one.
  if (path.IsEmpty()) return false;
  // Only a link to a directory can be deleted like a file; what it leads to is not ours. With a
  // separator at its end a path is that of what it leads to.
  const std::string_view whole = path.View();
  std::string_view link = whole;
  while (link.size() > 1 && platform::IsSeparator(link.back())) link.remove_suffix(1);
  if (IsDirectory(whole) && Files().Delete(link).ok()) return true;
  if (recursive) {
    const std::string pattern = platform::JoinPath(whole, "*.*");
    for (const platform::FoundFile& entry : Files().Find(pattern).value) {
      const bool directory = (entry.status.attributes & FILE_DIRECTORY) != 0;
      if (!directory || entry.name == "." || entry.name == ".." || HasSeparator(entry.name))
        continue;
      // One that resists keeps this one from being deleted too, which the result tells.
      DeleteDirectory(platform::JoinPath(whole, entry.name), true);
    }
    DeleteFiles(pattern, kFileAttributes);
  }
  return Files().RemoveDirectory(whole).ok();
}

bool CDQFileUtility::DeleteFiles(const CString& pattern, DWORD attributes) {
  const std::string_view text = pattern.View();
  const std::size_t separator = platform::FindLastSeparator(text);
  const std::string_view directory =
      separator == text.npos ? std::string_view() : text.substr(0, separator + 1);
  const auto matching = Files().Find(text);
  bool all = matching.ok() || matching.error.kind == platform::ErrorKind::kNotFound;
  for (const platform::FoundFile& file : matching.value) {
    const DWORD found = file.status.attributes;
    if ((found & FILE_DIRECTORY) != 0 || (found & attributes) == 0) continue;
    if (HasSeparator(file.name)) {
      all = false;
      continue;
    }
    const std::string path = std::string(directory) + file.name;
    if (Files().Delete(path).ok()) continue;
    // A link to a read-only file went without this, so that the file itself keeps its bit.
    if ((found & FILE_READ_ONLY) != 0) {
      // If the bit can't be cleared the deletion fails, which is told.
      Files().SetAttributes(path, found & ~static_cast<DWORD>(FILE_READ_ONLY));
    }
    if (!Files().Delete(path).ok()) all = false;
  }
  return all;
}

std::unique_ptr<CFile> CDQFileUtility::OpenFile(const char* path, UINT flags, bool showMessage) {
  auto file = std::make_unique<CFile>();
  CDQFileException error;
  if (file->Open(path, flags, &error)) return file;
  if (showMessage) {
    const bool saving = (flags & (CFile::modeWrite | CFile::modeReadWrite)) != 0;
    AfxMessageBox(GetExceptionErrorMessage(path, &error, saving, IDS_INVALID_FILENAME));
  }
  return nullptr;
}

bool DQLIB_FileExists(const char* path) {
  CFileStatus status;
  return CFile::GetStatus(path, status) != 0;
}

bool DQLIB_FileReadOnly(const char* path) {
  CFileStatus status;
  return CFile::GetStatus(path, status) && (status.m_attribute & FILE_READ_ONLY) != 0;
}

void DQLIB_GetModuleDirectory(HINSTANCE module, CString& directory) {
  const std::string path = platform::Current().modules->FileName(module);
  const std::size_t separator = platform::FindLastSeparator(path);
  if (separator != path.npos) directory = path.substr(0, separator);
}

void DQLIB_GetModuleDriveSpec(HINSTANCE module, CString& drive) {
  const std::string path = platform::Current().modules->FileName(module);
  const std::size_t separator = platform::FindSeparator(path);
  if (separator != path.npos) drive = path.substr(0, separator);
}

int GetEndOfLinePosition(const char* text) {
  constexpr std::string_view kLineEnds = "\n\r\f\x1a";
  const std::string_view whole = OrEmpty(text);
  const std::size_t first = whole.find_first_of(kLineEnds);
  if (first == whole.npos) return static_cast<int>(whole.size()) - 1;
  const std::size_t behind = std::min(whole.find_first_not_of(kLineEnds, first), whole.size());
  return static_cast<int>(behind) - 1;
}

}  // namespace dq
