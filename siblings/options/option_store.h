// Where the values of options are kept that somebody has set: one registry value for each below the
// application's root key, section "Options". It is named by the option's number, because names and
// labels may change from release to release, with a point and the platform's word behind it for the
// value of one platform.

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "dqlib/platform/error.h"
#include "siblings/options/options_file.h"

namespace dq::detail {

/// A value that was looked for: none if there is none; an error if it could not be read, which has
/// been told then.
using FoundOption = platform::Result<std::optional<OptionValue>>;

/// The value that was kept for the platform, or for all with `DBMS_NONE`; none if there is none or
/// it is no value of the option's kind, as an earlier release or another program may have left one.
FoundOption ReadKeptOption(const OptionDefinition& option, DBMS platform);

/// Where values are kept: the application's root key.
std::string OptionRoot();
/// Whether that is the root now. Takes no memory.
bool IsOptionRoot(std::string_view root);

platform::Error KeepOption(const OptionDefinition& option, DBMS platform, const OptionValue& value);

/// Takes the kept value away; one that isn't there is no error.
platform::Error ForgetOption(const OptionDefinition& option, DBMS platform);

/// The value that the machine's part of the registry gives, where the options file names one there;
/// none if it isn't there as a text or is no value of the option's kind.
FoundOption ReadMachineOption(const OptionDefinition& option);

}  // namespace dq::detail
