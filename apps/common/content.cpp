#include "apps/common/content.h"

#include <cstdio>
#include <utility>

#include "dqlib/framework/base/error_text.h"
#include "dqlib/platform/platform.h"

namespace dqapps {
namespace {

dq::platform::Files& Files() { return *dq::platform::Current().files; }

}  // namespace

std::string NameOfInput(const std::string& path) { return path == "-" ? "standard input" : path; }

std::optional<std::string> ReadContent(const std::string& path) {
  std::string text;
  if (path == "-") {
    char buffer[65536];
    std::size_t size = 0;
    while ((size = std::fread(buffer, 1, sizeof(buffer), stdin)) > 0) text.append(buffer, size);
    if (std::ferror(stdin) == 0) return text;
    Complain("cannot read standard input");
    return std::nullopt;
  }
  const dq::platform::Error error = Files().ReadAll(path, text);
  if (error.ok()) return text;
  Complain("cannot read " + (path.empty() ? "''" : path) + ": " + dq::detail::ErrorText(error));
  return std::nullopt;
}

TemporaryFile::TemporaryFile() {
  const std::string directory = Files().TempDirectory();
  auto made = Files().MakeTempFile(directory, "dqt");
  if (made.ok()) {
    path_ = std::move(made.value);
  } else {
    Complain("cannot write into " + directory + ": " + dq::detail::ErrorText(made.error));
  }
}

TemporaryFile::~TemporaryFile() {
  // Nothing to tell: what is left over is the user's alone, and the system clears it away.
  if (!path_.empty()) Files().Delete(path_);
}

InputFile::InputFile(const std::string& path) : path_(path) {
  if (path != "-") return;
  ok_ = false;
  const std::optional<std::string> text = ReadContent(path);
  if (!text) return;
  path_ = own_.emplace().path();
  if (path_.empty()) return;
  const dq::platform::Error error = Files().Replace(path_, *text, true);
  ok_ = error.ok();
  if (!ok_) Complain("cannot write " + path_ + ": " + dq::detail::ErrorText(error));
}

bool ReadInputLine(std::string& line) {
  line.clear();
  int character = 0;
  while ((character = std::getc(stdin)) != EOF) {
    if (character == '\n') return true;
    line += static_cast<char>(character);
  }
  return !line.empty() && std::ferror(stdin) == 0;
}

int EndOfInputLines() {
  return std::ferror(stdin) == 0 ? int{kYes} : Complain("cannot read standard input");
}

}  // namespace dqapps
