// dqtool output: puts messages into an output pane and prints its rows.

#include <charconv>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "apps/common/content.h"
#include "apps/dqtool/command.h"
#include "dqlib/frame/system_error_msg.h"
#include "dqlib/framework/base/file.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/output/output_wnd.h"
#include "siblings/options/options_server.h"

namespace dqtool {
namespace {

constexpr Option kMax{"--max", "N", "how many rows the pane keeps"};
constexpr Option kLog{"--log", "FILE", "appends each row to the file too"};
constexpr Option kLimit{"--limit", "KB",
                        "the file starts over when it has so many kilobytes; 0 for never"};

/// One message.
struct Message {
  int type;
  std::string text;
};

/// "\n" is a line feed and "\\" a backslash; other backslashes stand for themselves.
std::string Unescaped(std::string_view text) {
  std::string plain;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const std::string_view two = text.substr(at, 2);
    if (two == "\\n" || two == "\\\\") ++at;
    plain += two == "\\n" ? '\n' : text[at];
  }
  return plain;
}

/// `type<TAB>text`; no value, and why, if it is none.
std::optional<Message> ReadMessage(std::string_view line, std::string& wrong) {
  const std::size_t tab = line.find('\t');
  wrong = tab == std::string_view::npos               ? "no tab"
          : line.find('\0') != std::string_view::npos ? "a zero byte"
                                                      : "";
  if (!wrong.empty()) return std::nullopt;
  Message message{.type = 0, .text = Unescaped(line.substr(tab + 1))};
  const std::string_view type = line.substr(0, tab);
  const auto parsed = std::from_chars(type.data(), type.data() + type.size(), message.type);
  // One that is too large is a number that is no type.
  if (parsed.ec == std::errc::result_out_of_range) message.type = std::numeric_limits<int>::max();
  if (parsed.ec != std::errc::invalid_argument && parsed.ptr == type.data() + type.size()) {
    return message;
  }
  wrong = "the type is no number: '" + std::string(type) + "'";
  return std::nullopt;
}

/// Has this run's messages go to the file. False, which has been said, if it can't be written.
bool UseLog(const Arguments& arguments) {
  const std::string* const path = arguments.Find(kLog.name);
  const std::string* const limit = arguments.Find(kLimit.name);
  if (path == nullptr && limit != nullptr) throw WrongUsage("--limit needs --log");
  if (path == nullptr) return true;
  if (path->empty()) throw WrongUsage("FILE is empty");
  const int kilobytes =
      limit == nullptr ? 0
                       : ReadNumber<int>(*limit, kLimit.value, 0, std::numeric_limits<int>::max());
  dq::CFile file;
  dq::CFileException failure;
  constexpr dq::UINT kAppend =
      dq::CFile::modeCreate | dq::CFile::modeNoTruncate | dq::CFile::modeWrite;
  if (!file.Open(path->c_str(), kAppend, &failure)) {
    const dq::CString reason = dq::CDQSystemErrorMsg(failure.m_lOsError).GetErrorMessage();
    Complain("cannot write " + *path + ": " + std::string(reason.View()));
    return false;
  }
  file.Close();
  dq::CDQOptionsServer& options = *dq::CDQOptionsServer::GetObject();
  options.HoldValue(50256, "1");
  options.HoldValue(50255, *path);
  options.HoldValue(50257, std::to_string(kilobytes));
  return true;
}

int RunOutput(const Arguments& arguments) {
  const std::string* const max = arguments.Find(kMax.name);
  const int entries =
      max == nullptr ? 0 : ReadNumber<int>(*max, kMax.value, 1, std::numeric_limits<int>::max());
  if (!UseLog(arguments)) return kNo;
  dq::CFrameWnd frame;
  frame.Create("OutputFrame", "", {0, 0, 640, 480});
  dq::CDQOutputWnd pane;
  pane.Create(&frame);
  if (entries > 0) pane.SetMaxEntries(entries);
  int status = kYes;
  int number = 0;
  std::string line;
  std::string wrong;
  while (dqapps::ReadInputLine(line)) {
    ++number;
    if (const auto message = ReadMessage(line, wrong)) {
      pane.AddMessage(message->text.c_str(), message->type);
    } else {
      status = Complain("line " + std::to_string(number) + ": " + wrong);
    }
  }
  if (dqapps::EndOfInputLines() != kYes) status = kNo;
  if (const std::size_t lost = pane.GetLostRows(); lost > 0) {
    status =
        Complain("rows missing in " + *arguments.Find(kLog.name) + ": " + std::to_string(lost));
  }
  Listing rows(arguments);
  const dq::CDQTree& tree = *pane.GetTreeWnd();
  for (int row = 0; row < tree.GetCount(); ++row) {
    rows.Add({{"time", std::string_view(tree.CellText(row, 0))},
              {"source", std::string_view(tree.CellText(row, 1))},
              {"text", std::string_view(tree.CellText(row, 2))}});
  }
  return rows.End(status);
}

const Command kOutput{
    "output",
    "Puts messages into an output pane and prints its rows.",
    "Each line of standard input is a message: its type, a tab, its text, in which '\\n' is a\n"
    "line feed and '\\\\' a backslash. Types are 0 to 2, information, warning and error of the\n"
    "program, 3 to 5, the same of the database, 6 and 7, start and end of a task; any other\n"
    "number counts as 0. A line that is no message is told, the others are put in, and the exit\n"
    "status is 1. At the end the rows that the pane has are printed: time, source and text, with\n"
    "tabs between. What the options say holds for this run alone.\n"
    "\n"
    "JSON: a list of {\"time\", \"source\", \"text\"}.\n",
    {{"", RunOutput, {kMax, kLog, kLimit, kJson}}}};

}  // namespace
}  // namespace dqtool
