// What outside hands have done to the files of a registry's root, and the copies that are kept.

#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "dqlib/platform/error.h"
#include "dqlib/platform/posix/system_calls.h"
#include "dqlib/platform/seam_texts.h"

namespace dq::platform::posix {

/// What the person is to be told, in the language in force when it is told.
struct Notice {
  SeamTextId text;
  /// The file that it is about: `%1` of the text.
  std::string path;
  /// What became of that file: `%2`, whose own `%1` is the copy; none if there is nothing to say.
  std::optional<SeamTextId> whereabouts;
  std::string copy;
  /// `%3` and `%4`, for texts that have them.
  std::string third = {};
  std::string fourth = {};

  std::string Text() const;
};

/// What is known of a damaged file, from when it is found until a fold has written a good one.
struct FileDamage {
  bool is_found = false;
  /// There is no file, or nothing of it to keep.
  bool is_gone = false;
  /// Its bytes are good, but it doesn't go with the other file.
  bool is_foreign = false;
  bool is_told = false;
  /// Where it was copied to; "" before that.
  std::string copy;

  void Set(bool found, bool gone, bool foreign = false);
};

/// The same of both files of a root.
struct StoreDamage {
  FileDamage snapshot;
  FileDamage journal;
  std::size_t values_kept = 0;
  std::size_t lines_lost = 0;

  bool any() const { return snapshot.is_found || journal.is_found; }
  bool is_told() const {
    return (!snapshot.is_found || snapshot.is_told) && (!journal.is_found || journal.is_told);
  }
  /// Copies the damaged files, each once, beside where they lie.
  Error Keep(SystemCalls& calls, const std::string& snapshot_path, const std::string& journal_path);
  /// Adds what the person must be told of and hasn't been.
  void Tell(const std::string& snapshot_path, const std::string& journal_path,
            std::vector<Notice>& notices);
};

/// Makes a file under a name that is free, `name` or that with a number, and returns its path.
/// What can't be written whole and synced isn't left there.
Result<std::string> KeepBeside(SystemCalls& calls, const std::string& name,
                               const std::function<Error(int fd)>& write);

}  // namespace dq::platform::posix
