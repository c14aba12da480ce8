// Forwards every call to real files, so that a test overrides just the one it breaks. In force
// while it lives.

#pragma once

#include "tests/support/doubles.h"

namespace dq::test {

struct ForwardingFiles : platform::Files {
  using View = std::string_view;

  // Each does what the target does.
#define DQ_FORWARDED(returned, Name, parameters, ...) \
  platform::returned Name parameters override { return target.Name(__VA_ARGS__); }
  DQ_FORWARDED(Result<HANDLE>, Open, (View path, const platform::OpenOptions& how), path, how)
  DQ_FORWARDED(Result<std::size_t>, Read, (HANDLE file, std::span<char> buffer), file, buffer)
  DQ_FORWARDED(Error, Write, (HANDLE file, View bytes), file, bytes)
  DQ_FORWARDED(Result<std::uint64_t>, Seek,
               (HANDLE file, std::int64_t offset, platform::SeekOrigin from), file, offset, from)
  DQ_FORWARDED(Result<std::uint64_t>, Length, (HANDLE file), file)
  DQ_FORWARDED(Error, SetLength, (HANDLE file, std::uint64_t length), file, length)
  DQ_FORWARDED(Error, Flush, (HANDLE file), file)
  DQ_FORWARDED(Error, Close, (HANDLE file), file)
  DQ_FORWARDED(Error, ReadAll, (View path, std::string& bytes), path, bytes)
  DQ_FORWARDED(Error, Replace, (View path, View bytes, bool user_only), path, bytes, user_only)
  DQ_FORWARDED(Error, ReplaceAndClose, (HANDLE file, View bytes), file, bytes)
  DQ_FORWARDED(Error, ReplaceByAndClose, (HANDLE file, HANDLE source), file, source)
  DQ_FORWARDED(Result<platform::FileStatus>, Status, (View path), path)
  DQ_FORWARDED(Error, SetAttributes, (View path, DWORD attributes), path, attributes)
  DQ_FORWARDED(Error, SetModified, (View path, std::int64_t seconds), path, seconds)
  DQ_FORWARDED(Error, Delete, (View path), path)
  DQ_FORWARDED(Error, Rename, (View from, View to), from, to)
  DQ_FORWARDED(Error, Copy, (View from, View to, bool overwrite), from, to, overwrite)
  DQ_FORWARDED(Error, MakeDirectory, (View path), path)
  DQ_FORWARDED(Error, RemoveDirectory, (View path), path)
  DQ_FORWARDED(Result<std::vector<platform::FoundFile>>, Find, (View pattern), pattern)
  DQ_FORWARDED(Error, SetCurrentDirectory, (View path), path)
  DQ_FORWARDED(Result<std::string>, MakeTempFile, (View directory, View prefix), directory, prefix)
  DQ_FORWARDED(Result<std::string>, FullPath, (View path), path)
  DQ_FORWARDED(Result<std::string>, SearchPath, (View name), name)
  DQ_FORWARDED(Result<std::string>, UniversalName, (View path), path)
  DQ_FORWARDED(Result<platform::VolumeFacts>, Volume, (View path), path)
#undef DQ_FORWARDED
  std::string CurrentDirectory() override { return target.CurrentDirectory(); }
  std::string TempDirectory() override { return target.TempDirectory(); }
  UINT KindOfDrive(View drive) override { return target.KindOfDrive(drive); }
  Files& target = *platform::System().files;
  platform::ScopedPlatform scope{With(&platform::Platform::files, this)};
};

}  // namespace dq::test
