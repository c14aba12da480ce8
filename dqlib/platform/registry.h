// The registry tree: keys that hold named values and further keys.

#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "dqlib/platform/error.h"
#include "dqlib/platform/types.h"

namespace dq {

/// An open registry key, or one of the roots. A copy names the same opening; numbers are never used
/// twice in a process.
using HKEY = std::uint64_t;

/// No key.
inline constexpr HKEY kNoKey = 0;

/// The roots, which are always open and need no closing.
inline constexpr HKEY kClassesRoot = 0x80000000;
inline constexpr HKEY kCurrentUser = 0x80000001;
inline constexpr HKEY kLocalMachine = 0x80000002;

/// Kinds of registry values. A value may have any other number too; its data are bytes.
enum RegistryType : DWORD {
  REGISTRY_NONE = 0,
  REGISTRY_STRING = 1,         ///< Text; the zero behind it may or may not be part of the data.
  REGISTRY_EXPAND_STRING = 2,  ///< Text with variables of the environment.
  REGISTRY_BINARY = 3,
  REGISTRY_DWORD = 4,  ///< Four bytes, lowest first.
  REGISTRY_DWORD_BIG_ENDIAN = 5,
  REGISTRY_LINK = 6,
  REGISTRY_MULTI_STRING = 7,  ///< Zero-ended texts and a zero.
  REGISTRY_QWORD = 11,        ///< Eight bytes, lowest first.
};

namespace platform {

/// What reading or enumerating a value tells beside its data.
struct RegistryValueInfo {
  DWORD type = REGISTRY_NONE;
  /// Bytes of data.
  std::size_t size = 0;
};

/// A value with its name, as an enumeration gives it.
struct RegistryValue {
  std::string name;
  DWORD type = REGISTRY_NONE;
  std::string data;
};

/// The registry trees of the user and the machine.
///
/// Paths are key names with `\` between them; empty names between are skipped. Names of keys and
/// values are bytes, keep their spelling and are compared without regard to the case of ASCII
/// letters. A key name is 1 to 255 bytes, without `\` and zeros, and the whole path of a key at
/// most 16,383; a value name up to 16,383 bytes, without zeros, and "" is a key's default value.
/// Data are at most 64 MiB.
///
/// What a call reports as done survives the death of the process at any later moment, and other
/// processes see it at once. Reading makes no files where there are none. Any thread.
///
/// Errors: `kNotFound` for a key, value or index that isn't there, for a handle that is closed or
/// whose key was deleted, and where there is no place for a store at all; never for a store that is
/// there and can't be had. That is `kBusy` if another process holds it, `kAccessDenied` if it is
/// another user's, `kNoSpace` for a full disk and for want of memory (code `ENOMEM`), else `kOther`
/// and what the system says. `kInvalidArgument` also stands for names and paths against the rules.
///
/// A call waits for other processes at most 20 seconds. When that was in vain, the calls of the
/// next 20 seconds try once and don't wait.
class Registry {
 public:
  Registry() = default;
  Registry(const Registry&) = delete;
  Registry& operator=(const Registry&) = delete;
  virtual ~Registry();

  /// Opens the key at `path` below an open key; "" opens that key once more.
  virtual Result<HKEY> OpenKey(HKEY key, std::string_view path) = 0;
  /// The same, and makes every key of the path that doesn't exist.
  virtual Result<HKEY> CreateKey(HKEY key, std::string_view path) = 0;
  /// Closes an opened key; a root, a closed key and `kNoKey` are ignored.
  virtual void CloseKey(HKEY key) = 0;
  /// Whether both are open and stand for one and the same key.
  virtual bool IsSameKey(HKEY one, HKEY other) = 0;

  /// Reads a value into `data`. If it doesn't fit, the error is `kBufferTooSmall`, nothing is
  /// written, and the result tells the type and the size all the same.
  virtual Result<RegistryValueInfo> ReadValue(HKEY key, std::string_view name,
                                              std::span<char> data) = 0;
  virtual Error SetValue(HKEY key, std::string_view name, DWORD type, std::string_view data) = 0;
  virtual Error DeleteValue(HKEY key, std::string_view name) = 0;

  /// Deletes the key at `path`, which isn't empty, with its values. `kBusy` if it has sub-keys.
  virtual Error DeleteKey(HKEY key, std::string_view path) = 0;

  /// The value or the name of the sub-key with an index from 0. The order stays while nothing is
  /// added or deleted, and callers may rely on no other order.
  virtual Result<RegistryValue> EnumValue(HKEY key, std::size_t index) = 0;
  virtual Result<std::string> EnumKey(HKEY key, std::size_t index) = 0;

  /// A number for the state of all that is below a root, for who keeps what was read from there:
  /// while it stays the same, nothing was changed, by whatever process. No other state, of any
  /// registry of the process, has it. 0 if that can't be told without a look; a read may help.
  /// Cheaper than a read, and takes no memory.
  virtual std::uint64_t Stamp(HKEY) { return 0; }

  /// Puts everything reported as done on the disk.
  virtual Error Flush() = 0;
};

}  // namespace platform
}  // namespace dq
