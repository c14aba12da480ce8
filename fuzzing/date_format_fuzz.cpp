// Any text as a date-time format. Input: the notation, then the format.

#include "fuzzing/fuzzing.h"

void dq::fuzz::Try(std::string_view input) {
  const auto notation = static_cast<DATETIME_FMTTYPE>(TakeByte(input) % 3);
  const CString text(input);

  // A format that was made of a text stays the same when it is made of its own texts.
  const CLGDateTimeFmtDef def(text);
  const CString display = def.GetFmtDateTime(DTF_DISP);
  for (const auto own : {DTF_DISP, DTF_OLE}) {
    const CLGDateTimeFmtDef again(def.GetFmtDateTime(own));
    Require(again.GetFmtDateTime(DTF_DISP) == display && again.GetType() == def.GetType());
  }
  Require(display.IsEmpty() || CLGDateTimeFmtDef::IsValidDateTimeFmt(display, DTF_DISP));

  // What is converted is valid, and what is valid is converted unless separators meet.
  for (const auto to : {DTF_OLE, DTF_DISP, DTF_WIN}) {
    CString result, back;
    if (!CLGDateTimeFmtDef::GetDateTimeFmt(notation, text, to, result)) continue;
    Require(result.IsEmpty() || CLGDateTimeFmtDef::IsValidDateTimeFmt(result, to));
    if (!CLGDateTimeFmtDef::GetDateTimeFmt(to, result, to, back)) continue;
    Require(to == DTF_WIN || back == result);
  }

  // Without a per cent sign, it prints itself; what it is read as is printed as what is read again.
  const CString printed = COleDateTime(1993, 4, 3, 17, 34, 0).Format(text);
  Require(text.Find('%') >= 0 || printed == static_cast<const char*>(text));
  COleDateTime value, again;
  Require(value.ParseDateTime(text) == (value.GetStatus() == COleDateTime::valid));
  if (value.GetStatus() == COleDateTime::invalid) return;
  Require(again.ParseDateTime(value.Format("%Y-%m-%d %H:%M:%S")));
  Require(again.ToDate() == value.ToDate());
}
