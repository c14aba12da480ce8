// The two forms of paths, and how a path is cut and joined.
//
// A path with a drive letter, or with `\` and no `/`, is in the Windows form; every other path is
// in the platform's own. Both characters separate when a path is cut. A separator that must be
// added is that of the path's form, and the platform's where the path shows none. Windows form:
// drives, and comparison without regard to case. The platform's own form on POSIX: no drive, exact
// comparison.

#pragma once

#include <string>
#include <string_view>

namespace dq::platform {

enum class PathForm { kWindows, kPosix };

/// The form of a path that shows one, else the platform's own.
PathForm FormOf(std::string_view path);

/// '\\' or '/', as the path's form has it.
char SeparatorFor(std::string_view path);

constexpr bool IsSeparator(char character) { return character == '\\' || character == '/'; }

/// Index of the first or last separator, or npos.
std::size_t FindSeparator(std::string_view path, std::size_t start = 0);
std::size_t FindLastSeparator(std::string_view path);

/// Whether the path begins with a letter and a colon.
bool HasDrive(std::string_view path);

/// Whether the path is `\\server\share\...`.
bool IsNetworkPath(std::string_view path);

/// How many bytes of the path are its root, the separator behind it included: a drive, the first
/// separator, or the server and share of a network path.
std::size_t RootSize(std::string_view path);

/// Whether two full paths are the same by their text.
bool IsSamePath(std::string_view left, std::string_view right);

/// The path for display in `room` bytes: it stays if it fits, else it is the root, "..." and as
/// many of the last directories as fit with the file name. If not even that fits, it is the file
/// name all the same if `at_least_name`, else "".
std::string AbbreviatePath(std::string_view path, std::size_t room, bool at_least_name);

/// A path cut into the parts that together make it up again.
struct PathParts {
  std::string drive;      ///< "c:", or "" where the path has none.
  std::string directory;  ///< With its last separator, as in "\data\".
  std::string name;       ///< Without directory and extension.
  std::string extension;  ///< From the last dot of the file name, dot included.
};

/// Cuts a path. A network path has no drive: its server and share are part of the directory.
PathParts SplitPath(std::string_view path);

/// Joins parts, any of which may be empty: adds a colon behind a drive letter, a separator behind
/// the directory and a dot before the extension where they lack them.
std::string MakePath(std::string_view drive, std::string_view directory, std::string_view name,
                     std::string_view extension);

/// `name` in the directory, with one separator between them; `name` alone if the directory is "".
std::string JoinPath(std::string_view directory, std::string_view name);

/// The path from the root, without "." and "..", by its text alone. ".." never leads above the root
/// of a drive or the share of a network path; a separator at the end stays. A path with a drive, of
/// the network or from the root keeps its form and gets that form's separators; any other one is
/// below `current_directory`, a path from the root, and takes its form.
std::string FullPath(std::string_view path, std::string_view current_directory);

/// Whether a name matches a pattern: `*` is any run of characters, `?` any one, the case of ASCII
/// letters is ignored, and "*.*" matches every name.
bool MatchesPattern(std::string_view name, std::string_view pattern);

}  // namespace dq::platform
