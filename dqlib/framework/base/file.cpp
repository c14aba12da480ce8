#include "dqlib/framework/base/file.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "dqlib/platform/paths.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

constexpr UINT kAccessMask = 0x0003;
constexpr UINT kShareMask = 0x0070;

platform::Files& Files() { return *platform::Current().files; }

void ThrowIfFailed(const platform::Error& error, const char* path) {
  if (error.ok()) return;
  throw CFileException(CFileException::CauseOf(error), static_cast<LONG>(error.code), path);
}

template <typename T>
T ValueOrThrow(platform::Result<T> result, const char* path) {
  ThrowIfFailed(result.error, path);
  return std::move(result.value);
}

platform::OpenOptions OptionsFor(UINT flags) {
  platform::OpenOptions options;
  const UINT access = flags & kAccessMask;
  const UINT share = flags & kShareMask;
  options.read = access != CFile::modeWrite;
  options.create = (flags & CFile::modeCreate) != 0;
  options.truncate = options.create && (flags & CFile::modeNoTruncate) == 0;
  // A file that is emptied is written, whatever it is opened for.
  options.write = access != CFile::modeRead || options.truncate;
  options.append = (flags & CFile::modeAppend) != 0;
  options.deny_write = share == CFile::shareExclusive || share == CFile::shareDenyWrite;
  options.deny_read = share == CFile::shareExclusive;
  constexpr DWORD kPatience = 20'000;
  if ((flags & CFile::shareWait) != 0) options.patience = kPatience;
  return options;
}

CFileStatus ToStatus(std::string_view path, const platform::FileStatus& found) {
  CFileStatus status;
  status.m_mtime = found.modified;
  status.m_atime = found.accessed;
  status.m_ctime = found.changed;
  status.m_size = found.size;
  status.m_attribute = found.attributes;
  status.m_szFullName = Files().FullPath(path).value;
  return status;
}

}  // namespace

IMPLEMENT_DYNAMIC(CFile, CObject)
IMPLEMENT_DYNAMIC(CReplacingFile, CFile)
IMPLEMENT_DYNAMIC(CStdioFile, CFile)
IMPLEMENT_DYNAMIC(CMemFile, CFile)

CFile::CFile(const char* path, UINT flags) {
  CFileException error;
  if (!CFile::Open(path, flags, &error)) throw error;
}

CFile::~CFile() {
  // Nobody is left to be told of a write that fails this late; who cares calls `Close` before.
  Files().Close(m_hFile);
}

BOOL CFile::Open(const char* path, UINT flags, CFileException* error) {
  return OpenAs(path, OptionsFor(flags), error);
}

BOOL CFile::OpenAs(const char* path, const platform::OpenOptions& options, CFileException* error) {
  // The path may be a part of the former name.
  m_strFileName = CString(path);
  const auto opened = Files().Open(m_strFileName.View(), options);
  if (!opened.ok()) {
    if (error != nullptr) {
      *error = CFileException(CFileException::CauseOf(opened.error),
                              static_cast<LONG>(opened.error.code), m_strFileName);
    }
    return 0;
  }
  m_hFile = opened.value;
  return 1;
}

UINT CFile::Read(void* buffer, UINT count) {
  UINT total = 0;
  while (total < count) {
    const std::span<char> rest(static_cast<char*>(buffer) + total, count - total);
    const auto read = ValueOrThrow(Files().Read(m_hFile, rest), m_strFileName);
    if (read == 0) break;
    total += static_cast<UINT>(read);
  }
  return total;
}

void CFile::Write(const void* buffer, UINT count) {
  ThrowIfFailed(Files().Write(m_hFile, {static_cast<const char*>(buffer), count}), m_strFileName);
}

std::int64_t CFile::Seek(std::int64_t offset, UINT from) {
  const auto sought =
      Files().Seek(m_hFile, offset, static_cast<platform::SeekOrigin>(std::min<UINT>(from, end)));
  if (sought.error.kind == platform::ErrorKind::kInvalidArgument) {
    throw CFileException(CFileException::badSeek, static_cast<LONG>(sought.error.code),
                         m_strFileName);
  }
  ThrowIfFailed(sought.error, m_strFileName);
  return static_cast<std::int64_t>(sought.value);
}

std::int64_t CFile::GetPosition() const {
  return static_cast<std::int64_t>(
      ValueOrThrow(Files().Seek(m_hFile, 0, platform::SeekOrigin::kCurrent), m_strFileName));
}

