#include "dqlib/platform/posix/registry_journal_file.h"

#include <atomic>
#include <bit>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>

#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

/// What is mapped; the system rounds it up to its pages.
constexpr std::size_t kMappedSize = kJournalHeaderSize;
constexpr mode_t kUserOnly = 0600;

}  // namespace

JournalFile::~JournalFile() { Close(); }

Error JournalFile::Open(const std::string& path, bool writable) {
  Close();
  const Result<int> fd = writable ? OpenFile(calls_, path, O_RDWR | O_CREAT, kUserOnly)
                                  : OpenFile(calls_, path, O_RDONLY);
  if (!fd.ok()) return fd.error;
  file_ = FileDescriptor(calls_, fd.value);
  writable_ = writable;
  return {};
}

void JournalFile::Close() {
  // Nothing depends on the outcome: the page is only read.
  if (page_ != nullptr) static_cast<void>(calls_.Unmap(page_, kMappedSize));
  page_ = nullptr;
  file_ = FileDescriptor();
  writable_ = false;
}

Error JournalFile::Lock() { return LockFile(calls_, file_.get(), writable_ ? LOCK_EX : LOCK_SH); }

Error JournalFile::Unlock() { return LockFile(calls_, file_.get(), LOCK_UN); }

Result<JournalFile::Status> JournalFile::GetStatus() const {
  struct stat status;
  if (calls_.StatusOf(file_.get(), &status) != 0) return ErrorFromErrno(errno);
  return Status{static_cast<std::uint64_t>(status.st_size), status.st_nlink == 0};
}

void JournalFile::MapGeneration() {
  if (page_ != nullptr) return;
  void* const page = calls_.Map(kMappedSize, PROT_READ, file_.get());
  if (page != MAP_FAILED) page_ = page;
}

std::uint64_t JournalFile::Generation() const {
  if (page_ == nullptr) {
    std::string header;
    const Error error = Read(0, kJournalHeaderSize, header);
    return error.ok() && header.size() == kJournalHeaderSize ? DecodeGeneration(header) : 0;
  }
  auto* const number =
      reinterpret_cast<std::uint64_t*>(static_cast<char*>(page_) + kJournalGenerationOffset);
  const std::uint64_t stored = std::atomic_ref(*number).load(std::memory_order_acquire);
  if constexpr (std::endian::native == std::endian::little) {
    return stored;
  } else {
    return DecodeGeneration({static_cast<const char*>(page_), kJournalHeaderSize});
  }
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

Error JournalFile::Truncate(std::uint64_t size) {
  int result = calls_.Truncate(file_.get(), static_cast<off_t>(size));
  while (result != 0 && errno == EINTR) {
    result = calls_.Truncate(file_.get(), static_cast<off_t>(size));
  }
  return result == 0 ? Error{} : ErrorFromErrno(errno);
}

Error JournalFile::Sync() { return SyncFile(calls_, file_.get()); }

}  // namespace dq::platform::posix
