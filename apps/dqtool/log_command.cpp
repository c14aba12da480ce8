// dqtool log: writes an entry to a log file.

#include <charconv>
#include <limits>
#include <string>

#include "apps/dqtool/command.h"
#include "dqlib/frame/system_error_msg.h"
#include "dqlib/output/log.h"

namespace dqtool {
namespace {

struct Options {
  std::string file;
  std::string text;
  dq::DWORD kilobytes = 0;
  bool once = false;
};

dq::DWORD ParseKilobytes(const std::string& word) {
  dq::DWORD kilobytes = 0;
  const char* const end = word.data() + word.size();
  const auto parsed = std::from_chars(word.data(), end, kilobytes);
  if (parsed.ec != std::errc{} || parsed.ptr != end) {
    throw WrongUsage("KB is a number from 0 to " +
                     std::to_string(std::numeric_limits<dq::DWORD>::max()) + ", not '" + word +
                     "'");
  }
  return kilobytes;
}

Options Parse(Words words) {
  Options options;
  std::vector<std::string> given;
  bool options_end = false;
  for (; !words.empty(); words = words.subspan(1)) {
    const std::string& word = words[0];
    if (options_end || !word.starts_with("--")) {
      given.push_back(word);
    } else if (word == "--") {
      options_end = true;
    } else if (word == "--once") {
      options.once = true;
    } else if (word == "--max") {
      if (words.size() < 2) throw WrongUsage("--max needs a KB");
      options.kilobytes = ParseKilobytes(words[1]);
      words = words.subspan(1);
    } else {
      RefuseOption(word);
    }
  }
  if (given.size() != 2) throw WrongUsage("a FILE and a TEXT are needed");
  options.file = given[0];
  options.text = given[1];
  return options;
}

int Append(const Options& options) try {
  dq::CDQLog log(options.file.c_str(), options.kilobytes, true);
  if (!log.HasFile()) return Complain("log: cannot write " + options.file);
  log.LogMessage(dq::CString(options.text));
  log.WaitForWarning();
  return kYes;
} catch (const dq::CFileException& failure) {
  const dq::CString reason = dq::CDQSystemErrorMsg(failure.m_lOsError).GetErrorMessage();
  std::string text = "log: cannot write " + options.file + ": " + std::string(reason.View());
  text.erase(text.find_last_not_of("\r\n") + 1);
  return Complain(text);
}

int RunLog(Words words) {
  const Options options = Parse(words);
  if (!options.once) return Append(options);
  const int done = dq::DQLIB_WriteLogFile(options.file.c_str(), options.text.c_str(),
                                          static_cast<long>(options.kilobytes));
  return done == 1 ? kYes : Complain("log: cannot write " + options.file);
}

const Command kLog{
    "log", "FILE TEXT [--max KB] [--once]", "Writes an entry to a log file.",
    "The entry is one line of date, time and TEXT; an empty TEXT writes nothing. When the file is\n"
    "larger than KB kilobytes (1000 without --max) then, the warning of logs is shown.\n"
    "\n"
    "  --max KB  the size from which on the log is too large; 0 is the usual one\n"
    "  --once    two lines, date and time in the first; a file of KB kilobytes or more starts\n"
    "            over, and without --max never\n"
    "  --        what follows are no options\n",
    RunLog};

}  // namespace
}  // namespace dqtool
