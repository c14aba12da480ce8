#include "dqlib/platform/posix/registry_journal_file.h"

#include <atomic>
#include <bit>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <utility>

#include "dqlib/platform/posix/file_replacement.h"
#include "dqlib/platform/posix/registry_page.h"
#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

/// What is mapped; the system rounds it up to its pages.
constexpr std::size_t kMappedSize = kJournalHeaderSize;
static_assert(kMappedSize <= kMaxGuardedSize);

}  // namespace

Result<struct stat> OpenStoreFile(SystemCalls& calls, const std::string& path, int flags,
                                  FileDescriptor& file) {
  // A pipe in the place of the file is neither waited for nor read.
  const Result<int> fd = OpenFile(calls, path, flags | O_NONBLOCK | O_NOCTTY, kUserOnly);
  if (!fd.ok()) return fd.error;
  FileDescriptor opened(calls, fd.value);
  struct stat status;
  if (calls.StatusOf(opened.get(), &status) != 0) return ErrorFromErrno(errno);
  if (!S_ISREG(status.st_mode)) return ErrorFromErrno(EINVAL);
  if (static_cast<std::uint64_t>(status.st_size) > kMaxStoreFile) return ErrorFromErrno(EFBIG);
  // What others may read or write without need. Another owner's file can't be changed.
  if ((status.st_mode & 07177) != 0) {
    static_cast<void>(calls.ChangeMode(opened.get(), status.st_mode & kUserOnly));
  }
  file = std::move(opened);
  return status;
}

JournalFile::~JournalFile() { Close(); }

Error JournalFile::Open(const std::string& path, bool writable) {
  Close();
  const Result<struct stat> opened =
      OpenStoreFile(calls_, path, writable ? O_RDWR : O_RDONLY, file_);
  if (!opened.ok()) return opened.error;
  path_ = path;
  writable_ = writable;
  return {};
}

Error JournalFile::Make(const std::string& path) {
  // Several may make it at once. Who finds it gone again each time meets a link to nowhere, which
  // isn't followed.
  constexpr int kAttempts = 10;
  Error error;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    error = Open(path, true);
    if (error.code != ENOENT) return error;
    error = MakeEmptyFile(calls_, path);
    if (!error.ok() && error.kind != ErrorKind::kAlreadyExists) return error;
  }
  return error.ok() ? Open(path, true) : error;
}

void JournalFile::MoveTo(JournalFile& other) {
  other.Close();
  UnmapGeneration();
  std::swap(other.file_, file_);
  std::swap(other.path_, path_);
  std::swap(other.writable_, writable_);
}

void JournalFile::Close() {
  UnmapGeneration();
  file_ = FileDescriptor();
  writable_ = false;
}

Error JournalFile::Lock(std::chrono::nanoseconds deadline) {
  return patience_.Lock(file_.get(), writable_ ? LOCK_EX : LOCK_SH, deadline);
}

Error JournalFile::Unlock() { return LockFile(calls_, file_.get(), LOCK_UN, {}); }

Result<JournalFile::Status> JournalFile::GetStatus() const {
  struct stat status;
  struct stat there;
  if (calls_.StatusOf(file_.get(), &status) != 0) return ErrorFromErrno(errno);
  bool displaced = status.st_nlink == 0;
  if (!displaced) {
    const bool found = calls_.Status(path_.c_str(), &there) == 0;
    if (!found && errno != ENOENT) return ErrorFromErrno(errno);
    displaced = !found || there.st_dev != status.st_dev || there.st_ino != status.st_ino;
  }
  return Status{static_cast<std::uint64_t>(status.st_size), displaced};
}

Error JournalFile::SetTakenOver(std::uint64_t size) {
  const std::uint64_t generation = Generation();
  const Error error = Write(kJournalTakenOverOffset, EncodeGeneration(size));
  // Those who only read look at nothing else.
  return error.ok() ? SetGeneration(generation + 1) : error;
}

Result<bool> JournalFile::IsTakenOver(std::uint64_t size) const {
  std::string header;
  if (const Error error = Read(0, kJournalHeaderSize, header); !error.ok()) return error;
  return header.size() == kJournalHeaderSize && posix::IsTakenOver(header, size);
}

void JournalFile::MapGeneration() {
  if (page_ != nullptr && MappedGeneration() != 0) return;
  // A page that was replaced by zeros stays so, also when the file has grown again.
  UnmapGeneration();
  void* const page = calls_.Map(kMappedSize, PROT_READ, file_.get());
  if (page == MAP_FAILED) return;
  if (GuardPage(page)) {
    page_ = page;
  } else {
    static_cast<void>(calls_.Unmap(page, kMappedSize));
  }
}

void JournalFile::UnmapGeneration() {
  if (page_ == nullptr) return;
  UnguardPage(page_);
  // Nothing depends on the outcome: the page is only read.
  static_cast<void>(calls_.Unmap(page_, kMappedSize));
  page_ = nullptr;
}

std::uint64_t JournalFile::MappedGeneration() const {
  auto* const number =
      reinterpret_cast<std::uint64_t*>(static_cast<char*>(page_) + kJournalGenerationOffset);
  const std::uint64_t stored = std::atomic_ref(*number).load(std::memory_order_acquire);
  if constexpr (std::endian::native == std::endian::little) {
    return stored;
  } else {
    return DecodeGeneration({static_cast<const char*>(page_), kJournalHeaderSize});
  }
}

std::uint64_t JournalFile::Generation() const {
  if (page_ != nullptr) {
    if (const std::uint64_t generation = MappedGeneration(); generation != 0) return generation;
  }
  std::string header;
  const Error error = Read(0, kJournalHeaderSize, header);
  return error.ok() && header.size() == kJournalHeaderSize ? DecodeGeneration(header) : 0;
}

Error JournalFile::SetGeneration(std::uint64_t generation) {
  // A write and not a store into the mapped page, because a store that the file system can't take,
  // as on a full disk, ends the process.
  return Write(kJournalGenerationOffset, EncodeGeneration(generation));
}

Error JournalFile::Read(std::uint64_t place, std::uint64_t size, std::string& bytes) const {
  return ReadFullyAt(calls_, file_.get(), size, static_cast<off_t>(place), bytes);
}

Error JournalFile::Write(std::uint64_t place, std::string_view bytes) {
  return WriteFullyAt(calls_, file_.get(), bytes, static_cast<off_t>(place));
}

void JournalFile::Truncate(std::uint64_t size) {
  while (calls_.Truncate(file_.get(), static_cast<off_t>(size)) != 0 && errno == EINTR) {
  }
}

Error JournalFile::Sync() { return SyncFile(calls_, file_.get()); }

}  // namespace dq::platform::posix
