// Forwards every call to real processes, so that a test overrides just the one it breaks.

#pragma once

#include "dqlib/platform/platform.h"

namespace dq::test {

class ForwardingProcesses : public platform::Processes {
 public:
  explicit ForwardingProcesses(Processes& target = *platform::System().processes)
      : target_(target) {}

  platform::Result<platform::Pipe> CreatePipe() override { return target_.CreatePipe(); }
  platform::Result<std::size_t> Read(HANDLE read_end, std::span<char> buffer) override {
    return target_.Read(read_end, buffer);
  }
  platform::Result<std::size_t> Write(HANDLE write_end, std::string_view bytes) override {
    return target_.Write(write_end, bytes);
  }
  void InterruptRead(HANDLE read_end) override { target_.InterruptRead(read_end); }
  platform::Result<platform::StartedProcess> Start(const platform::StartInfo& info) override {
    return target_.Start(info);
  }
  platform::Result<int> Wait(HANDLE process) override { return target_.Wait(process); }
  platform::Error Terminate(HANDLE process) override { return target_.Terminate(process); }
  void Close(HANDLE handle) override { target_.Close(handle); }

 private:
  Processes& target_;
};

}  // namespace dq::test
