// A console program that runs beside this one: what it writes is read, what it is to read waits
// until it does.

#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <span>
#include <string>
#include <string_view>

#include "dqlib/platform/processes.h"

namespace dq::detail {

/// One child with its pipes. Whoever has it started shares it with a thread that reads and one that
/// writes; nobody else ever waits here. Any thread, where nothing else is said.
class ConsoleChild {
 public:
  static constexpr DWORD kNoProcess = 0xFFFFFFFF;

  /// `processes` must outlive all threads.
  explicit ConsoleChild(platform::Processes& processes) : processes_(processes) {}
  ConsoleChild(const ConsoleChild&) = delete;
  ConsoleChild& operator=(const ConsoleChild&) = delete;
  /// Gives up what is left of pipes and process.
  ~ConsoleChild();

  /// Makes the pipes and starts the command line, once. Before the threads begin.
  platform::Error Start(std::string_view command_line);

  /// `kNoProcess` while no child lives.
  DWORD GetProcessId() const { return process_id_; }

  /// The next of what it writes, at most the whole of `buffer`; "" at the end, or once `End` was
  /// called. On the reading thread.
  std::string_view Read(std::span<char> buffer);
  /// Behind the last `Read`, on the reading thread: waits for the child's end, unless that was
  /// brought about by `End`, and has the writing thread end. False if it was brought about.
  bool Finish();

  /// What it is to read, behind what waits already. Dropped if it reads no more.
  void Write(std::string_view bytes);
  /// Closes its input behind what waits.
  void CloseInput();
  /// How many bytes wait to be read, those that the pipe holds not counted.
  std::size_t GetUnwritten() const;
  /// Writes what waits, and waits for more, until the input is closed or nobody reads it. The
  /// writing thread's whole work.
  void WriteWhatComes();

  /// Ends the child with its process group, and both threads' waiting. False if the system doesn't
  /// let it be ended.
  bool End();

 private:
  void StopWriting();

  platform::Processes& processes_;
  HANDLE output_ = kNoHandle;
  HANDLE input_ = kNoHandle;
  HANDLE process_ = kNoHandle;
  std::atomic<DWORD> process_id_ = kNoProcess;
  std::atomic<bool> ended_ = false;

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::string waiting_;
  /// `waiting_`, and what is being written.
  std::size_t unwritten_ = 0;
  bool input_ends_ = false;
  bool writing_is_over_ = false;
};

}  // namespace dq::detail
