// Forwards every call to real files, so that a test overrides just the one it breaks.

#pragma once

#include "dqlib/platform/platform.h"

namespace dq::test {

class ForwardingFiles : public platform::Files {
 public:
  explicit ForwardingFiles(Files& target = *platform::System().files) : target_(target) {}

  platform::Result<HANDLE> Open(std::string_view path,
                                const platform::OpenOptions& options) override {
    return target_.Open(path, options);
  }
  platform::Result<std::size_t> Read(HANDLE file, std::span<char> buffer) override {
    return target_.Read(file, buffer);
  }
  platform::Error Write(HANDLE file, std::string_view bytes) override {
    return target_.Write(file, bytes);
  }
  platform::Result<std::uint64_t> Seek(HANDLE file, std::int64_t offset,
                                       platform::SeekOrigin origin) override {
    return target_.Seek(file, offset, origin);
  }
  platform::Result<std::uint64_t> Length(HANDLE file) override { return target_.Length(file); }
  platform::Error SetLength(HANDLE file, std::uint64_t length) override {
    return target_.SetLength(file, length);
  }
  platform::Error Flush(HANDLE file) override { return target_.Flush(file); }
  platform::Error Close(HANDLE file) override { return target_.Close(file); }
  platform::Error ReadAll(std::string_view path, std::string& bytes) override {
    return target_.ReadAll(path, bytes);
  }
  platform::Error Replace(std::string_view path, std::string_view bytes, bool user_only) override {
    return target_.Replace(path, bytes, user_only);
  }
  platform::Result<platform::FileStatus> Status(std::string_view path) override {
    return target_.Status(path);
  }
  platform::Error SetAttributes(std::string_view path, DWORD attributes) override {
    return target_.SetAttributes(path, attributes);
  }
  platform::Error SetModified(std::string_view path, std::int64_t seconds) override {
    return target_.SetModified(path, seconds);
  }
  platform::Error Delete(std::string_view path) override { return target_.Delete(path); }
  platform::Error Rename(std::string_view from, std::string_view to) override {
    return target_.Rename(from, to);
  }
  platform::Error Copy(std::string_view from, std::string_view to, bool overwrite) override {
    return target_.Copy(from, to, overwrite);
  }
  platform::Error MakeDirectory(std::string_view path) override {
    return target_.MakeDirectory(path);
  }
  platform::Error RemoveDirectory(std::string_view path) override {
    return target_.RemoveDirectory(path);
  }
  platform::Result<std::vector<platform::FoundFile>> Find(std::string_view pattern) override {
    return target_.Find(pattern);
  }
  std::string CurrentDirectory() override { return target_.CurrentDirectory(); }
  platform::Error SetCurrentDirectory(std::string_view path) override {
    return target_.SetCurrentDirectory(path);
  }
  std::string TempDirectory() override { return target_.TempDirectory(); }
  platform::Result<std::string> MakeTempFile(std::string_view directory,
                                             std::string_view prefix) override {
    return target_.MakeTempFile(directory, prefix);
  }
  platform::Result<std::string> FullPath(std::string_view path) override {
    return target_.FullPath(path);
  }
  platform::Result<std::string> SearchPath(std::string_view name) override {
    return target_.SearchPath(name);
  }
  platform::Result<std::string> UniversalName(std::string_view path) override {
    return target_.UniversalName(path);
  }
  UINT KindOfDrive(std::string_view drive) override { return target_.KindOfDrive(drive); }
  platform::Result<platform::VolumeFacts> Volume(std::string_view path) override {
    return target_.Volume(path);
  }

 private:
  Files& target_;
};

}  // namespace dq::test
