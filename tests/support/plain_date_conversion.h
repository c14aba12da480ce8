// The conversion of a value from one date-time format to another, told step by step and without
// regard to its cost.

#pragma once

#include <optional>

#include "dqlib/datetime/date_time.h"

namespace dq::test {

/// As `CLGDateTimeFormat::FormatDateTime` promises.
inline int ConvertPlainly(int code, const CString& in, CString& out, const CString& in_fmt,
                          const CString& out_fmt) {
  out = in;
  if (in == "[NULL]") return 0;
  std::optional<CLGDateTimeFmtDef> source;
  std::optional<CLGDateTimeFmtDef> target;
  if (!in_fmt.IsEmpty()) {
    source.emplace(in_fmt);
    const CString part = source->GetFmtDateTime(code, DTF_DISP);
    if (part != in_fmt) source.emplace(part);
  }
  if (!out_fmt.IsEmpty()) target.emplace(out_fmt);
  CLGDateTime value;
  if (value.ParseDateTime(in, source ? &*source : nullptr) == 0) return 0;
  out = value.Format(code, target ? &*target : nullptr);
  return 1;
}

}  // namespace dq::test
