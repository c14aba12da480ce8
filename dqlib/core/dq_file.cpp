#include "dqlib/core/dq_file.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "dqlib/framework/base/file.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

constexpr std::size_t kLongestLine = 10000;
constexpr int kLongestRead = 0x7FFFFFFF;
constexpr int kPiece = 65536;

platform::Files& Files() { return *platform::Current().files; }

}  // namespace

/// The run-time's stream: a buffered file, or the process's standard output.
struct CDQFile::Stream {
  CStdioFile file;
  bool standard_output = false;
  /// Set by the read that met the end of the file.
  bool at_end = false;
  /// Whether reading a line has failed.
  bool failed = false;

  /// The next character of the text, in which CR LF is LF; -1 at the end.
  int Get() {
    int byte = standard_output ? -1 : file.ReadByte();
    if (byte == '\r' && file.PeekByte() == '\n') byte = file.ReadByte();
    at_end = byte < 0;
    return byte;
  }
};

CDQFile::CDQFile() = default;

CDQFile::CDQFile(const CString& path, FileOpenMode mode) { CDQFile::Init(path, mode); }

CDQFile::~CDQFile() { CDQFile::Close(); }

void CDQFile::Init(const CString& path, FileOpenMode mode) {
  CDQFile::Close();
  m_eMode = mode;
  m_strFilePath = path;
}

bool CDQFile::IsOpen() { return m_pStream != nullptr; }

bool CDQFile::Open() {
  if (IsOpen()) return true;
  auto stream = std::make_unique<Stream>();
  switch (m_eMode) {
    case FILE_OPEN_READ:
      if (!stream->file.Open(m_strFilePath, CFile::modeRead)) return false;
      break;
    case FILE_OPEN_WRITE:
      if (!stream->file.Open(m_strFilePath, CFile::modeCreate | CFile::modeWrite)) return false;
      break;
    case FILE_OPEN_STDOUT:
      stream->standard_output = true;
      break;
    default:
      return false;
  }
  m_pStream = std::move(stream);
  return true;
}

bool CDQFile::Close() try {
  if (m_pStream == nullptr) return true;
  const std::unique_ptr<Stream> stream = std::move(m_pStream);
  if (stream->standard_output) return std::fflush(stdout) == 0;
  stream->file.Close();
  return true;
} catch (const CFileException&) {
  return false;
}

bool CDQFile::Write(const char* text) try {
  if (m_pStream == nullptr || text == nullptr) return false;
  const std::size_t length = std::strlen(text);
  if (m_pStream->standard_output) return std::fwrite(text, 1, length, stdout) == length;
  if (m_eMode != FILE_OPEN_WRITE) return false;
  m_pStream->file.Write(text, static_cast<UINT>(length));
  return true;
} catch (const CFileException&) {
  return false;
}

bool CDQFile::WriteLine(const char* text) {
  return Write(text) && Write(m_bUseCarrageReturnLineFeed ? "\r\n" : "\n");
}

int CDQFile::ReadLine(CString& text) {
  text.Empty();
  if (m_pStream == nullptr) return 0;
  std::array<char, kLongestLine> line;
  std::size_t length = 0;
  try {
    while (length < line.size()) {
      const int character = m_pStream->Get();
      if (character < 0 || character == '\n') break;
      line[length++] = static_cast<char>(character);
    }
  } catch (const CFileException&) {
    m_pStream->at_end = m_pStream->failed = true;
  }
  text = std::string_view(line.data(), length);
  return text.GetLength();
}

long CDQFile::ReadBytes(char* buffer, long count) try {
  if (m_pStream == nullptr || m_pStream->standard_output || buffer == nullptr || count < 1) {
    return 0;
  }
  const UINT wanted = static_cast<UINT>(std::min<long long>(count, kLongestRead));
  const UINT read = m_pStream->file.Read(buffer, wanted);
  m_pStream->at_end = read < wanted;
  return static_cast<long>(read);
} catch (const CFileException&) {
  return 0;
}

int CDQFile::Read(CString& text, int count) {
  // In pieces, since there may be much less than is asked for.
  std::string bytes;
  while (count > 0) {
    const std::size_t before = bytes.size();
    const int piece = std::min(count, kPiece);
    bytes.resize(before + static_cast<std::size_t>(piece));
    const long read = ReadBytes(bytes.data() + before, piece);
    bytes.resize(before + static_cast<std::size_t>(read));
    if (read < piece) break;
    count -= piece;
  }
  text = bytes;
  return text.GetLength();
}

int CDQFile::fseek(long offset, int origin) try {
  if (m_pStream == nullptr || m_pStream->standard_output || origin < 0 || origin > 2) return -1;
  m_pStream->file.Seek(offset, static_cast<UINT>(origin));
  m_pStream->at_end = false;
  return 0;
} catch (const CFileException&) {
  return -1;
}

bool CDQFile::GetTextList(CStringList& lines) {
  if (m_pStream == nullptr) return false;
  while (!m_pStream->at_end) {
    CString line;
    const int length = ReadLine(line);
    // The end of the file behind a line end is no line of its own.
    if (length == 0 && m_pStream->at_end) break;
    lines.AddTail(line);
  }
  return !m_pStream->failed;
}

bool CDQFile::Write(int number) {
  CString text;
  text.Format("%d", number);
  return Write(static_cast<const char*>(text));
}

bool CDQFile::Write(long number) {
  CString text;
  text.Format("%ld", number);
  return Write(static_cast<const char*>(text));
}

bool CDQFile::Write(double number) {
  CString text;
  text.Format("%lf", number);
  return Write(static_cast<const char*>(text));
}

bool CDQFile::FileToString(CString& text) try {
  // What was written belongs to the file, though it may not be there yet.
  if (m_pStream != nullptr && m_eMode == FILE_OPEN_WRITE) {
    m_pStream->file.Seek(0, CFile::current);
  }
  std::string bytes;
  const bool read = Files().ReadAll(m_strFilePath.View(), bytes).ok();
  text = read ? std::string_view(bytes) : std::string_view();
  return read;
} catch (const CFileException&) {
  text.Empty();
  return false;
}

bool CDQFile::FastFileCopy(const char* target) {
  return target != nullptr && Files().Copy(m_strFilePath.View(), target, true).ok();
}

bool CDQFile::IsReadOnly() const { return (GetAttributes() & FILE_READ_ONLY) != 0; }

DWORD CDQFile::GetAttributes() const {
  return Files().Status(m_strFilePath.View()).value.attributes;
}

bool CDQFile::SetAttributes(DWORD attributes) {
  return Files().SetAttributes(m_strFilePath.View(), attributes).ok();
}

bool CDQFile::ChangeModeWriteable() {
  return SetAttributes(GetAttributes() & ~static_cast<DWORD>(FILE_READ_ONLY));
}

bool CDQFile::ChangeModeReadOnly() { return SetAttributes(GetAttributes() | FILE_READ_ONLY); }

}  // namespace dq
