// dqtool date: date-time formats.

#include <charconv>
#include <cstdio>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "apps/dqtool/command.h"
#include "apps/dqtool/platform_word.h"
#include "dqlib/datetime/data_type.h"
#include "dqlib/datetime/date_time_fmt_def.h"
#include "dqlib/datetime/date_time_fmt_dictionary.h"
#include "dqlib/datetime/date_time_format.h"
#include "dqlib/datetime/predefined_formats.h"
#include "siblings/options/options_server.h"

namespace dqtool {
namespace {

using dq::CLGDateTimeFmtDef;
using dq::DATETIME_FMTTYPE;

/// What a subcommand was given: the values of its options, and the other words.
struct Arguments {
  std::vector<std::pair<std::string, std::string>> options;
  std::vector<std::string> words;

  const std::string* Find(std::string_view name) const {
    for (const auto& [option, value] : options) {
      if (option == name) return &value;
    }
    return nullptr;
  }

  const std::string& Get(const std::string& name) const {
    const std::string* value = Find(name);
    if (value == nullptr) throw WrongUsage(name + " is needed");
    return *value;
  }
};

/// Formats may begin with a dash, so they stand alone or behind "--".
Arguments Sort(Words words, std::vector<std::string_view> options) {
  Arguments arguments;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string& word = words[i];
    if (word == "--") {
      arguments.words.insert(arguments.words.end(),
                             std::next(words.begin(), static_cast<std::ptrdiff_t>(i) + 1),
                             words.end());
      break;
    }
    if (!word.starts_with('-')) {
      arguments.words.push_back(word);
      continue;
    }
    bool known = false;
    for (const std::string_view option : options) known = known || word == option;
    if (!known) RefuseOption(word);
    if (++i == words.size()) throw WrongUsage(word + " needs a value");
    arguments.options.emplace_back(word, words[i]);
  }
  return arguments;
}

dq::CString OneFormat(const Arguments& arguments) {
  if (arguments.words.size() != 1) throw WrongUsage("one FORMAT is needed");
  return arguments.words.front();
}

DATETIME_FMTTYPE NotationOf(const std::string& name) {
  if (name == "display") return dq::DTF_DISP;
  if (name == "ole") return dq::DTF_OLE;
  if (name == "locale") return dq::DTF_WIN;
  throw WrongUsage("a notation is display, ole or locale, not '" + name + "'");
}

int CodeOf(const std::string& text) {
  int code = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, code);
  if (error != std::errc() || stop != end) {
    throw WrongUsage("a data type code is a number, not '" + text + "'");
  }
  return code;
}

void PrintFields(std::initializer_list<std::string_view> fields) {
  std::string line;
  for (const std::string_view field : fields) line.append(line.empty() ? "" : "\t").append(field);
  PrintLine(line);
}

int PrintCells() {
  const dq::detail::DictionaryUse<dq::CLGDateTimeFmtDictionary> dictionary;
  for (dq::POSITION position = dictionary->GetFirstEntry(); position != nullptr;) {
    const dq::CLGDateTimeFmtCell& cell = *dictionary->GetNext(position);
    PrintFields({std::to_string(cell.GetDateTimeElementType()),
                 cell.GetDateTimeElementFmt(dq::DTF_DISP).View(),
                 cell.GetDateTimeElementFmt(dq::DTF_OLE).View(),
                 cell.GetDateTimeElementFmt(dq::DTF_WIN).View(), cell.GetDescription().View(),
                 cell.GetExample().View()});
  }
  return kYes;
}

int PrintFormats() {
  for (const dq::PredefinedDateTimeFmt& row : dq::kPredefinedDateTimeFmts) {
    PrintFields({std::to_string(row.type), row.example, row.disp, row.ole, row.win});
  }
  return kYes;
}

int Convert(const Arguments& arguments) {
  const DATETIME_FMTTYPE from = NotationOf(arguments.Get("--from"));
  const DATETIME_FMTTYPE to = NotationOf(arguments.Get("--to"));
  const dq::CString format = OneFormat(arguments);
  dq::CString result;
  if (!CLGDateTimeFmtDef::GetDateTimeFmt(from, format, to, result)) {
    return Complain("date: can't be converted: '" + std::string(format.View()) + "'");
  }
  PrintLine(result.View());
  return kYes;
}

int IsValid(const Arguments& arguments) {
  const std::string* notation = arguments.Find("--notation");
  const bool valid =
      notation != nullptr
          ? CLGDateTimeFmtDef::IsValidDateTimeFmt(OneFormat(arguments), NotationOf(*notation))
          : CLGDateTimeFmtDef::IsValidDateTimeFmt(OneFormat(arguments));
  PrintLine(valid ? "true" : "false");
  return valid ? kYes : kNo;
}

int PrintPart(const Arguments& arguments) {
  const int code = CodeOf(arguments.Get("--code"));
  PrintLine(CLGDateTimeFmtDef(OneFormat(arguments)).GetFmtDateTime(code, dq::DTF_DISP).View());
  return kYes;
}

