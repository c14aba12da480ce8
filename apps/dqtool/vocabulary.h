// Names of platforms, kinds of objects, applications and server versions among a command's words.

#pragma once

#include <string>
#include <string_view>

#include "apps/dqtool/command.h"
#include "dqlib/dbvocab/dbms.h"
#include "dqlib/dbvocab/object_types.h"
#include "dqlib/dbvocab/version_string.h"

namespace dqtool {

inline constexpr Option kPlatform{"--platform", "P",
                                  "none, sybase, sqlserver, db2, oracle or db2os390", Times::kOnce};

/// The platform of that word, in any case; throws `WrongUsage` if there is none.
dq::DBMS PlatformOf(const std::string& word);

/// The kind of objects: by its number, or by what it is called on the platform or, if no kind is
/// called so there, on another one, in any case. Throws `WrongUsage` if it is neither.
dq::OBJECTTYPES TypeOf(const std::string& word, dq::DBMS platform);

/// The same, for a kind that an object can be of, or none: throws for other numbers, too.
dq::OBJECTTYPES TypeOfObject(const std::string& word, dq::DBMS platform);

/// Whether the text is numbers with dots between.
bool IsNumbersWithDots(std::string_view text);

/// Whether a version could be read: numbers stand before its first dot.
bool HoldsVersion(const dq::CDQDBVersionString& version);

/// A server's version: a number as it is, any other text as the platform's servers call themselves.
/// Throws `WrongUsage` if it is none, or has a number of more than nine digits.
double VersionOf(const std::string& word, dq::DBMS platform);

/// Makes the program pass for the application of that code, in any case. Throws `WrongUsage` if
/// there is none.
void SetApplication(const std::string& code);

}  // namespace dqtool
