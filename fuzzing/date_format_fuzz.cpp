// Any text as a date-time format. Input: the notation, then the format.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "dqlib/datetime/date_time_fmt_def.h"
#include "dqlib/framework/base/ole_date_time.h"

namespace {

using dq::CLGDateTimeFmtDef;

void Require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const auto notation = static_cast<dq::DATETIME_FMTTYPE>(data[0] % 3);
  const dq::CString text(std::string_view(reinterpret_cast<const char*>(data) + 1, size - 1));

  // A format that was made of a text stays the same when it is made of its own texts.
  const CLGDateTimeFmtDef def(text);
  const dq::CString display = def.GetFmtDateTime(dq::DTF_DISP);
  for (const auto own : {dq::DTF_DISP, dq::DTF_OLE}) {
    const CLGDateTimeFmtDef again(def.GetFmtDateTime(own));
    Require(again.GetFmtDateTime(dq::DTF_DISP) == display);
    Require(again.GetType() == def.GetType());
  }
  Require(display.IsEmpty() || CLGDateTimeFmtDef::IsValidDateTimeFmt(display, dq::DTF_DISP));

  // What is converted is valid, and what is valid is converted unless separators meet.
  for (const auto to : {dq::DTF_OLE, dq::DTF_DISP, dq::DTF_WIN}) {
    dq::CString result;
    if (!CLGDateTimeFmtDef::GetDateTimeFmt(notation, text, to, result)) continue;
    Require(result.IsEmpty() || CLGDateTimeFmtDef::IsValidDateTimeFmt(result, to));
    dq::CString back;
    if (CLGDateTimeFmtDef::GetDateTimeFmt(to, result, to, back) && to != dq::DTF_WIN) {
      Require(back == result);
    }
  }

  // Whatever it is, it prints; without a per cent sign, it prints itself.
  const dq::CString printed = dq::COleDateTime(1993, 4, 3, 17, 34, 0).Format(text);
  const std::string_view seen(static_cast<const char*>(text));
  if (seen.find('%') == seen.npos) Require(printed.View() == seen);
  // A text is read as a value or not at all, and what is read is printed as what is read again.
  dq::COleDateTime value;
  if (value.ParseDateTime(text)) {
    dq::COleDateTime again;
    Require(again.ParseDateTime(value.Format("%Y-%m-%d %H:%M:%S")));
    Require(again.ToDate() == value.ToDate());
  } else {
    Require(value.GetStatus() == dq::COleDateTime::invalid);
  }
  return 0;
}
