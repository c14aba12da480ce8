// Binary files, text files and files in memory.
//
//   CFile file;
//   if (file.Open(path, CFile::modeRead)) ...
//
// `Open` reports failure by its result; every other operation that the system refuses throws a
// `CFileException`. One thread at a time may use a file.

#pragma once

#include <cstdint>
#include <vector>

#include "dqlib/framework/base/exception.h"
#include "dqlib/platform/files.h"

namespace dq {

/// What `CFile::GetStatus` tells.
struct CFileStatus {
  /// Seconds since 1970-01-01 UTC.
  std::int64_t m_mtime = 0;
  std::int64_t m_atime = 0;
  std::int64_t m_ctime = 0;
  std::uint64_t m_size = 0;
  /// Bits of `FileAttribute`.
  DWORD m_attribute = 0;
  CString m_szFullName;
};

/// A file of bytes.
class CFile : public CObject {
  DECLARE_DYNAMIC(CFile)
  /// Open flags: one access mode, one share mode, and more.
  enum OpenFlags : UINT {
    modeRead = 0x0000,
    modeWrite = 0x0001,
    modeReadWrite = 0x0002,
    shareExclusive = 0x0010,
    shareDenyWrite = 0x0020,
    shareDenyNone = 0x0040,
    modeCreate = 0x1000,      ///< Makes the file; one that exists is emptied ...
    modeNoTruncate = 0x2000,  ///< ... but not with this flag.
    typeText = 0x4000,        ///< Used by `CStdioFile` only.
    /// Every write goes to the end, in one step that no other writer comes between.
    modeAppend = 0x100000,
    /// Waits for others that have the file open in a way that excludes this one, some 20 seconds at
    /// most; without, such a file is refused at once.
    shareWait = 0x200000,
  };
  enum SeekPosition : UINT { begin = 0, current = 1, end = 2 };

  CFile() = default;
  /// Opens, and throws if that fails.
  CFile(const char* path, UINT flags);
  ~CFile() override;

  /// Opens the file, which isn't open. If that fails the result is 0, and `error`, if given, says
  /// why.
  virtual BOOL Open(const char* path, UINT flags, CFileException* error = nullptr);
  virtual bool IsOpen() const { return m_hFile != kNoHandle; }

  /// Reads at most `count` bytes; fewer only at the end of the file. Returns how many.
  virtual UINT Read(void* buffer, UINT count);
  virtual void Write(const void* buffer, UINT count);
  /// The new position. One before the begin throws `badSeek`.
  virtual std::int64_t Seek(std::int64_t offset, UINT from);
  std::int64_t SeekToEnd() { return Seek(0, end); }
  void SeekToBegin() { Seek(0, begin); }
  virtual std::int64_t GetPosition() const;
  virtual std::int64_t GetLength() const;
  virtual void SetLength(std::int64_t length);
  virtual void Flush();
  /// Closes; a file that isn't open stays so.
  virtual void Close();
  /// Closes without a throw, whatever was pending.
  virtual void Abort();

  /// The path as it was given, and its last part.
  const CString& GetFilePath() const { return m_strFileName; }
  CString GetFileName() const;

  /// Status of an open file or of one by path; 0 if there is none.
  BOOL GetStatus(CFileStatus& status) const;
  static BOOL GetStatus(const char* path, CFileStatus& status);
  /// Sets the read-only attribute and, unless it is 0, the time of the last change. Throws.
  static void SetStatus(const char* path, const CFileStatus& status);
  static void Rename(const char* from, const char* to);
  static void Remove(const char* path);

  HANDLE m_hFile = kNoHandle;

 protected:
  /// Opens by the platform's options; result and error are those of `Open`.
  BOOL OpenAs(const char* path, const platform::OpenOptions& options, CFileException* error);

  CString m_strFileName;
};

/// A file that is written anew as a whole: until `Close`, and if anything fails or the process
/// dies, the old one is there, whole. `Read`, `Seek` and the length are those of the old one, so
/// that who changes a file reads it through the same object, with others kept out by a share mode;
/// what is written, one behind the other, is the new one.
///
///   CReplacingFile file;
///   if (file.Open(path, CFile::modeCreate | CFile::modeReadWrite | CFile::shareExclusive)) ...
///   file.Write(bytes, size);
///   file.Close();
class CReplacingFile : public CFile {
  DECLARE_DYNAMIC(CReplacingFile)
  /// As the base's, for reading and writing. The file isn't emptied.
  BOOL Open(const char* path, UINT flags, CFileException* error = nullptr) override;
  void Write(const void* buffer, UINT count) override;
  /// Throws `accessDenied`: the new file is as long as what is written.
  void SetLength(std::int64_t length) override;
  /// Puts the new file in the place of the old one, on the disk. Owner and permissions stay, and so
  /// does a link. A throw leaves the file closed.
  void Close() override;
  /// Leaves the old file; one that was made goes again. So does the destructor.
  void Abort() override;

 private:
  std::string m_contents;
};

/// A file of text lines, buffered. Lines are read with CR LF or LF at their ends; `Read` and the
/// writing operations leave bytes as they stand. What could not be written is told by `Flush` and
/// `Close`, not by a destructor.
class CStdioFile : public CFile {
  DECLARE_DYNAMIC(CStdioFile)
  CStdioFile() = default;
  CStdioFile(const char* path, UINT flags);
  ~CStdioFile() override;

  UINT Read(void* buffer, UINT count) override;
  void Write(const void* buffer, UINT count) override;
  std::int64_t Seek(std::int64_t offset, UINT from) override;
  std::int64_t GetPosition() const override;
  std::int64_t GetLength() const override;
  void Flush() override;
  void Close() override;
  void Abort() override;

  /// The next byte as 0 to 255, or -1 at the end; `PeekByte` leaves it to be read again.
  int ReadByte() {
    const int byte = PeekByte();
    if (byte >= 0) ++m_nNext;
    return byte;
  }
  int PeekByte() {
    if (m_nNext == m_buffer.size() && !FillBuffer()) return -1;
    return static_cast<unsigned char>(m_buffer[m_nNext]);
  }

  /// The next line without its line end; false at the end of the file, with "".
  bool ReadString(CString& line);
  /// Writes the text as it stands; nothing for null.
  void WriteString(const char* text);

 private:
  bool FillBuffer();
  void FlushWritten();
  void DropBuffers();

  std::string m_buffer;
  std::size_t m_nNext = 0;
  std::string m_written;
};

/// A file in memory, of at most `kLongest` bytes. One that grows past that, or what memory can
/// hold, throws `diskFull`.
class CMemFile : public CFile {
  DECLARE_DYNAMIC(CMemFile)
  /// Lengths in archives and profiles are of 32 bits.
  static constexpr std::int64_t kLongest = 0x7FFFFFFF;

  CMemFile() = default;

  bool IsOpen() const override { return true; }
  UINT Read(void* buffer, UINT count) override;
  void Write(const void* buffer, UINT count) override;
  std::int64_t Seek(std::int64_t offset, UINT from) override;
  std::int64_t GetPosition() const override { return m_nPosition; }
  std::int64_t GetLength() const override { return static_cast<std::int64_t>(m_bytes.size()); }
  /// Grows with zeros. The position is at most the length afterwards.
  void SetLength(std::int64_t length) override;
  void Flush() override {}
  /// Drops the contents.
  void Close() override;
  void Abort() override { Close(); }

 protected:
  std::vector<char> m_bytes;
  std::int64_t m_nPosition = 0;

 private:
  void Resize(std::int64_t length);
};

}  // namespace dq
