// Speed of profile files against GLib's key files, and of whole files against the system calls that
// any program needs for the same.

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <glib.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "benchmarks/ratio.h"
#include "dqlib/platform/platform.h"

namespace {

using dq::platform::System;

/// Ends the program if something didn't work, or the peers don't do the same.
void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "%s failed\n", what);
  std::exit(2);
}

/// A directory that is removed with the files that the benchmarks make.
class Directory {
 public:
  Directory() { Require(::mkdtemp(path_) != nullptr, "making a directory"); }
  Directory(const Directory&) = delete;
  Directory& operator=(const Directory&) = delete;
  ~Directory() {
    for (const char* name : {"ours", "theirs"}) ::unlink((*this / name).c_str());
    ::rmdir(path_);
  }
  std::string operator/(const char* name) const { return std::string(path_) + "/" + name; }

 private:
  char path_[32] = "/tmp/dqlib_bench_XXXXXX";
};

std::string ProfileText(int sections, int keys) {
  std::string text = "# settings\n";
  for (int section = 0; section < sections; ++section) {
    text += "[Section" + std::to_string(section) + "]\n";
    for (int key = 0; key < keys; ++key) {
      text += "Key" + std::to_string(key) + "=value of the key " + std::to_string(key) + "\n";
    }
  }
  return text;
}

/// The plain system calls for a whole file, with or without the question whether someone denies it.
std::string ReadBySystemCalls(const std::string& path, bool asks) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status {};
  Require(fd >= 0 && ::fstat(fd, &status) == 0, "opening");
  if (asks) {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_start = off_t{1} << 62;
    lock.l_len = 1;
    Require(::fcntl(fd, F_OFD_GETLK, &lock) == 0, "asking for locks");
  }
  std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
  Require(::read(fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()), "reading");
  ::close(fd);
  return bytes;
}

/// The fewest that put a new file in the place of the old one so that it survives a breakdown.
void ReplaceBySystemCalls(const std::string& path, const std::string& bytes) {
  const std::string temporary = path + ".new";
  const int fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  Require(fd >= 0, "making a file");
  Require(::write(fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()), "writing");
  Require(::fsync(fd) == 0 && ::close(fd) == 0, "syncing");
  Require(::rename(temporary.c_str(), path.c_str()) == 0, "renaming");
  const int directory = ::open(path.substr(0, path.rfind('/')).c_str(), O_RDONLY | O_DIRECTORY);
  Require(::fsync(directory) == 0, "syncing a directory");
  ::close(directory);
}

using KeyFile = std::unique_ptr<GKeyFile, decltype(&g_key_file_unref)>;

KeyFile Load(const std::string& path) {
  KeyFile file(g_key_file_new(), g_key_file_unref);
  Require(g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_KEEP_COMMENTS, nullptr),
          "loading a key file");
  return file;
}

void CompareProfiles(const Directory& directory, int sections, int keys) {
  const std::string text = ProfileText(sections, keys);
  const std::string ours = directory / "ours";
  const std::string theirs = directory / "theirs";
  for (const std::string& path : {ours, theirs}) {
    Require(System().files->Replace(path, text, true).ok(), "writing a profile");
  }
  const std::string size = std::to_string(text.size() / 1024) + " KiB";
  const std::string section = "Section" + std::to_string(sections - 1);
  const std::string key = "Key" + std::to_string(keys - 1);
  dq::platform::ProfileFiles& profiles = *System().profile_files;

  bench::Ratio("profile: 20 reads of the last key, " + size, "GKeyFile load and get", 1.0)
      .Run(
          [&] {
            for (int i = 0; i < 20; ++i) bench::Keep(profiles.Read(ours, section, key));
          },
          [&] {
            for (int i = 0; i < 20; ++i) {
              const KeyFile file = Load(theirs);
              char* const value =
                  g_key_file_get_string(file.get(), section.c_str(), key.c_str(), nullptr);
              Require(value != nullptr, "getting a value");
              bench::Keep(value);
              g_free(value);
            }
          });
  int number = 0;
  bench::Ratio("profile: 20 writes of one key, " + size, "GKeyFile load, set and save", 1.0)
      .Run(
          [&] {
            for (int i = 0; i < 20; ++i) {
              const std::string value = std::to_string(++number);
              Require(profiles.Write(ours, section, key, value).ok(), "writing a key");
            }
          },
          [&] {
            for (int i = 0; i < 20; ++i) {
              const KeyFile file = Load(theirs);
              const std::string value = std::to_string(++number);
              g_key_file_set_string(file.get(), section.c_str(), key.c_str(), value.c_str());
              Require(g_key_file_save_to_file(file.get(), theirs.c_str(), nullptr), "saving");
            }
          });
}

void CompareWholeFiles(const Directory& directory, std::size_t size, int times) {
  const std::string bytes(size, 'x');
  const std::string ours = directory / "ours";
  const std::string theirs = directory / "theirs";
  const std::string what = std::to_string(size / 1024) + " KiB";
  for (const std::string& path : {ours, theirs}) {
    Require(System().files->Replace(path, bytes, true).ok(), "writing a file");
  }
  for (const bool asks : {true, false}) {
    bench::Ratio("whole file: read " + what,
                 asks ? "open, fstat, fcntl, read, close" : "the same without fcntl",
                 asks ? 1.25 : 0)
        .Run(
            [&] {
              for (int i = 0; i < times; ++i) {
                std::string read;
                Require(System().files->ReadAll(ours, read).ok() && read.size() == size, "reading");
              }
            },
            [&] {
              for (int i = 0; i < times; ++i) bench::Keep(ReadBySystemCalls(theirs, asks));
            });
  }
  const int writes = times / 50 + 1;
  bench::Ratio("whole file: replace " + what, "open, write, fsync, rename, fsync", 1.25)
      .Run(
          [&] {
            for (int i = 0; i < writes; ++i) {
              Require(System().files->Replace(ours, bytes, true).ok(), "replacing");
            }
          },
          [&] {
            for (int i = 0; i < writes; ++i) ReplaceBySystemCalls(theirs, bytes);
          });
}

}  // namespace

int main() {
  const Directory directory;
  CompareProfiles(directory, 5, 20);
  CompareProfiles(directory, 50, 200);
  CompareWholeFiles(directory, 4 * 1024, 1000);
  CompareWholeFiles(directory, 16 * 1024 * 1024, 10);
  return bench::Finish();
}
