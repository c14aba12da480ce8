#include "dqlib/output/console_child.h"

#include <utility>

namespace dq::detail {

ConsoleChild::~ConsoleChild() {
  for (const HANDLE handle : {output_, input_, process_}) processes_.Close(handle);
}

platform::Error ConsoleChild::Start(std::string_view command_line) {
  const auto output = processes_.CreatePipe();
  if (!output.ok()) return output.error;
  output_ = output.value.read_end;
  const auto input = processes_.CreatePipe();
  if (input.ok()) {
    input_ = input.value.write_end;
    platform::StartInfo info;
    info.command_line = command_line;
    info.standard_input = input.value.read_end;
    info.standard_output = output.value.write_end;
    info.standard_error = output.value.write_end;
    const auto started = processes_.Start(info);
    if (started.ok()) {
      process_ = started.value.process;
      process_id_ = started.value.process_id;
    }
    processes_.Close(input.value.read_end);
    // The child's end now ends the reading.
    processes_.Close(output.value.write_end);
    return started.error;
  }
  processes_.Close(output.value.write_end);
  return input.error;
}

std::string_view ConsoleChild::Read(std::span<char> buffer) {
  if (ended_) return {};
  // A pipe that can't be read has ended.
  const auto read = processes_.Read(output_, buffer);
  return {buffer.data(), read.ok() ? read.value : 0};
}

bool ConsoleChild::Finish() {
  // One that only has closed its output still reads, and works.
  if (!ended_) processes_.Wait(process_);
  process_id_ = kNoProcess;
  StopWriting();
  return !ended_;
}

void ConsoleChild::Write(std::string_view bytes) {
  const std::lock_guard lock(mutex_);
  if (writing_is_over_ || input_ends_) return;
  waiting_ += bytes;
  unwritten_ += bytes.size();
  changed_.notify_one();
}

void ConsoleChild::CloseInput() {
  const std::lock_guard lock(mutex_);
  input_ends_ = true;
  changed_.notify_one();
}

std::size_t ConsoleChild::GetUnwritten() const {
  const std::lock_guard lock(mutex_);
  return unwritten_;
}

void ConsoleChild::WriteWhatComes() {
  std::unique_lock lock(mutex_);
  for (bool reads = true; reads;) {
    changed_.wait(lock, [this] { return writing_is_over_ || input_ends_ || !waiting_.empty(); });
    if (writing_is_over_ || waiting_.empty()) break;
    const std::string bytes = std::exchange(waiting_, {});
    lock.unlock();
    reads = processes_.Write(input_, bytes).ok();
    lock.lock();
    unwritten_ -= bytes.size();
  }
  writing_is_over_ = true;
  waiting_.clear();
  unwritten_ = 0;
  processes_.Close(input_);
}

void ConsoleChild::StopWriting() {
  const std::lock_guard lock(mutex_);
  writing_is_over_ = true;
  changed_.notify_one();
  processes_.Interrupt(input_);
}

bool ConsoleChild::End() {
  ended_ = true;
  const bool ends = process_id_ == kNoProcess || processes_.Terminate(process_).ok();
  processes_.Interrupt(output_);
  StopWriting();
  return ends;
}

}  // namespace dq::detail
