// Files and directories.

#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/platform/error.h"
#include "dqlib/platform/processes.h"
#include "dqlib/platform/types.h"

namespace dq {

/// Attribute bits of files.
enum FileAttribute : DWORD {
  FILE_READ_ONLY = 0x01,  ///< On POSIX, one that its owner may not write.
  FILE_HIDDEN = 0x02,     ///< On POSIX, a name that begins with a dot.
  FILE_SYSTEM = 0x04,     ///< On POSIX, what is neither a file nor a directory: devices, pipes.
  FILE_DIRECTORY = 0x10,
  FILE_ARCHIVE = 0x20,  ///< Every ordinary file.
};

/// Kinds of drives.
enum DriveType : UINT {
  DRIVE_KIND_UNKNOWN = 0,
  DRIVE_KIND_NO_ROOT = 1,
  DRIVE_KIND_REMOVABLE = 2,
  DRIVE_KIND_FIXED = 3,
  DRIVE_KIND_REMOTE = 4,
};

namespace platform {

/// How a file is opened.
struct OpenOptions {
  bool read = true;
  bool write = false;
  /// Makes the file if it doesn't exist.
  bool create = false;
  /// Empties a file that exists.
  bool truncate = false;
  /// Every write goes to the end of the file as it is then, in one step that no other writer comes
  /// between; for writing only. Of a write that fails nothing stays, but where another writer has
  /// added to the file meanwhile. Several threads may write at once.
  bool append = false;
  /// Fails with `kBusy` while someone else has the file open for writing, and keeps others from
  /// opening it for writing; `deny_read` asks for it alone and keeps them from opening it at all.
  /// That a file is renamed, replaced or deleted meanwhile, and what programs that don't go through
  /// this interface do, is not prevented.
  bool deny_write = false;
  bool deny_read = false;
  /// Only the user may read and write a file that is made: for secrets and settings.
  bool user_only = false;
  /// For who reads a file and puts a new one in its place by `ReplaceAndClose`, with `write` and
  /// what keeps others out meanwhile. A file that is made is removed again by `Close`.
  bool replace = false;
  /// How many milliseconds to wait for others that hold the file before it is `kBusy`.
  DWORD patience = 0;
};

enum class SeekOrigin { kBegin, kCurrent, kEnd };

/// What is known of a file or directory.
struct FileStatus {
  std::uint64_t size = 0;
  DWORD attributes = 0;
  /// Seconds since 1970-01-01 UTC.
  std::int64_t modified = 0;
  std::int64_t accessed = 0;
  std::int64_t changed = 0;
};

/// One hit of a search.
struct FoundFile {
  /// Without directory.
  std::string name;
  FileStatus status;
};

/// Facts about the volume that a path lies on.
struct VolumeFacts {
  /// "" if it has none.
  std::string label;
  DWORD serial_number = 0;
  std::string file_system;
  std::uint64_t bytes_total = 0;
  std::uint64_t bytes_free = 0;
  /// The most bytes of a file's name; 12 on a volume of names of eight and three.
  DWORD longest_name = 0;
};

/// The file system. Paths may use both separators; on POSIX a path with a drive or of the network
/// is not found. A path is at most 4,095 bytes and holds no zero, else `kInvalidArgument`. A
/// directory where a file is asked for is `kAccessDenied`, and so is writing to a file that is
/// read-only, also for users whom the system would let. Nothing is written by a link that someone
/// who is neither the user nor the directory's owner has put into a directory for everybody: that
/// too is `kAccessDenied`. Any thread; one thread at a time may use one open file.
class Files {
 public:
  Files() = default;
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;
  virtual ~Files();

  /// Open files, by handle.
  virtual Result<HANDLE> Open(std::string_view path, const OpenOptions& options) = 0;
  /// Reads at most the whole of `buffer`, 0 bytes at the end of the file.
  virtual Result<std::size_t> Read(HANDLE file, std::span<char> buffer) = 0;
  /// Writes all bytes.
  virtual Error Write(HANDLE file, std::string_view bytes) = 0;
  /// The same, and the position behind the bytes: in a file open for appending, its length right
  /// after this write. 0 for what has no positions, as a pipe.
  virtual Result<std::uint64_t> WriteAndTell(HANDLE file, std::string_view bytes);
  /// The new position. A position before the file's begin is `kInvalidArgument`.
  virtual Result<std::uint64_t> Seek(HANDLE file, std::int64_t offset, SeekOrigin origin) = 0;
  virtual Result<std::uint64_t> Length(HANDLE file) = 0;
  virtual Error SetLength(HANDLE file, std::uint64_t length) = 0;
  /// Puts what was written on the disk.
  virtual Error Flush(HANDLE file) = 0;
  /// The error is that of a write that the system put off. The handle is closed in any case.
  virtual Error Close(HANDLE file) = 0;

