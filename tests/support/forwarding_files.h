// Forwards every call to real files, so that a test overrides just the one it breaks.

#pragma once

#include "tests/support/testing.h"

namespace dq::test {

class ForwardingFiles : public platform::Files {
 public:
  explicit ForwardingFiles(Files& target = *platform::System().files) : target_(target) {}

  // Each does what the target does.
#define DQ_FORWARDED(returned, Name, parameters, ...) \
  platform::returned Name parameters override { return target_.Name(__VA_ARGS__); }
  DQ_FORWARDED(Result<HANDLE>, Open, (std::string_view path, const platform::OpenOptions& options),
               path, options)
  DQ_FORWARDED(Result<std::size_t>, Read, (HANDLE file, std::span<char> buffer), file, buffer)
  DQ_FORWARDED(Error, Write, (HANDLE file, std::string_view bytes), file, bytes)
  DQ_FORWARDED(Result<std::uint64_t>, Seek,
               (HANDLE file, std::int64_t offset, platform::SeekOrigin origin), file, offset,
               origin)
  DQ_FORWARDED(Result<std::uint64_t>, Length, (HANDLE file), file)
  DQ_FORWARDED(Error, SetLength, (HANDLE file, std::uint64_t length), file, length)
  DQ_FORWARDED(Error, Flush, (HANDLE file), file)
  DQ_FORWARDED(Error, Close, (HANDLE file), file)
  DQ_FORWARDED(Error, ReadAll, (std::string_view path, std::string& bytes), path, bytes)
  DQ_FORWARDED(Error, Replace, (std::string_view path, std::string_view bytes, bool user_only),
               path, bytes, user_only)
  DQ_FORWARDED(Error, ReplaceAndClose, (HANDLE file, std::string_view bytes), file, bytes)
  DQ_FORWARDED(Result<platform::FileStatus>, Status, (std::string_view path), path)
  DQ_FORWARDED(Error, SetAttributes, (std::string_view path, DWORD attributes), path, attributes)
  DQ_FORWARDED(Error, SetModified, (std::string_view path, std::int64_t seconds), path, seconds)
  DQ_FORWARDED(Error, Delete, (std::string_view path), path)
  DQ_FORWARDED(Error, Rename, (std::string_view from, std::string_view to), from, to)
  DQ_FORWARDED(Error, Copy, (std::string_view from, std::string_view to, bool overwrite), from, to,
               overwrite)
  DQ_FORWARDED(Error, MakeDirectory, (std::string_view path), path)
  DQ_FORWARDED(Error, RemoveDirectory, (std::string_view path), path)
  DQ_FORWARDED(Result<std::vector<platform::FoundFile>>, Find, (std::string_view pattern), pattern)
  DQ_FORWARDED(Error, SetCurrentDirectory, (std::string_view path), path)
  DQ_FORWARDED(Result<std::string>, MakeTempFile,
               (std::string_view directory, std::string_view prefix), directory, prefix)
  DQ_FORWARDED(Result<std::string>, FullPath, (std::string_view path), path)
  DQ_FORWARDED(Result<std::string>, SearchPath, (std::string_view name), name)
  DQ_FORWARDED(Result<std::string>, UniversalName, (std::string_view path), path)
  DQ_FORWARDED(Result<platform::VolumeFacts>, Volume, (std::string_view path), path)
#undef DQ_FORWARDED
  std::string CurrentDirectory() override { return target_.CurrentDirectory(); }
  std::string TempDirectory() override { return target_.TempDirectory(); }
  UINT KindOfDrive(std::string_view drive) override { return target_.KindOfDrive(drive); }

 private:
  Files& target_;
};

}  // namespace dq::test
