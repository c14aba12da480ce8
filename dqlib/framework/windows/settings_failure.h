// Settings that are there and can't be read, told behind operations that answer with a default.

#pragma once

#include "dqlib/platform/error.h"

namespace dq {

/// Where settings are read from: the user's or the machine's part of the registry. The profile file
/// of an application without a registry key is the user's, too.
enum class SettingsStore { kUser, kMachine };

/// Notes how a reading of settings has ended. That there is no such setting is no failure; one is
/// told the person in a box with an exclamation mark, once until the store can be read again or
/// fails in another way. Returns the failure, none for what is none. For the user-interface thread.
platform::Error NoteSettingsReading(SettingsStore store, const platform::Error& error);

/// The failure that the store's last reading has met, by whatever operation; none if it met none.
/// For the user-interface thread.
platform::Error LastSettingsFailure(SettingsStore store);

}  // namespace dq
