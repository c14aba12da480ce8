// A directory of its own for a test, removed with all that is in it.

#pragma once

#include <unistd.h>

#include "tests/support/testing.h"

namespace dq::test {

class TempDirectory {
 public:
  explicit TempDirectory(const std::string& where = std::filesystem::temp_directory_path())
      : path_(where + "/dqlib_test_XXXXXX") {
    if (::mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no directory " + path_);
  }
  TempDirectory(const TempDirectory&) = delete;
  TempDirectory& operator=(const TempDirectory&) = delete;
  ~TempDirectory() {
    std::error_code error;  // what can't be removed is left to the system's own cleaning
    std::filesystem::remove_all(path_, error);
  }

  const std::string& path() const { return path_; }
  /// The path of an entry.
  std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }

  /// Makes a file and returns its path.
  std::string Put(std::string_view name, std::string_view bytes) const {
    const std::string path = *this / name;
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }
  /// The bytes of a file, "(none)" if there is none.
  std::string Get(std::string_view name) const {
    std::ifstream file(*this / name, std::ios::binary);
    if (!file) return "(none)";
    return std::string(std::istreambuf_iterator<char>(file), {});
  }
  /// A text with a sign in the place of this directory's path.
  std::string Shortened(std::string text, std::string_view by = ".") const {
    for (std::size_t at; (at = text.find(path_)) != text.npos;) text.replace(at, path_.size(), by);
    return text;
  }
  /// Permissions of a file.
  unsigned Mode(std::string_view name) const {
    const auto status = std::filesystem::status(*this / name);
    return exists(status) ? static_cast<unsigned>(status.permissions()) : 0;
  }
  /// How many entries there are.
  std::size_t Count() const {
    const std::filesystem::directory_iterator entries(path_);
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
  }

 private:
  std::string path_;
};

/// One in memory, if the system has room for files there: syncing thousands of times takes no time.
class MemoryDirectory : public TempDirectory {
 public:
  MemoryDirectory() : TempDirectory(::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp") {}
};

/// Sets a variable of the environment for its lifetime.
class ScopedVariable {
 public:
  ScopedVariable(std::string name, const std::string& value) : name_(std::move(name)) {
    const char* const former = std::getenv(name_.c_str());
    if (former != nullptr) former_ = former;
    ::setenv(name_.c_str(), value.c_str(), 1);
  }
  ScopedVariable(const ScopedVariable&) = delete;
  ~ScopedVariable() {
    former_ ? ::setenv(name_.c_str(), former_->c_str(), 1) : ::unsetenv(name_.c_str());
  }

 private:
  const std::string name_;
  std::optional<std::string> former_;
};

}  // namespace dq::test
