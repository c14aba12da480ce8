// Any text as a value of any format. Input: the data type code, the format of the source, a line
// end, that of the target, a line end, the value.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "dqlib/datetime/date_time_format.h"
#include "tests/support/plain_date_conversion.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

/// Takes what stands before a line end off the text, and the line end.
dq::CString TakeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  const dq::CString line(text.substr(0, end));
  text.remove_prefix(end == text.npos ? text.size() : end + 1);
  return line;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const int code = data[0] % 32;
  std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  const dq::CString in_fmt = TakeLine(text);
  const dq::CString out_fmt = TakeLine(text);
  const dq::CString in(text);

  dq::CString expected;
  const int result = dq::test::ConvertPlainly(code, in, expected, in_fmt, out_fmt);
  // The first time the formats are prepared, the second time they are known.
  dq::CLGDB2DateTimeFormat format(1, 8);
  for (int time = 0; time < 2; ++time) {
    dq::CString out;
    Require(format.FormatDateTime(code, in, out, in_fmt, out_fmt) == result);
    Require(out == expected);
  }
  // What is read and printed in full is read again as the same.
  const dq::CString standard_fmt = "YYYY-MM-DD HH24:MI:SS";
  dq::CString standard;
  if (format.FormatDateTime(6, in, standard, in_fmt, standard_fmt) != 0) {
    dq::CString again;
    Require(format.FormatDateTime(6, standard, again, standard_fmt, standard_fmt) == 1);
    Require(again == standard);
  }
  // Milliseconds that are cut out and put back make the text again, unless there were none.
  dq::CString rest;
  dq::CString ms;
  dq::CString whole;
  dq::CLGDateTimeFormat::ExtractMilliSecond(in, rest, ms);
  dq::CLGDateTimeFormat::InsertMilliSecond(whole, rest, ms);
  Require(ms.IsEmpty() || whole.GetLength() == in.GetLength());
  dq::CLGSybaseDateTimeFormat(1, 8).FormatDateTime(code, in, whole, in_fmt, out_fmt);
  return 0;
}