  /// Whole files. `ReadAll` replaces `bytes`, by "" if it fails; a file of 2 GiB or more is
  /// `kNoSpace`. `Replace` puts a file with these bytes in the place
  /// of `path`, so that at any moment, also after a crash, either the old or the new one is there
  /// whole; it keeps the permissions of the old one, and a link stays a link.
  virtual Error ReadAll(std::string_view path, std::string& bytes) = 0;
  virtual Error Replace(std::string_view path, std::string_view bytes, bool user_only) = 0;
  /// The same in the place of a file that was opened with `replace`, which is closed in any case:
  /// so nobody who keeps to share modes changes it between reading and replacing. Owner and
  /// permissions stay. If it fails the old file is there, or none if opening has made it; `kBusy`
  /// if somebody else has put another file in its place. What is no ordinary file is written to.
  virtual Error ReplaceAndClose(HANDLE file, std::string_view bytes) = 0;
  /// The same with all bytes of another open file, which stays open.
  virtual Error ReplaceByAndClose(HANDLE file, HANDLE source) = 0;

  virtual Result<FileStatus> Status(std::string_view path) = 0;
  /// Only `FILE_READ_ONLY` can be changed; other bits are ignored.
  virtual Error SetAttributes(std::string_view path, DWORD attributes) = 0;
  virtual Error SetModified(std::string_view path, std::int64_t seconds) = 0;
  /// `kAccessDenied` for a file that is read-only.
  virtual Error Delete(std::string_view path) = 0;
  /// `kAlreadyExists` if `to` is there and isn't `from`. A file may go to another volume.
  virtual Error Rename(std::string_view from, std::string_view to) = 0;
  /// `overwrite` false: `kAlreadyExists` if `to` is there. The copy is whole or not there, and has
  /// the source's permissions and time. A file over itself is `kInvalidArgument`.
  virtual Error Copy(std::string_view from, std::string_view to, bool overwrite) = 0;
  virtual Error MakeDirectory(std::string_view path) = 0;
  /// Only an empty one.
  virtual Error RemoveDirectory(std::string_view path) = 0;

  /// Entries of a directory whose names match the last part of `pattern` by `MatchesPattern`. "."
  /// and ".." are among them where the pattern matches. `kNotFound` if nothing matches. Sorted by
  /// name. An entry whose name holds a separator is left out: on POSIX a name may hold `\`, and no
  /// path reaches that entry.
  virtual Result<std::vector<FoundFile>> Find(std::string_view pattern) = 0;

  virtual std::string CurrentDirectory() = 0;
  virtual Error SetCurrentDirectory(std::string_view path) = 0;
  /// With a separator at its end.
  virtual std::string TempDirectory() = 0;
  /// Makes an empty file `<directory>\<first 3 bytes of prefix><number of 16 bits in hex>.tmp` that
  /// didn't exist, for the user only, and returns its path. The directory must exist, and the
  /// prefix hold no separator.
  virtual Result<std::string> MakeTempFile(std::string_view directory, std::string_view prefix) = 0;
  /// `platform::FullPath` below the current directory; the file need not exist.
  virtual Result<std::string> FullPath(std::string_view path) = 0;
  /// The full path of a file that is searched for in the program's directory, the current directory
  /// and along the user's path; a name with a separator only below the current directory.
  virtual Result<std::string> SearchPath(std::string_view name) = 0;
  /// The path `\\server\share\...` that other machines of the network know a file by;
  /// `kUnsupported` for one that doesn't lie on a share of another machine.
  virtual Result<std::string> UniversalName(std::string_view path) = 0;
  /// The kind of a drive, which is given as `SplitPath` cuts it off. "" is `DRIVE_KIND_NO_ROOT`, so
  /// that the drive of a network path counts as no local one. On POSIX, where there are no drives,
  /// one with a letter counts as fixed; for a path in the platform's own form, which has no drive,
  /// the path itself may be asked for, and is answered by the volume it lies on.
  virtual UINT KindOfDrive(std::string_view drive) = 0;
  virtual Result<VolumeFacts> Volume(std::string_view path) = 0;
};

}  // namespace platform
}  // namespace dq
