// Dates and times part by part, as a picture string ("M/d/yyyy h:mm tt") shows them.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/framework/base/date_time_text.h"

namespace dq::detail {

/// What a part of a picture shows.
enum class DatePart {
  kText,
  kDay,
  kWeekDay,
  kMonth,
  kYear,
  kHour,
  kHour12,
  kMinute,
  kSecond,
  kHalf
};

/// A part: the letters for it in the picture ("yyyy"), or the text that stands for itself.
struct PicturePart {
  DatePart part = DatePart::kText;
  std::string letters;
};

/// A picture, cut into its parts. d and dd are the day of the month, ddd and dddd names of the day
/// of the week; M and MM the month, MMM and MMMM its name; yy and yyyy the year, h, hh, H, HH, m,
/// mm, s and ss the time, t and tt the half of the day. Text stands in single quotes, of which two
/// are one, and all else for itself. Names are the user's locale's.
class DatePicture {
 public:
  explicit DatePicture(std::string_view picture);

  const std::vector<PicturePart>& parts() const { return parts_; }
  /// The text of a part for a point in time that exists.
  static std::string TextOf(const PicturePart& part, const DateTimeParts& time);
  /// Reads a text that is laid out like the picture: numbers with or without leading zeros, years
  /// of two digits (that of `time` where it has them, else 1930 to 2029) or of four, names in full
  /// or short in any case, and any blanks around what stands between them. What the picture hasn't
  /// stays as in `time`. No value if it isn't, or there is no such time.
  std::optional<DateTimeParts> Read(std::string_view text, const DateTimeParts& time) const;

 private:
  std::vector<PicturePart> parts_;
};

/// The year from 1930 to 2029 with the two digits.
int FullYear(int year);
/// The lowest and the highest number of a part in a point in time.
int LowestOf(DatePart part);
int HighestOf(DatePart part, const DateTimeParts& time);
/// The number of a part: that of the day of the month for a day of the week.
int NumberOf(DatePart part, const DateTimeParts& time);
/// Sets it, if it isn't out of its bounds. A day that another month hasn't becomes its last. False
/// if it is, and for a text.
bool SetNumber(DatePart part, int number, DateTimeParts& time);
/// Moves it by so many steps, from one end on at the other; a year stops there.
bool StepNumber(DatePart part, int steps, DateTimeParts& time);

}  // namespace dq::detail
