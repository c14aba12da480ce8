// dqtool log: writes an entry to a log file.

#include <optional>
#include <string>

#include "apps/common/content.h"
#include "apps/dqtool/command.h"
#include "dqlib/frame/system_error_msg.h"
#include "dqlib/output/log.h"

namespace dqtool {
namespace {

constexpr char kMax[] = "--max";

void Append(const std::string& file, const std::string& text, dq::DWORD kilobytes) {
  dq::CDQLog log(file.c_str(), kilobytes, true);
  if (!log.HasFile()) throw dq::CFileException(log.GetOpenFailure());
  log.LogMessage(dq::CString(text));
  log.WaitForWarning();
}

int Write(const Arguments& arguments, const std::string& file) try {
  const std::string& text = arguments.words[1];
  const std::string* const word = arguments.Find(kMax);
  const auto kilobytes = word == nullptr ? 0 : ReadNumber<dq::DWORD>(*word, "KB");
  if (arguments.Has("--once")) {
    dq::WriteLogEntry(file.c_str(), text.c_str(), static_cast<long>(kilobytes));
  } else {
    Append(file, text, kilobytes);
  }
  return kYes;
} catch (const dq::CFileException& failure) {
  const dq::CString reason = dq::CDQSystemErrorMsg(failure.m_lOsError).GetErrorMessage();
  return Complain("cannot write " + file + ": " + std::string(reason.View()));
}

int RunLog(const Arguments& arguments) {
  const std::string& file = arguments.words[0];
  if (file.empty()) throw WrongUsage("FILE is empty");
  if (file != "-") return Write(arguments, file);
  const dqapps::TemporaryFile entry;
  if (entry.path().empty()) return kNo;
  const int status = Write(arguments, entry.path());
  std::optional<std::string> text = dqapps::ReadContent(entry.path());
  if (!text) return kNo;
  if (text->ends_with('\n')) {
    text->pop_back();
    PrintLine(*text);
  }
  return status;
}

const Command kLog{
    "log",
    "Writes an entry to a log file.",
    "The entry is one line of date, time and TEXT; an empty TEXT writes nothing. When the file is\n"
    "larger than KB kilobytes (1000 without --max) then, the warning of logs is shown.\n"
    "FILE may be '-', standard output.\n",
    {{"FILE TEXT",
      RunLog,
      {{kMax, "KB", "the size from which on the log is too large; 0 is the usual one"},
       {"--once", "",
        "two lines, date and time in the first; a file of KB kilobytes or more starts\n"
        "over, and without --max never"}}}}};

}  // namespace
}  // namespace dqtool