std::int64_t CFile::GetLength() const {
  return static_cast<std::int64_t>(ValueOrThrow(Files().Length(m_hFile), m_strFileName));
}

void CFile::SetLength(std::int64_t length) {
  Seek(length, begin);
  ThrowIfFailed(Files().SetLength(m_hFile, static_cast<std::uint64_t>(length)), m_strFileName);
}

void CFile::Flush() { ThrowIfFailed(Files().Flush(m_hFile), m_strFileName); }

void CFile::Close() {
  const HANDLE file = std::exchange(m_hFile, kNoHandle);
  if (file != kNoHandle) ThrowIfFailed(Files().Close(file), m_strFileName);
}

void CFile::Abort() {
  // The caller gives the file up; what could not be written is lost with its knowledge.
  Files().Close(std::exchange(m_hFile, kNoHandle));
}

CString CFile::GetFileName() const {
  const std::string_view path = m_strFileName.View();
  const std::size_t separator = platform::FindLastSeparator(path);
  return CString(separator == std::string_view::npos ? path : path.substr(separator + 1));
}

BOOL CFile::GetStatus(CFileStatus& status) const { return GetStatus(m_strFileName, status); }

BOOL CFile::GetStatus(const char* path, CFileStatus& status) {
  const std::string_view name = path == nullptr ? "" : path;
  const auto found = Files().Status(name);
  if (!found.ok()) return 0;
  status = ToStatus(name, found.value);
  return 1;
}

void CFile::SetStatus(const char* path, const CFileStatus& status) {
  // A read-only file's time can't be changed everywhere, so a file becomes read-only last.
  const bool read_only = (status.m_attribute & FILE_READ_ONLY) != 0;
  if (!read_only) ThrowIfFailed(Files().SetAttributes(path, status.m_attribute), path);
  if (status.m_mtime != 0) ThrowIfFailed(Files().SetModified(path, status.m_mtime), path);
  if (read_only) ThrowIfFailed(Files().SetAttributes(path, status.m_attribute), path);
}

void CFile::Rename(const char* from, const char* to) {
  ThrowIfFailed(Files().Rename(from, to), from);
}

void CFile::Remove(const char* path) { ThrowIfFailed(Files().Delete(path), path); }

BOOL CReplacingFile::Open(const char* path, UINT flags, CFileException* error) {
  platform::OpenOptions options = OptionsFor(flags);
  options.write = true;
  options.truncate = false;
  options.replace = true;
  return OpenAs(path, options, error);
}

void CReplacingFile::Write(const void* buffer, UINT count) {
  m_contents.append(static_cast<const char*>(buffer), count);
}

void CReplacingFile::SetLength(std::int64_t) {
  throw CFileException(CFileException::accessDenied, -1, m_strFileName);
}

void CReplacingFile::Close() {
  const HANDLE file = std::exchange(m_hFile, kNoHandle);
  const std::string contents = std::exchange(m_contents, {});
  if (file != kNoHandle) ThrowIfFailed(Files().ReplaceAndClose(file, contents), m_strFileName);
}

void CReplacingFile::Abort() {
  m_contents.clear();
  CFile::Abort();
}

CStdioFile::CStdioFile(const char* path, UINT flags) : CFile(path, flags) {}

CStdioFile::~CStdioFile() {
  try {
    CStdioFile::Close();
  } catch (const CFileException&) {
    // A destructor can't report; who must know calls `Close` before.
  }
}

bool CStdioFile::FillBuffer() {
  FlushWritten();
  constexpr std::size_t kBufferSize = 65536;
  m_buffer.resize(kBufferSize);
  m_nNext = kBufferSize;  // Nothing to read if the system refuses.
  m_buffer.resize(CFile::Read(m_buffer.data(), static_cast<UINT>(kBufferSize)));
  m_nNext = 0;
  return !m_buffer.empty();
}

UINT CStdioFile::Read(void* buffer, UINT count) {
  UINT total = 0;
  while (total < count && (m_nNext < m_buffer.size() || FillBuffer())) {
    const std::size_t part = std::min<std::size_t>(count - total, m_buffer.size() - m_nNext);
    std::memcpy(static_cast<char*>(buffer) + total, m_buffer.data() + m_nNext, part);
    m_nNext += part;
    total += static_cast<UINT>(part);
  }
  return total;
}

