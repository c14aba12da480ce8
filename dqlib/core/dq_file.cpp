#include "dqlib/core/dq_file.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "dqlib/framework/base/file.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

constexpr int kLongestLine = 10000;

platform::Files& Files() { return *platform::Current().files; }

}  // namespace

/// The run-time's stream: a buffered file, or the process's standard output.
struct CDQFile::Stream {
  CStdioFile file;
  bool standard_output = false;
  /// One byte that was read too far, or -1.
  bool at_end = false;

  /// The next byte, or -1 at the end.
  int Get() {
    unsigned char byte = 0;
    if (standard_output || file.Read(&byte, 1) == 0) {
      at_end = true;
      return -1;
    }
    return byte;
  }
};

CDQFile::CDQFile() = default;

CDQFile::CDQFile(const CString& path, FileOpenMode mode) { CDQFile::Init(path, mode); }

CDQFile::~CDQFile() { CDQFile::Close(); }

void CDQFile::Init(const CString& path, FileOpenMode mode) {
  m_eMode = mode;
  m_strFilePath = ProcessFileName(path);
  m_pStream.reset();
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
  }
  m_pStream = std::move(stream);
  return true;
}

void CDQFile::Close() {
  if (m_pStream == nullptr) return;
  const std::unique_ptr<Stream> stream = std::move(m_pStream);
  if (stream->standard_output) {
    std::fflush(stdout);
    return;
  }
  try {
    stream->file.Close();
  } catch (const CFileException&) {
    // The operation has no result; `Write` has told what it could.
  }
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

int CDQFile::ReadLine(CString& text) try {
  text.Empty();
  if (m_pStream == nullptr) return 0;
  while (text.GetLength() < kLongestLine) {
    const int byte = m_pStream->Get();
    if (byte < 0) break;
    if (byte == '\n') {
      // In text mode a CR LF is one line end.
      if (!text.IsEmpty() && text[text.GetLength() - 1] == '\r') {
        text = text.Left(text.GetLength() - 1);
      }
      break;
    }
    text += static_cast<char>(byte);
  }
  return text.GetLength();
} catch (const CFileException&) {
  m_pStream->at_end = true;
  return text.GetLength();
}

long CDQFile::ReadBytes(char* buffer, long count) try {
  if (m_pStream == nullptr || m_pStream->standard_output || buffer == nullptr || count < 1) {
    return 0;
  }
  const UINT read = m_pStream->file.Read(buffer, static_cast<UINT>(count));
  m_pStream->at_end = read < static_cast<UINT>(count);
  return static_cast<long>(read);
} catch (const CFileException&) {
  return 0;
}

int CDQFile::Read(CString& text, int count) {
  char* const buffer = text.GetBuffer(count);
  const int read = static_cast<int>(ReadBytes(buffer, count));
  text.ReleaseBuffer(read);
  return read;
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
  return true;
}

bool CDQFile::Write(int number) {
  CDQString text;
  text.SetNumber(number);
  return Write(static_cast<const char*>(text));
}

bool CDQFile::Write(long number) {
  CDQString text;
  text.SetNumber(number);
  return Write(static_cast<const char*>(text));
}

bool CDQFile::Write(double number) {
  CString text;
  text.Format("%lf", number);
  return Write(static_cast<const char*>(text));
}

bool CDQFile::FileToString(CString& text) {
  std::string bytes;
  const bool read = Files().ReadAll(m_strFilePath.View(), bytes).ok();
  text = read ? std::string_view(bytes) : std::string_view();
  return read;
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
