#include "dqlib/core/ini_file.h"

#include <string>
#include <vector>

#include "dqlib/core/file_utility.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

/// Stands for a line feed in a value.
constexpr char kLineFeedMark[] = "</N/>";
constexpr int kLongestValue = 2047;

platform::ProfileFiles& Profiles() { return *platform::Current().profile_files; }

/// The names as the system gives them, each with a zero behind it and another one at the end.
std::string BufferOf(const std::vector<std::string>& names) {
  std::string buffer;
  for (const std::string& name : names) buffer.append(name) += '\0';
  return buffer += '\0';
}

}  // namespace

void CDQIniFile::WriteKey(const char* section, const char* key, const char* value) {
  if (section == nullptr || key == nullptr || value == nullptr) return;
  CDQString line(value);
  line.FindReplace("\n", kLineFeedMark);
  line.Delete('\r');
  // Nothing reports a failure here: who must know asks whether the key reads back.
  Profiles().Write(m_strIniFile.View(), section, key, line.View());
}

void CDQIniFile::WriteKey(const char* section, const char* key, int value) {
  CDQString text;
  text.SetNumber(value);
  WriteKey(section, key, text);
}

void CDQIniFile::ReadKey(const char* section, const char* key, CString& value,
                         const char* fallback) {
  const auto found = section == nullptr || key == nullptr
                         ? std::nullopt
                         : Profiles().Read(m_strIniFile.View(), section, key);
  CDQString text(found ? CString(*found) : CString(fallback));
  text = text.Left(kLongestValue);
  text.FindReplace(kLineFeedMark, "\n");
  value = text;
}

void CDQIniFile::ReadIntKey(const char* section, const char* key, int& value, int fallback) {
  const auto found = section == nullptr || key == nullptr
                         ? std::nullopt
                         : Profiles().Read(m_strIniFile.View(), section, key);
  value = found ? detail::ProfileNumber(*found) : fallback;
}

void CDQIniFile::DeleteSection(const char* section) {
  if (section != nullptr) {
    Profiles().Write(m_strIniFile.View(), section, std::nullopt, std::nullopt);
  }
}

void CDQIniFile::DeleteKey(const char* section, const char* key) { WriteKey(section, key, 0); }

void CDQIniFile::EnumSections(CStringList& sections) {
  if (CDQFileUtility::GetFileSize(m_strIniFile) == 0) return;
  ParseIniBuffer(BufferOf(Profiles().Sections(m_strIniFile.View())).c_str(), sections);
}

void CDQIniFile::EnumKeys(const char* section, CStringList& keys) {
  if (section == nullptr || CDQFileUtility::GetFileSize(m_strIniFile) == 0) return;
  ParseIniBuffer(BufferOf(Profiles().Keys(m_strIniFile.View(), section)).c_str(), keys);
}

void CDQIniFile::ParseIniBuffer(const char* buffer, CStringList& names) {
  while (buffer != nullptr && *buffer != '\0') {
    const CString name(buffer);
    names.AddTail(name);
    buffer += name.GetLength() + 1;
  }
}

}  // namespace dq
