#include "dqlib/output/console_program.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <span>
#include <string_view>

#include "dqlib/core/dq_string.h"
#include "dqlib/frame/system_error_msg.h"
#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/output/line_cutter.h"
#include "dqlib/platform/platform.h"
#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

/// Bytes that the system is asked for at a time: all that a pipe holds.
constexpr std::size_t kReadSize = 64 * 1024;

CString SystemMessage(const CString& start, const platform::Error& error) {
  return start + RetrieveOSErrorMessage(error.code);
}

}  // namespace

int CDQConsoleProgram::m_nPipeOutputSize = 255;

CString CDQConsoleProgram::CREATE_STDIN_PIPE_ERROR_MESSAGE;
CString CDQConsoleProgram::CREATE_STDOUT_PIPE_ERROR_MESSAGE;
CString CDQConsoleProgram::CREATE_PROCESS_ERROR_MESSAGE;
CString CDQConsoleProgram::READ_PIPE_ERROR_MESSAGE;

/// One run, with all that it holds of the system until its end.
struct CDQConsoleProgram::Run {
  explicit Run(CDQConsoleProgram& owner) : program(owner) {}
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;
  ~Run();

  /// Each reports its failure and returns false then.
  bool CreatePipes();
  bool Start(const CString& command_line);
  bool ReadOutput();

  void CloseEnd(HANDLE& handle);

  CDQConsoleProgram& program;
  platform::Processes& processes = *platform::Current().processes;
  HANDLE read_end = kNoHandle;
  detail::LineCutter lines{program.m_bTrimLeft};
};

CDQConsoleProgram::Run::~Run() {
  processes.Close(program.m_hProcess.exchange(kNoHandle));
  program.m_hOutputRead = kNoHandle;
  CloseEnd(read_end);
  CloseEnd(program.m_hOutputWrite);
  CloseEnd(program.m_hInputRead);
  CloseEnd(program.m_hInputWrite);
}

void CDQConsoleProgram::Run::CloseEnd(HANDLE& handle) {
  processes.Close(handle);
  handle = kNoHandle;
}

bool CDQConsoleProgram::Run::CreatePipes() {
  const auto output = processes.CreatePipe();
  if (!output.ok()) {
    program.Report(CONSOLE_PIPE_FAILED,
                   SystemMessage(CREATE_STDOUT_PIPE_ERROR_MESSAGE, output.error));
    return false;
  }
  read_end = output.value.read_end;
  program.m_hOutputWrite = output.value.write_end;
  const auto input = processes.CreatePipe();
  if (!input.ok()) {
    program.Report(CONSOLE_PIPE_FAILED,
                   SystemMessage(CREATE_STDIN_PIPE_ERROR_MESSAGE, input.error));
    return false;
  }
  program.m_hInputRead = input.value.read_end;
  program.m_hInputWrite = input.value.write_end;
  return true;
}

bool CDQConsoleProgram::Run::Start(const CString& command_line) {
  platform::StartInfo info;
  info.command_line = command_line.View();
  info.directory = program.m_strCurrentDirectory.View();
  // The end for writing, so that a child that reads fails at once instead of waiting for input that
  // nobody gives.
  info.standard_input = program.m_hInputWrite;
  info.standard_output = program.m_hOutputWrite;
  info.standard_error = program.m_hOutputWrite;
  const auto started = processes.Start(info);
  if (!started.ok()) {
    program.m_startError = started.error;
    program.Report(CONSOLE_START_FAILED,
                   SystemMessage(CREATE_PROCESS_ERROR_MESSAGE, started.error));
    return false;
  }
  // The process is shown last: a cancel that sees it finds the pipe to wake too, and one that comes
  // before has nothing to end.
  program.m_hOutputRead = read_end;
  program.m_hProcess = started.value.process;
  // The child's end now ends the reading.
  CloseEnd(program.m_hOutputWrite);
  return true;
}

bool CDQConsoleProgram::Run::ReadOutput() {
  const auto buffer = std::make_unique<char[]>(kReadSize);
  for (;;) {
    const auto read = processes.Read(read_end, {buffer.get(), kReadSize});
    if (read.error.kind == platform::ErrorKind::kBrokenPipe) return true;
    if (!read.ok()) {
      program.Report(CONSOLE_READ_FAILED, SystemMessage(READ_PIPE_ERROR_MESSAGE, read.error));
      return false;
    }
    if (read.value == 0) return true;
    for (std::string_view rest(buffer.get(), read.value); !rest.empty();) {
      char(&piece)[256] = program.m_szPipeBuffer;
      const int room = std::clamp(m_nPipeOutputSize, 1, static_cast<int>(std::size(piece)) - 1);
      const std::size_t size = rest.copy(piece, static_cast<std::size_t>(room));
      piece[size] = '\0';
      rest.remove_prefix(size);
      lines.Feed(piece);
      std::string_view line;
      while (lines.Next(line)) program.Report(CONSOLE_LINE, line.data());
    }
  }
}

CDQConsoleProgram::CDQConsoleProgram() { InitLocalStr(); }

CDQConsoleProgram::CDQConsoleProgram(const CDQConsoleProgram& other) { *this = other; }