/// The formats of the platform that the options name.
std::unique_ptr<dq::CLGDateTimeFormat> FormatsOf(const Arguments& arguments) {
  const std::string& word = arguments.Get("--platform");
  Words words(&word, 1);
  const dq::DBMS platform = TakePlatform(words);
  constexpr int kDateFormatOption = 60000;
  dq::CDQOptionsServer::GetObject()->AddOptions("dqtool.dqo", kDateFormatOption, kDateFormatOption,
                                                true, false);
  std::unique_ptr<dq::CLGDateTimeFormat> format(
      dq::CDateTimeFormatFactory(platform, kDateFormatOption, 0).CreateObject());
  if (format == nullptr) throw WrongUsage("no date-time formats for " + word);
  return format;
}

/// Takes a line without its end off standard input; false at its end.
bool ReadLine(std::string& line) {
  line.clear();
  int character = 0;
  while ((character = std::getc(stdin)) != EOF) {
    if (character == '\n') return true;
    line += static_cast<char>(character);
  }
  return !line.empty();
}

int ConvertValues(const Arguments& arguments) {
  const std::string* const word = arguments.Find("--code");
  const int code = word != nullptr ? CodeOf(*word) : dq::DATATYPE_DATETIME;
  const dq::CString in_format = arguments.Get("--in");
  const dq::CString out_format = arguments.Get("--out");
  // Last, for it may write the option.
  const auto format = FormatsOf(arguments);
  int status = kYes;
  dq::CString out;
  const auto convert = [&](const std::string& value) {
    if (format->FormatDateTime(code, value, out, in_format, out_format) == 0) status = kNo;
    PrintLine(out.View());
  };
  for (const std::string& value : arguments.words) convert(value);
  if (!arguments.words.empty()) return status;
  for (std::string line; ReadLine(line);) convert(line);
  return std::ferror(stdin) == 0 ? status : Complain("date: standard input can't be read");
}

int PrintChoices(const Arguments& arguments) {
  if (!arguments.words.empty()) throw WrongUsage("default takes no words");
  const auto format = FormatsOf(arguments);
  for (const auto& [name, kind] : {std::pair("current", dq::CLGDateTimeFormat::DFK_CURRENT),
                                   std::pair("saved", dq::CLGDateTimeFormat::DFK_SAVED),
                                   std::pair("default", dq::CLGDateTimeFormat::DFK_DBMS_DEFAULT)}) {
    PrintFields({name, format->GetDispDateTimeFmt(dq::DATATYPE_DATETIME, kind).View()});
  }
  return kYes;
}

int RunDate(Words words) {
  if (words.empty()) {
    throw WrongUsage("cells, formats, notation, valid, part, convert or default is needed");
  }
  const std::string& name = words.front();
  const Words rest = words.subspan(1);
  if (name == "cells" || name == "formats") {
    if (!Sort(rest, {}).words.empty()) throw WrongUsage(name + " takes no words");
    return name == "cells" ? PrintCells() : PrintFormats();
  }
  if (name == "notation") return Convert(Sort(rest, {"--from", "--to"}));
  if (name == "valid") return IsValid(Sort(rest, {"--notation"}));
  if (name == "part") return PrintPart(Sort(rest, {"--code"}));
  if (name == "convert") {
    return ConvertValues(Sort(rest, {"--platform", "--code", "--in", "--out"}));
  }
  if (name == "default") return PrintChoices(Sort(rest, {"--platform"}));
  throw WrongUsage("date can't do " + name);
}

const Command kDate{
    "date",
    "cells | formats | notation --from N --to N FORMAT | valid FORMAT [--notation N] |\n"
    "                   part --code CODE FORMAT |\n"
    "                   convert --platform P [--code CODE] --in FORMAT --out FORMAT [VALUE ...] |\n"
    "                   default --platform P",
    "Lists, checks and translates date-time formats, and converts values by them.",
    "N is a notation: display (MM/DD/YYYY), ole (%m/%d/%Y) or locale (MM/dd/yyyy). A FORMAT that\n"
    "begins with '-' stands behind '--'.\n"
    "\n"
    "cells     the elements of formats: kind, display, ole and locale code, description, example\n"
    "formats   the predefined formats: data type, example, display, ole and locale format\n"
    "notation  the format in another notation\n"
    "valid     'true' or 'false', which is the exit status too: whether it is a format in the\n"
    "          notation, or in any\n"
    "part      what a column of data type CODE shows of a display format: the date for 5 and\n"
    "          19, the time for 26, all for 6, 20 and 27, nothing for any other\n"
    "convert   each VALUE, or each line of standard input, from one display or ole format to\n"
    "          the other, as platform P does for a column of data type CODE, 6 unless given; a\n"
    "          value that can't be read comes back as it is, and the exit status is 1\n"
    "default   the current, the saved and the default format of the platform; option 60000\n"
    "          keeps the saved one, which at first is that of the locale\n",
    RunDate};

}  // namespace
}  // namespace dqtool
