// What fuzz targets share. A target is one source, which includes this and defines `Try`.

#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "dqlib/framework/base/archive.h"
#include "dqlib/framework/base/file.h"

namespace dq::fuzz {

/// Does with the input what the target is about, and ends the program where something is wrong.
void Try(std::string_view input);

inline void Require(bool holds) {
  if (!holds) std::abort();
}

/// Takes the first line of the input, without its end.
inline std::string_view TakeLine(std::string_view& input) {
  const std::size_t end = std::min(input.find('\n'), input.size());
  const std::string_view line = input.substr(0, end);
  input.remove_prefix(std::min(end + 1, input.size()));
  return line;
}

/// Whether `work` came to its end with an archive that loads from the stream.
template <typename Work>
bool Loads(std::string_view stream, Work work) {
  CMemFile file;
  file.Write(stream.data(), static_cast<UINT>(stream.size()));
  file.SeekToBegin();
  CArchive archive(&file, CArchive::load);
  try {
    work(archive);
    return true;
  } catch (const CArchiveException&) {
    return false;
  }
}

/// The bytes that `work` stores.
template <typename Work>
std::string Stored(Work work) {
  CMemFile file;
  CArchive archive(&file, CArchive::store);
  work(archive);
  archive.Close();
  std::string bytes(static_cast<std::size_t>(file.GetLength()), '\0');
  file.SeekToBegin();
  file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
  return bytes;
}

}  // namespace dq::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  dq::fuzz::Try({reinterpret_cast<const char*>(data), size});
  return 0;
}
