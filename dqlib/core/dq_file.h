// Line-oriented text files.

#pragma once

#include <memory>

#include "dqlib/core/dq_string.h"

namespace dq {

enum FileOpenMode {
  FILE_OPEN_READ = 0,
  FILE_OPEN_WRITE = 1,
  FILE_OPEN_STDOUT = 2,  ///< The process's standard output.
};

/// A text file that is read or written line by line. One thread at a time.
class CDQFile {
 public:
  CDQFile();
  CDQFile(const CString& path, FileOpenMode mode);
  CDQFile(const CDQFile&) = delete;
  CDQFile& operator=(const CDQFile&) = delete;
  virtual ~CDQFile();

  /// Takes over path and mode. A file that is open is closed.
  virtual void Init(const CString& path, FileOpenMode mode);
  virtual bool IsOpen();
  /// Opens as the mode says; for reading only a file that exists. An open one stays open. Returns
  /// whether it is open.
  virtual bool Open();
  /// False if something that was written before didn't reach the file. One that isn't open is no
  /// failure.
  virtual bool Close();

  /// Writes are buffered: a full disk may be told as late as by `Close`.
  virtual bool Write(const char* text);
  /// Writes the text and a line end: CR LF if so set, else a line feed.
  virtual bool WriteLine(const char* text);
  /// Reads up to the next line end, which is consumed and not stored, with a carriage return before
  /// it; or up to 10,000 characters, so that longer lines come in pieces, and a line of exactly as
  /// many is followed by a blank one. Returns how many characters there were; 0 for a blank line
  /// and at the end of the file.
  virtual int ReadLine(CString& text);
  /// Bytes as they stand; returns how many, fewer than `count` only at the end.
  virtual long ReadBytes(char* buffer, long count);
  virtual int Read(CString& text, int count);
  /// By the run-time's rules: 0 on success; origins 0 begin, 1 current, 2 end.
  virtual int fseek(long offset, int origin);
  /// Adds all lines from here to the list's tail; no empty line behind the last line end.
  /// False if it isn't open or could not be read to its end.
  virtual bool GetTextList(CStringList& lines);

  bool Write(int number);
  bool Write(long number);
  bool Write(double number);

  /// The whole file; false, and "", if it can't be read.
  bool FileToString(CString& text);
  /// Copies the file over `target`.
  bool FastFileCopy(const char* target);

  bool IsReadOnly() const;
  DWORD GetAttributes() const;
  bool SetAttributes(DWORD attributes);
  bool ChangeModeWriteable();
  bool ChangeModeReadOnly();

  const CString& GetFilePath() const { return m_strFilePath; }
  void SetUseCarrageReturnLineFeed(bool use) { m_bUseCarrageReturnLineFeed = use; }
  bool GetUseCarrageReturnLineFeed() const { return m_bUseCarrageReturnLineFeed; }

 protected:
  struct Stream;
  std::unique_ptr<Stream> m_pStream;
  FileOpenMode m_eMode = FILE_OPEN_READ;
  CString m_strFilePath;
  bool m_bUseCarrageReturnLineFeed = false;
};

}  // namespace dq
