#include "dqlib/dbvocab/db_utility.h"

namespace dq {

int CDQDBUtility::RunExecutable(const char* command, CString& output, const char* directory) {
  if (command == nullptr) {
    Report(CONSOLE_NO_EXECUTABLE, nullptr);
    return 0;
  }
  const bool is_privileged = m_nAuthenticationMode > kNormal;
  CString line = CString(command) + ' ';
  if (is_privileged) line += '\'';
  line += m_strUser;
  if (!m_strPassword.IsEmpty()) {
    line += '/';
    HideInReport(line.GetLength(), m_strPassword.GetLength());
    line += m_strPassword;
  } else {
    HideInReport(0, 0);
  }
  if (!m_strDatasource.IsEmpty()) line += '@' + m_strDatasource;
  if (m_nAuthenticationMode == kSysDba) line += " AS SYSDBA";
  if (m_nAuthenticationMode == kSysOper) line += " AS SYSOPER";
  if (is_privileged) line += '\'';
  if (directory != nullptr) SetCurrentDirectory(directory);
  return CDQConsoleProgram::RunExecutable(line, output, "");
}

}  // namespace dq
