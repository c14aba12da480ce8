// The objects of a PDF file, written one behind the other as they become known.

#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/platform/error.h"

namespace dq::detail {

/// Writes a file of PDF 1.4. Of what is written only the places of the objects are kept. What goes
/// to the sink is collected to pieces of some size; its first error ends it all: what is written
/// later goes nowhere.
class PdfFile {
 public:
  using Sink = std::function<platform::Error(std::string_view bytes)>;

  /// The number of the first object that `NewObject` gives.
  static constexpr int kFirstObject = 1;

  /// Begins the file.
  explicit PdfFile(Sink sink);

  /// A number for an object that is to be written once.
  int NewObject();
  /// Writes an object, which isn't a stream.
  void WriteObject(int number, std::string_view object);
  /// Writes a stream; `entries` are those of its dictionary but for the length.
  void WriteStream(int number, std::string_view entries, std::string_view bytes);
  /// The same in pieces, which are `size` bytes together.
  void BeginStream(int number, std::string_view entries, std::uint64_t size);
  void Append(std::string_view bytes);
  void EndStream();
  /// Ends the file; each number has its object now.
  void Finish(int catalog, int info);

  const platform::Error& error() const { return error_; }

 private:
  void BeginObject(int number);
  void Flush();

  Sink sink_;
  platform::Error error_;
  /// What goes to the sink next.
  std::string piece_;
  std::uint64_t size_ = 0;
  /// Where the object of each number begins.
  std::vector<std::uint64_t> places_;
};

/// "7 0 R"
std::string PdfReference(int object);

/// A text as PDF has it in its source.
std::string PdfString(std::string_view bytes);

}  // namespace dq::detail