void CStdioFile::Write(const void* buffer, UINT count) {
  // What was read ahead is given back, so that the write goes where the reader stands.
  if (m_nNext < m_buffer.size()) Seek(0, current);
  m_written.append(static_cast<const char*>(buffer), count);
  constexpr std::size_t kFlushAt = 65536;
  if (m_written.size() >= kFlushAt) FlushWritten();
}

void CStdioFile::FlushWritten() {
  if (m_written.empty()) return;
  const std::string written = std::exchange(m_written, {});
  CFile::Write(written.data(), static_cast<UINT>(written.size()));
}

std::int64_t CStdioFile::Seek(std::int64_t offset, UINT from) {
  FlushWritten();
  if (from == current) offset -= static_cast<std::int64_t>(m_buffer.size() - m_nNext);
  const std::int64_t position = CFile::Seek(offset, from);
  m_buffer.clear();
  m_nNext = 0;
  return position;
}

std::int64_t CStdioFile::GetPosition() const {
  return CFile::GetPosition() - static_cast<std::int64_t>(m_buffer.size() - m_nNext) +
         static_cast<std::int64_t>(m_written.size());
}

std::int64_t CStdioFile::GetLength() const {
  const std::int64_t length = CFile::GetLength();
  return m_written.empty() ? length : std::max(length, GetPosition());
}

void CStdioFile::DropBuffers() {
  m_written.clear();
  m_buffer.clear();
  m_nNext = 0;
}

void CStdioFile::Flush() {
  FlushWritten();
  CFile::Flush();
}

void CStdioFile::Close() {
  try {
    if (IsOpen()) FlushWritten();
  } catch (const CFileException&) {
    Abort();
    throw;
  }
  DropBuffers();
  CFile::Close();
}

void CStdioFile::Abort() {
  DropBuffers();
  CFile::Abort();
}

bool CStdioFile::ReadString(CString& line) {
  line.Empty();
  bool any = false;
  while (m_nNext < m_buffer.size() || FillBuffer()) {
    any = true;
    const std::size_t end_of_line = m_buffer.find('\n', m_nNext);
    const std::size_t stop = std::min(end_of_line, m_buffer.size());
    line += std::string_view(m_buffer).substr(m_nNext, stop - m_nNext);
    m_nNext = std::min(stop + 1, m_buffer.size());
    if (end_of_line == std::string::npos) continue;
    const int last = line.GetLength() - 1;
    if (last >= 0 && line[last] == '\r') line = line.Left(last);
    break;
  }
  return any;
}

void CStdioFile::WriteString(const char* text) {
  if (text != nullptr) Write(text, static_cast<UINT>(std::strlen(text)));
}

UINT CMemFile::Read(void* buffer, UINT count) {
  const std::int64_t left = std::max<std::int64_t>(GetLength() - m_nPosition, 0);
  const UINT part = static_cast<UINT>(std::min<std::int64_t>(count, left));
  if (part > 0) std::memcpy(buffer, m_bytes.data() + m_nPosition, part);
  m_nPosition += part;
  return part;
}

void CMemFile::Resize(std::int64_t length) {
  if (length > kLongest) {
    throw CFileException(CFileException::diskFull);
  }
  try {
    m_bytes.resize(static_cast<std::size_t>(length));
  } catch (const std::bad_alloc&) {
    throw CFileException(CFileException::diskFull);
  }
}

void CMemFile::Write(const void* buffer, UINT count) {
  if (m_nPosition > std::numeric_limits<std::int64_t>::max() - count) {
    throw CFileException(CFileException::diskFull);
  }
  const std::int64_t stop = m_nPosition + count;
  if (stop > GetLength()) Resize(stop);
  if (count > 0) std::memcpy(m_bytes.data() + m_nPosition, buffer, count);
  m_nPosition = stop;
}

std::int64_t CMemFile::Seek(std::int64_t offset, UINT from) {
  const std::int64_t origin = from == begin ? 0 : from == current ? m_nPosition : GetLength();
  if (offset > std::numeric_limits<std::int64_t>::max() - origin || origin + offset < 0) {
    throw CFileException(CFileException::badSeek);
  }
  return m_nPosition = origin + offset;
}

void CMemFile::SetLength(std::int64_t length) {
  Resize(std::max<std::int64_t>(length, 0));
  m_nPosition = std::min(m_nPosition, GetLength());
}

void CMemFile::Close() {
  m_bytes.clear();
  m_nPosition = 0;
}

}  // namespace dq
