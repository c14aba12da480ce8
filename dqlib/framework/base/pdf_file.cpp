#include "dqlib/framework/base/pdf_file.h"

#include <cstdio>
#include <utility>

#include "dqlib/framework/base/text.h"

namespace dq::detail {
namespace {

/// The four bytes above 7Fh tell that the file isn't one of text.
constexpr std::string_view kHeader = "%PDF-1.4\n%\xE2\xE3\xCF\xD3\n";

constexpr std::size_t kPiece = 1 << 16;

/// A place has ten digits in the file's table.
constexpr std::uint64_t kFarthestPlace = 9'999'999'999;

}  // namespace

PdfFile::PdfFile(Sink sink) : sink_(std::move(sink)) { Append(kHeader); }

int PdfFile::NewObject() {
  places_.push_back(0);
  return static_cast<int>(places_.size());
}

void PdfFile::BeginObject(int number) {
  if (size_ > kFarthestPlace && error_.ok()) error_ = {platform::ErrorKind::kNoSpace, 0};
  places_[static_cast<std::size_t>(number - kFirstObject)] = size_;
  Append(std::to_string(number) + " 0 obj\n");
}

void PdfFile::WriteObject(int number, std::string_view object) {
  BeginObject(number);
  Append(object);
  Append("\nendobj\n");
}

void PdfFile::WriteStream(int number, std::string_view entries, std::string_view bytes) {
  BeginStream(number, entries, bytes.size());
  Append(bytes);
  EndStream();
}

void PdfFile::BeginStream(int number, std::string_view entries, std::uint64_t size) {
  BeginObject(number);
  Append("<<");
  Append(entries);
  Append(" /Length " + std::to_string(size) + " >>\nstream\n");
}

void PdfFile::EndStream() { Append("\nendstream\nendobj\n"); }

void PdfFile::Append(std::string_view bytes) {
  if (!error_.ok()) return;
  piece_ += bytes;
  size_ += bytes.size();
  if (piece_.size() >= kPiece) Flush();
}

void PdfFile::Flush() {
  if (error_.ok()) error_ = sink_(piece_);
  piece_.clear();
}

void PdfFile::Finish(int catalog, int info) {
  const std::uint64_t table = size_;
  const std::string count = std::to_string(places_.size() + kFirstObject);
  // Each entry is exactly 20 bytes.
  Append("xref\n0 " + count + "\n0000000000 65535 f \n");
  for (const std::uint64_t place : places_) {
    char entry[32];
    const int size = std::snprintf(entry, sizeof entry, "%010llu 00000 n \n",
                                   static_cast<unsigned long long>(place));
    Append({entry, static_cast<std::size_t>(size)});
  }
  Append("trailer\n<< /Size " + count + " /Root " + PdfReference(catalog) + " /Info " +
         PdfReference(info) + " >>\nstartxref\n" + std::to_string(table) + "\n%%EOF\n");
  Flush();
}

std::string PdfReference(int object) { return std::to_string(object) + " 0 R"; }

std::string PdfString(std::string_view bytes) {
  std::string source = "(";
  for (const char character : bytes) {
    const unsigned char byte = Byte(character);
    if (byte < 0x20 || byte >= 0x7F) {
      char code[8];
      std::snprintf(code, sizeof code, "\\%03o", byte);
      source += code;
      continue;
    }
    if (character == '(' || character == ')' || character == '\\') source += '\\';
    source += character;
  }
  return source += ')';
}

}  // namespace dq::detail
