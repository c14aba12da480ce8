// Runs a database's command-line tool with a connection.
//
//   CDQDBUtility tool;
//   tool.SetUser("scott");
//   tool.SetPassword(password);
//   tool.SetDatasource("ora1");
//   tool.RunExecutable("sqlplus -s", last, nullptr);   // sqlplus -s scott/...@ora1

#pragma once

#include "dqlib/output/console_program.h"

namespace dq {

/// A console program whose last argument is "user/password@datasource", of which each part may be
/// missing; in a privileged mode that stands in single quotes, with the role behind it. What is
/// reported never has the password in it.
class CDQDBUtility : public CDQConsoleProgram {
 public:
  /// How the server is asked to let the user in. Any other mode above 0 gives quotes without a
  /// role.
  enum AuthenticationMode : int { kNormal = 0, kSysDba = 2, kSysOper = 4 };

  const CString& GetDatasource() const { return m_strDatasource; }
  void SetDatasource(const char* datasource) { m_strDatasource = datasource; }
  const CString& GetUser() const { return m_strUser; }
  void SetUser(const char* user) { m_strUser = user; }
  const CString& GetPassword() const { return m_strPassword; }
  void SetPassword(const char* password) { m_strPassword = password; }
  int GetAuthenticationMode() const { return m_nAuthenticationMode; }
  void SetAuthenticationMode(int mode) { m_nAuthenticationMode = mode; }

  /// Runs the command, a program and its first arguments, with the connection behind it, as the
  /// base does, in the directory, which stays set; null leaves the one that is. A null command is
  /// reported as no program to run, with 0 for result, even after other runs.
  int RunExecutable(const char* command, CString& output, const char* directory) override;

 private:
  CString m_strDatasource;
  CString m_strUser;
  CString m_strPassword;
  int m_nAuthenticationMode = kNormal;
};

}  // namespace dq