CDQConsoleProgram& CDQConsoleProgram::operator=(const CDQConsoleProgram& other) {
  m_pCallback = other.m_pCallback;
  m_hInputRead = other.m_hInputRead;
  m_hInputWrite = other.m_hInputWrite;
  m_hOutputRead = other.m_hOutputRead.load();
  m_hOutputWrite = other.m_hOutputWrite;
  m_strExecutable = other.m_strExecutable;
  m_strArguments = other.m_strArguments;
  m_strCurrentDirectory = other.m_strCurrentDirectory;
  m_nSecretFirst = other.m_nSecretFirst;
  m_nSecretLength = other.m_nSecretLength;
  if (this != &other) std::memcpy(m_szPipeBuffer, other.m_szPipeBuffer, sizeof m_szPipeBuffer);
  m_hProcess = other.m_hProcess.load();
  m_nExitCode = other.m_nExitCode;
  m_startError = other.m_startError;
  m_bTrimLeft = other.m_bTrimLeft;
  return *this;
}

CDQConsoleProgram::~CDQConsoleProgram() = default;

void CDQConsoleProgram::InitLocalStr() {
  if (!READ_PIPE_ERROR_MESSAGE.IsEmpty()) return;
  CREATE_STDIN_PIPE_ERROR_MESSAGE.LoadString(IDS_CREATE_STDIN_PIPE_FAILED);
  CREATE_STDOUT_PIPE_ERROR_MESSAGE.LoadString(IDS_CREATE_STDOUT_PIPE_FAILED);
  CREATE_PROCESS_ERROR_MESSAGE.LoadString(IDS_CREATE_PROCESS_FAILED);
  READ_PIPE_ERROR_MESSAGE.LoadString(IDS_READ_PIPE_FAILED);
}

int CDQConsoleProgram::Report(int code, const char* text) const {
  return m_pCallback == nullptr ? 0 : m_pCallback(code, text);
}

void CDQConsoleProgram::HideInReport(int first, int length) {
  m_nSecretFirst = first;
  m_nSecretLength = length;
}

CString CDQConsoleProgram::MaskedCommandLine(const CString& command_line) const {
  CDQString masked(command_line);
  // What stands between the marks, if they ask for that.
  struct Marked {
    int first;
    int end;
  };
  const auto find_marked = [&masked] {
    const Marked marked{masked.Find('/') + 1, masked.Find('@')};
    // A line without the word passes the test too: it asks for "user/password@server" all the same.
    const bool holds = masked.Find("USERID") != 0 && marked.first > 0 && marked.end > marked.first;
    return holds ? marked : Marked{0, 0};
  };
  Marked marked = find_marked();
  const CString secret = masked.Mid(m_nSecretFirst, m_nSecretLength);
  if (m_nSecretFirst < marked.first || m_nSecretFirst + m_nSecretLength > marked.end) {
    if (m_nSecretLength > 0) {
      masked = masked.Left(m_nSecretFirst) + "****" + masked.Mid(m_nSecretFirst + m_nSecretLength);
      marked = find_marked();
    }
  }
  masked.FindReplace(masked.Mid(marked.first, marked.end - marked.first), "****");
  // Wherever else it stands; asterisks in the place of asterisks would only tell how many.
  if (secret.SpanIncluding("*") != secret) masked.FindReplace(secret, "****");
  const int option = masked.Find("-P");
  if (option >= 0) {
    for (int i = option + 2; i < masked.GetLength(); ++i) {
      if (multi_byte::IsSpace(static_cast<unsigned char>(masked[i]))) break;
      masked.SetAt(i, '*');
    }
  }
  return masked;
}

int CDQConsoleProgram::RunExecutable(const char* exe, CString& lastOutput, const char* args) {
  if (exe != nullptr) m_strExecutable = exe;
  if (args != nullptr) m_strArguments = args;
  m_nExitCode = -1;
  m_startError = {};
  if (m_strExecutable.IsEmpty()) {
    Report(CONSOLE_NO_EXECUTABLE, nullptr);
    return 0;
  }
  Run run(*this);
  if (!run.CreatePipes()) return 0;
  const CString command_line = m_strExecutable + ' ' + m_strArguments;
  Report(CONSOLE_LINE, args != nullptr ? MaskedCommandLine(command_line) : command_line);
  if (!run.Start(command_line)) return 0;
  if (!run.ReadOutput()) return 0;
  // A program that a cancel could not end must not wait for a reader that has left.
  m_hOutputRead = kNoHandle;
  run.CloseEnd(run.read_end);
  // What the program returned, or died by, is no part of the result.
  const auto ended = run.processes.Wait(m_hProcess);
  if (ended.ok()) m_nExitCode = ended.value;
  const std::string_view rest = run.lines.Rest();
  if (!rest.empty()) {
    Report(CONSOLE_LINE, rest.data());
    lastOutput = rest;
  }
  return 1;
}

void CDQConsoleProgram::CancelProgram() {
  platform::Processes& processes = *platform::Current().processes;
  const HANDLE process = m_hProcess;
  if (process == kNoHandle) return;
  // Nothing to tell if it fails: a program that can't be ended, or has gone, is read no more.
  processes.Terminate(process);
  processes.Interrupt(m_hOutputRead);
}

int CDQConsoleProgram::GetEndOfLinePosition(const char* text) {
  if (text == nullptr || *text == '\0') return -2;
  const std::size_t run = std::strcspn(text, detail::kLineEnds);
  const std::size_t next = run + std::strspn(text + run, detail::kLineEnds);
  return text[next] == '\0' ? 0 : static_cast<int>(next) - 1;
}

}  // namespace dq
