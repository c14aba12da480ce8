// Child processes and the pipes that connect them.

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/platform/error.h"
#include "dqlib/platform/types.h"

namespace dq {

/// A pipe end or a process by number. A copy names the same thing; numbers are never used twice in
/// a process, so one that is out of date names nothing and is answered by an error.
using HANDLE = std::uint64_t;

/// No pipe end and no process.
inline constexpr HANDLE kNoHandle = 0;

namespace platform {

/// As a standard handle of a child: one that has nothing to read and drops what is written to it.
inline constexpr HANDLE kNullDevice = HANDLE{1} << 63;

/// Both ends of a pipe of the system's default size. Each end must be closed by itself.
struct Pipe {
  HANDLE read_end = kNoHandle;
  HANDLE write_end = kNoHandle;
};

/// What a child is started with. Its priority is this process's: more takes a privilege that users
/// lack on some systems, and would let a busy client slow down the tool that waits for it.
struct StartInfo {
  /// The program and its arguments as one text. Where the system wants single arguments: blanks and
  /// tabs separate, '...' and "..." group and vanish, a backslash is literal except before a quote,
  /// and nothing is expanded. The first one names the program, which is searched for along the
  /// user's path if it holds no separator, and from this process's directory otherwise.
  std::string command_line{};
  /// The child's working directory; empty for this process's.
  std::string directory{};
  /// Pipe ends that become the child's standard handles, whichever end they are, or `kNullDevice`;
  /// `kNoHandle` leaves the child this process's own. The child holds no other handle of this
  /// process.
  HANDLE standard_input = kNoHandle;
  HANDLE standard_output = kNoHandle;
  HANDLE standard_error = kNoHandle;
};

/// A running child.
struct StartedProcess {
  /// To be given to `Close`, after which the process can be neither waited for nor ended.
  HANDLE process = kNoHandle;
  DWORD process_id = 0;
};

/// The processes of the system. Any thread; one thread at a time may read from one pipe, and one
/// write to it.
class Processes {
 public:
  Processes() = default;
  Processes(const Processes&) = delete;
  Processes& operator=(const Processes&) = delete;
  virtual ~Processes();

  virtual Result<Pipe> CreatePipe() = 0;

  /// This process's own standard input as the read end of a pipe, and its standard output as the
  /// write end of one, so that waiting for them can be interrupted. To be closed as others; that
  /// leaves the streams themselves open. What is written doesn't pass the run-time's buffer.
  virtual Result<HANDLE> OpenStandardInput() = 0;
  virtual Result<HANDLE> OpenStandardOutput() = 0;

  /// Waits until there is something to read and fills at most the whole of `buffer`, which isn't
  /// empty; the result is the number of bytes. The end of the pipe, which comes when no process has
  /// its write end any more, is 0 bytes or `kBrokenPipe`; so is a read that was interrupted.
  virtual Result<std::size_t> Read(HANDLE read_end, std::span<char> buffer) = 0;

  /// Writes all bytes, waiting while the pipe is full. `kBrokenPipe` if nobody can read them, or
  /// if the write was interrupted; a part of them may have been written then.
  virtual Result<std::size_t> Write(HANDLE write_end, std::string_view bytes) = 0;

  /// Makes a read or a write that waits on this end, and each later one, end with `kBrokenPipe`,
  /// whoever still holds the other end. From any thread.
  virtual void Interrupt(HANDLE end) = 0;

  /// Starts a child in a session and process group of its own. The error is that of finding or
  /// running the program, or of its directory.
  virtual Result<StartedProcess> Start(const StartInfo& info) = 0;

  /// Waits until the process has ended and returns its exit code: what the program returned, or 128
  /// plus the number of the signal it died by. May be called again, and by several threads.
  virtual Result<int> Wait(HANDLE process) = 0;

  /// Ends the process at once, with every process of its group. From any thread; one that has ended
  /// already is no error.
  virtual Error Terminate(HANDLE process) = 0;

  /// Gives up a pipe end or a process, which goes on running. Once `Wait` has seen its end, or when
  /// it ends later, nothing of it is left in the system. `kNoHandle` and a number out of date are
  /// ignored.
  virtual void Close(HANDLE handle) = 0;

  /// A variable of the environment that children get; no value if it isn't set.
  virtual std::optional<std::string> EnvironmentVariable(const std::string& name) = 0;

  /// What ends a line in what programs of this system read from their standard input.
  virtual std::string_view LineEnd() = 0;
};

/// Cuts a command line into arguments by the rules of `StartInfo::command_line`. A quote without
/// its end groups to the end of the text.
void SplitCommandLine(std::string_view command_line, std::vector<std::string>& arguments);

/// An argument as it stands in a command line, so that `SplitCommandLine` gives it back, whatever
/// blanks, quotes and backslashes are in it. Its last character is whole.
std::string QuoteArgument(std::string_view argument);

}  // namespace platform
}  // namespace dq
