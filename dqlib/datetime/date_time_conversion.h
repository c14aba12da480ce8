// Values' texts from one date-time format to another, for data editors that convert a column of
// them.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "dqlib/datetime/date_time_fmt_def.h"
#include "dqlib/framework/base/c_string.h"

namespace dq::detail {

struct DateTimeParts;

/// A conversion with its formats prepared.
///
/// Values of plain numbers, English names of months and "AM" or "PM" are read and printed without
/// a definition, a list of tokens or an object of a value; anything else, and whatever might show a
/// message or fail, goes through `CLGDateTime`, with the same result. Nothing prepared depends on
/// the locale, which is asked for each value.
class DateTimeConversion {
 public:
  /// For columns of a data type, by formats in display or OLE notation; "" for none.
  DateTimeConversion(int code, const CString& in_fmt, const CString& out_fmt);

  bool IsFor(int code, const CString& in_fmt, const CString& out_fmt) const {
    return code == code_ && in_fmt.View() == in_fmt_.View() && out_fmt.View() == out_fmt_.View();
  }

  /// As `CLGDateTimeFormat::FormatDateTime` does; `out` may be `in`.
  int Convert(const CString& in, CString& out);

 private:
  /// A cell of the source format.
  struct Step {
    DATETIMETYPE kind;
    /// What a separator of the date must be.
    char separator;
  };

  void PrepareSteps();
  bool ReadPlain(std::string_view text, DateTimeParts& parts) const;
  int Walk(const CString& in, CString& out);

  int code_;
  CString in_fmt_;
  CString out_fmt_;
  std::shared_ptr<CLGDateTimeFmtDef> source_;
  std::shared_ptr<CLGDateTimeFmtDef> target_;
  /// The source format; empty if no value is plain in it.
  std::vector<Step> steps_;
  /// How values are printed.
  CString layout_;
  bool two_digit_year_ = false;
};

/// The conversions asked for lately, a few of them. User-interface thread.
class DateTimeConversions {
 public:
  /// `DateTimeConversion::Convert`; `out` may be any of the others.
  int Convert(int code, const CString& in, CString& out, const CString& in_fmt,
              const CString& out_fmt);

 private:
  DateTimeConversion* Find(int code, const CString& in_fmt, const CString& out_fmt);

  /// Enough for dates, times and both, to the server and back.
  std::array<std::unique_ptr<DateTimeConversion>, 8> prepared_;
  std::size_t last_ = 0;
  std::size_t next_ = 0;
};

}  // namespace dq::detail
