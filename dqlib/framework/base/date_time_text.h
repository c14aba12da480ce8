// Dates and times to texts and back, by rules that are the same on every machine.

#pragma once

#include <optional>
#include <string_view>

#include "dqlib/framework/base/c_string.h"
#include "dqlib/platform/types.h"

namespace dq::detail {

/// A date from year 100 to 9999 and a time of day. Default: the origin of all dates.
struct DateTimeParts {
  int year = 1899;
  int month = 12;
  int day = 30;
  int hour = 0;
  int minute = 0;
  int second = 0;

  /// Whether there are such a date and such a time.
  bool Exists() const;
};

/// Lays out parts that exist by a format of `%` codes (see `COleDateTime::Format`).
CString LayOutDateTime(const DateTimeParts& parts, std::string_view format);
/// The same into `text`, whose memory is used again where it has room.
void LayOutDateTime(const DateTimeParts& parts, std::string_view format, CString& text);

/// How much is taken for a date or a time.
enum class Reading {
  kPlain,  ///< What people write.
  /// The elements that a format has told apart: no surplus zeros, no blanks but " ", no half day of
  /// one letter, and no digits that are glued to a name.
  kExact,
};

/// What a text tells.
struct ToldParts {
  bool date = false;
  bool time = false;
};

/// Reads a date, a time or both (see `COleDateTime::ParseDateTime`); what the text doesn't tell, as
/// `told` says if it isn't null, has its default. No value if it can't be read.
std::optional<DateTimeParts> ReadDateTime(std::string_view text, DWORD flags, DWORD locale,
                                          Reading reading = Reading::kPlain,
                                          ToldParts* told = nullptr);

/// The number of the month with this English name, in full or by its first three letters, in either
/// case; 0 if there is none, or if the user's locale calls another month so.
int EnglishMonth(std::string_view name);

/// The bytes of the longest name of a month, a day or a half day in the user's locale that the text
/// begins with and that one of the separators or the end follows; 0 if there is none.
std::size_t NameLength(std::string_view text, std::string_view separators);

/// A name of the locale without the blanks that some locales pad their names with, which would keep
/// a name that was printed from being read; "" if it can't be had.
std::string LocaleName(DWORD item, DWORD locale);

}  // namespace dq::detail
