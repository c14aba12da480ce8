// Runs a console program to its end and hands its output on line by line, with passwords in its
// command line masked where they stand in one of two forms:
//
//   scott/tiger@ora1   what is between the first "/" and the first "@" becomes "****", there and
//                      wherever the same text stands; not in a line that begins with "USERID"
//   -Psecret           what follows the first "-P" up to the next white space becomes "*"s
//
// All else stays as it is: "-P secret", "-psecret", "--password=secret", a second "-P" or another
// "u/p@d", the rest of a password behind a blank; and a "/" or "@" that stands further in front (a
// path, a script's "@x.sql") takes the first form's place. The child's arguments can be seen by
// other users of the machine anyway. A caller that knows the secret says where it stands by
// `HideInReport`, as `CDQDBUtility` does; safer still is a program that reads it from a file.
//
//   CDQConsoleProgram program;
//   program.SetCallback([](int code, const char* text) { ... return 0; });
//   CString last;
//   program.RunExecutable("sqlplus", last, "scott/tiger@ora1 @report.sql");

#pragma once

#include <atomic>

#include "dqlib/framework/base/c_string.h"
#include "dqlib/platform/processes.h"

namespace dq {

/// First argument of the feedback procedure.
enum ConsoleFeedback : int {
  CONSOLE_LINE = 1,            ///< A line of output, or first of all the masked command line.
  CONSOLE_START_FAILED = -3,   ///< The process could not be started; a text says why.
  CONSOLE_PIPE_FAILED = -4,    ///< A pipe could not be made; a text says why.
  CONSOLE_READ_FAILED = -5,    ///< Reading failed; a text says why.
  CONSOLE_NO_EXECUTABLE = -6,  ///< There is no program to run; the text is null.
};

/// Takes a `ConsoleFeedback` and a text, valid for the length of the call. Its result is ignored.
using ConsoleCallback = int (*)(int code, const char* text);

/// Runs one program at a time, on any thread; made on the user-interface thread, as it loads texts.
/// A copy shares the handles of a run under way.
class CDQConsoleProgram {
 public:
  CDQConsoleProgram();
  CDQConsoleProgram(const CDQConsoleProgram& other);
  CDQConsoleProgram& operator=(const CDQConsoleProgram& other);
  virtual ~CDQConsoleProgram();

  /// Null takes no feedback. Called on the thread inside `RunExecutable`.
  void SetCallback(ConsoleCallback callback) { m_pCallback = callback; }
  /// The child's working directory; "" for this process's.
  void SetCurrentDirectory(const char* directory) { m_strCurrentDirectory = directory; }
  /// Whether blanks at the left of a line are dropped, as they are at first. The last line of the
  /// output always keeps its own, because it is what callers show as the program's last word.
  void EnableTrimLeft(bool enable) { m_bTrimLeft = enable; }

  /// Runs the program and waits for its end. A null `exe` or `args` keeps the one of the former
  /// call. Reports the command line, masked unless `args` is null, then each line of output; blank
  /// lines vanish. `lastOutput` gets what is left when the output ends, which is its last line, and
  /// keeps its value if that is blank. Returns 1 if the program ran, whatever its exit code, also
  /// when it was cancelled; 0 after a failure, which has been reported. The child has nothing to
  /// read from its standard input. Bytes behind a zero are lost up to the end of the piece of
  /// `m_nPipeOutputSize` bytes that it stands in. Executable and arguments make up one command
  /// line, with a blank between them, which is cut again as `platform::StartInfo` tells: a program
  /// whose path has a blank is given in quotes.
  virtual int RunExecutable(const char* exe, CString& lastOutput, const char* args);

  /// What the program of the last call returned, or 128 plus the number of the signal that it died
  /// by; -1 if none ran to its end.
  int GetExitCode() const { return m_nExitCode; }
  /// Why the program of the last call could not be started; no error if it was.
  const platform::Error& GetStartError() const { return m_startError; }

  /// Ends the program that runs, with its whole process group, from a thread other than the one
  /// inside `RunExecutable`. Nothing happens if none runs, or none has been started yet.
  void CancelProgram();

  /// Where a complete first line ends: the index of the last character of the run of line ends
  /// behind it, if another character follows that run. 0 if the line isn't complete, -2 for "" or
  /// null.
  static int GetEndOfLinePosition(const char* text);

  /// Bytes that the line logic is fed at a time, from 1 to 255; what is out of range counts as the
  /// nearest of these.
  static int m_nPipeOutputSize;

 protected:
  /// Starts of messages, loaded once.
  static CString CREATE_STDIN_PIPE_ERROR_MESSAGE;
  static CString CREATE_STDOUT_PIPE_ERROR_MESSAGE;
  static CString CREATE_PROCESS_ERROR_MESSAGE;
  static CString READ_PIPE_ERROR_MESSAGE;
  static void InitLocalStr();

  /// Calls the feedback procedure, if there is one, and returns its result.
  int Report(int code, const char* text) const;
  /// Where a secret stands in the command lines to come, in bytes: what the masking by marks
  /// doesn't cover there is masked too, and so is the secret wherever else it stands. A length of 0
  /// ends that.
  void HideInReport(int first, int length);

 private:
  struct Run;

  CString MaskedCommandLine(const CString& command_line) const;

  ConsoleCallback m_pCallback = nullptr;
  HANDLE m_hInputRead = kNoHandle;
  HANDLE m_hInputWrite = kNoHandle;
  std::atomic<HANDLE> m_hOutputRead = kNoHandle;
  HANDLE m_hOutputWrite = kNoHandle;
  CString m_strExecutable;
  CString m_strArguments;
  CString m_strCurrentDirectory;
  int m_nSecretFirst = 0;
  int m_nSecretLength = 0;
  char m_szPipeBuffer[256] = {};
  std::atomic<HANDLE> m_hProcess = kNoHandle;
  int m_nExitCode = -1;
  platform::Error m_startError;
  bool m_bTrimLeft = true;
};

}  // namespace dq
