// Helpers over the registry. They report failure by their results only.

#pragma once

#include "dqlib/framework/base/c_string.h"
#include "dqlib/platform/registry.h"

namespace dq {

/// The text of a value of any type, up to its first zero; "" if there is none, if it is longer than
/// 260 bytes, or if a name is null. A missing value and an empty one can't be told apart.
CString DQLIB_AppFindValueInRegistry(HKEY root, const char* path, const char* name);

/// Sets a text value of `length` bytes, and makes its key if need be. Nothing happens if a text is
/// null or `length` is below 0. The caller says whether the zero behind the text counts.
void DQLIB_AppWriteValueInRegistry(HKEY root, const char* path, const char* name, const char* text,
                                   int length);

/// Moves all values and sub-keys from one open key to the other; in spite of its name nothing but
/// the empty source is left. Onto the same key nothing changes. A value of more than 7,680 bytes,
/// or that the store refuses, and those that enumerate behind it, stay behind in the source, but
/// are lost with their key where that is a sub-key; a sub-key that can't be made in the target or
/// deleted from the source stays, and so do those behind it; where the source can't be read, all
/// that isn't moved yet stays. That is no failure: who must know looks what is left in the source.
/// Returns 0 only if memory has no room, and where keys nest more than 512 deep, as they do without
/// end if the target lies below the source. Not atomic: an interrupted move leaves what was moved
/// in the target.
BOOL DQLIB_CopyRegistryKey(HKEY source, HKEY target);

/// Renames the key at a path below `root`; onto another existing key it merges, and moved values
/// overwrite those of the same name. A change of case goes through a temporary name, since names
/// that differ by case only are the same. Returns non-zero on success; 0, with nothing done, for a
/// key that isn't there, an empty path, and paths of which one leads through the other; 0, with
/// what wasn't moved left where it was, if the key can't be read to its end.
BOOL DQLIB_RenameRegistryItem(HKEY root, const char* old_name, const char* new_name);

/// Levels of keys that the moves above reach, that of the key itself included, which are all that
/// the platform they come from allows. A move that meets more ends there.
inline constexpr int kMovedLevels = 512;

/// Whether a value is one that the moves above leave or lose.
bool IsTooLargeToMove(const platform::RegistryValue& value);

}  // namespace dq
