// Any text as a value of any format. Input: the data type code, the format of the source, a line
// end, that of the target, a line end, the value.

#include "fuzzing/fuzzing.h"

void dq::fuzz::Try(std::string_view input) {
  const int code = TakeByte(input) % 32;
  const CString in_fmt(TakeLine(input)), out_fmt(TakeLine(input)), in(input);

  // The first time the formats are prepared, the second time they are known.
  CLGDB2DateTimeFormat format(1, 8);
  CString first, second, rest, ms;
  const int result = format.FormatDateTime(code, in, first, in_fmt, out_fmt);
  Require(format.FormatDateTime(code, in, second, in_fmt, out_fmt) == result && second == first);
  Require(result == 1 || first == in);
  // What is read and printed in full is read again as the same.
  const CString full = "YYYY-MM-DD HH24:MI:SS";
  if (format.FormatDateTime(6, in, first, in_fmt, full) != 0) {
    Require(format.FormatDateTime(6, first, second, full, full) == 1 && second == first);
  }
  // Milliseconds that are cut out and put back make the text again, unless there were none.
  CLGDateTimeFormat::ExtractMilliSecond(in, rest, ms);
  CLGDateTimeFormat::InsertMilliSecond(second, rest, ms);
  Require(ms.IsEmpty() || second.GetLength() == in.GetLength());
  CLGSybaseDateTimeFormat(1, 8).FormatDateTime(code, in, second, in_fmt, out_fmt);
}
