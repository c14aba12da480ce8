// dqtool date: date-time formats.

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "apps/common/content.h"
#include "apps/dqtool/command.h"
#include "apps/dqtool/host_options.h"
#include "apps/dqtool/vocabulary.h"
#include "dqlib/datetime/data_type.h"
#include "dqlib/datetime/date_time_fmt_def.h"
#include "dqlib/datetime/date_time_fmt_dictionary.h"
#include "dqlib/datetime/date_time_format.h"
#include "dqlib/datetime/predefined_formats.h"
#include "dqlib/platform/ascii.h"
#include "siblings/options/options_server.h"

namespace dqtool {
namespace {

using dq::CLGDateTimeFmtDef;
using dq::DATETIME_FMTTYPE;

DATETIME_FMTTYPE NotationOf(const std::string& word) {
  constexpr std::pair<const char*, DATETIME_FMTTYPE> kNotations[] = {
      {"display", dq::DTF_DISP}, {"ole", dq::DTF_OLE}, {"locale", dq::DTF_WIN}};
  std::vector<std::string> names;
  for (const auto& [name, notation] : kNotations) {
    if (dq::platform::EqualIgnoringCase(word, name)) return notation;
    names.emplace_back(name);
  }
  throw WrongUsage("a notation is display, ole or locale, not '" + word + "'" +
                   DidYouMean(word, names));
}

int PrintCells(const Arguments& arguments) {
  const dq::detail::DictionaryUse<dq::CLGDateTimeFmtDictionary> dictionary;
  Listing listing(arguments);
  for (dq::POSITION position = dictionary->GetFirstEntry(); position != nullptr;) {
    const dq::CLGDateTimeFmtCell& cell = *dictionary->GetNext(position);
    listing.Add({{"kind", int{cell.GetDateTimeElementType()}},
                 {"display", cell.GetDateTimeElementFmt(dq::DTF_DISP).View()},
                 {"ole", cell.GetDateTimeElementFmt(dq::DTF_OLE).View()},
                 {"locale", cell.GetDateTimeElementFmt(dq::DTF_WIN).View()},
                 {"description", cell.GetDescription().View()},
                 {"example", cell.GetExample().View()}});
  }
  return listing.End();
}

int PrintFormats(const Arguments& arguments) {
  Listing listing(arguments);
  for (const dq::PredefinedDateTimeFmt& row : dq::kPredefinedDateTimeFmts) {
    listing.Add({{"code", int{row.type}},
                 {"example", row.example},
                 {"display", row.disp},
                 {"ole", row.ole},
                 {"locale", row.win}});
  }
  return listing.End();
}

int Translate(const Arguments& arguments) {
  const DATETIME_FMTTYPE from = NotationOf(arguments.Get("--from"));
  const DATETIME_FMTTYPE to = NotationOf(arguments.Get("--to"));
  const dq::CString format = arguments.words[0];
  dq::CString result;
  if (!CLGDateTimeFmtDef::GetDateTimeFmt(from, format, to, result)) {
    return Complain("can't be converted: '" + arguments.words[0] + "'");
  }
  return PrintAnswer(arguments, result.View(), {{"format", result.View()}});
}

int IsValid(const Arguments& arguments) {
  const dq::CString format = arguments.words[0];
  const std::string* const notation = arguments.Find("--notation");
  return PrintTruth(arguments, notation != nullptr ? CLGDateTimeFmtDef::IsValidDateTimeFmt(
                                                         format, NotationOf(*notation))
                                                   : CLGDateTimeFmtDef::IsValidDateTimeFmt(format));
}

int PrintPart(const Arguments& arguments) {
  const int code = ReadNumber<int>(arguments.Get("--code"), "CODE");
  const dq::CString format = arguments.words[0];
  if (!CLGDateTimeFmtDef::IsValidDateTimeFmt(format)) {
    return Complain("no format: '" + arguments.words[0] + "'");
  }
  const dq::CString part = CLGDateTimeFmtDef(format).GetFmtDateTime(code, dq::DTF_DISP);
  return PrintAnswer(arguments, part.View(), {{"format", part.View()}});
}

/// The formats of the platform that the options name. Nothing is kept of them.
std::unique_ptr<dq::CLGDateTimeFormat> FormatsOf(dq::DBMS platform) {
  dq::CDQOptionsServer& options = HostOptions();
  const dq::CString kept = options.GetString(kDateFormatOption);
  if (kept.IsEmpty()) {
    // Made without one, they keep that of the locale, where a question changes nothing.
    dq::CString format;
    CLGDateTimeFmtDef::GetLocaleDateTimeFmt(dq::DATATYPE_DATETIME, format, dq::DTF_DISP);
    options.HoldValue(kDateFormatOption, std::string(format.View()));
  } else if (!CLGDateTimeFmtDef::IsValidDateTimeFmt(kept)) {
    Complain("option " + std::to_string(kDateFormatOption) + " holds no format: '" +
             std::string(kept.View()) + "'");
  }
  return std::unique_ptr<dq::CLGDateTimeFormat>(
      dq::CDateTimeFormatFactory(platform, kDateFormatOption, 0).CreateObject());
}

dq::DBMS PlatformWithFormats(const Arguments& arguments) {
  const std::string word = arguments.Get("--platform");
  const dq::DBMS platform = PlatformOf(word);
  if (platform == dq::DBMS_NONE) throw WrongUsage("no date-time formats for " + word);
  return platform;
}

/// A format that values are read or printed by.
dq::CString FormatFor(const Arguments& arguments, const char* option) {
  const std::string word = arguments.Get(option);
  dq::CString format = word;
  const bool valid = CLGDateTimeFmtDef::IsValidDateTimeFmt(format, dq::DTF_DISP) ||
                     CLGDateTimeFmtDef::IsValidDateTimeFmt(format, dq::DTF_OLE);
  if (!valid) {
    throw WrongUsage(std::string(option) + " is no display or ole format: '" + word + "'");
  }
  return format;
}

int CodeOfValues(const Arguments& arguments) {
  const std::string* const word = arguments.Find("--code");
  if (word == nullptr) return dq::DATATYPE_DATETIME;
  const int code = ReadNumber<int>(*word, "CODE");
  constexpr int kCodes[] = {5, 6, 19, 20, 26, 27};
  if (std::ranges::find(kCodes, code) != std::end(kCodes)) return code;
  throw WrongUsage("CODE is 5, 6, 19, 20, 26 or 27, not '" + *word + "'");
}

int ConvertValues(const Arguments& arguments) {
  const int code = CodeOfValues(arguments);
  const dq::CString in_format = FormatFor(arguments, "--in");
  const dq::CString out_format = FormatFor(arguments, "--out");
  const auto formats = FormatsOf(PlatformWithFormats(arguments));
  int status = kYes;
  Listing listing(arguments);
  dq::CString out;
  const auto convert = [&](const std::string& value) {
    const bool read = formats->FormatDateTime(code, value, out, in_format, out_format) != 0;
    if (!read) {
      status = kNo;
      Complain("'" + value + "' can't be read by " + std::string(in_format.View()));
    }
    listing.Add(out.View(), {{"value", value}, {"result", out.View()}, {"converted", read}});
  };
  for (const std::string& value : arguments.words) convert(value);
  if (arguments.words.empty()) {
    for (std::string line; dqapps::ReadInputLine(line);) convert(line);
    if (dqapps::EndOfInputLines() != kYes) return kNo;
  }
  return listing.End(status);
}

int PrintChoices(const Arguments& arguments) {
  const auto formats = FormatsOf(PlatformWithFormats(arguments));
  using Formats = dq::CLGDateTimeFormat;
  Listing listing(arguments);
  for (const auto& [name, kind] :
       {std::pair("current", Formats::DFK_CURRENT), std::pair("saved", Formats::DFK_SAVED),
        std::pair("default", Formats::DFK_DBMS_DEFAULT)}) {
    const dq::CString format = formats->GetDispDateTimeFmt(dq::DATATYPE_DATETIME, kind);
    listing.Add({{"choice", name}, {"format", format.View()}});
  }
  return listing.End();
}

constexpr Option kFormatsOf{"--platform", "P", "sybase, sqlserver, db2, oracle or db2os390",
                            Times::kOnce};
constexpr Option kCode{"--code", "CODE", "the data type of the column: 5, 6, 19, 20, 26 or 27"};

const Command kDate{
    "date",
    "Lists, checks and translates date-time formats, and converts values by them.",
    "cells     the elements of formats: kind, display, ole and locale code, description, example\n"
    "formats   the predefined formats: data type, example, display, ole and locale format\n"
    "notation  the format in another notation\n"
    "valid     'true' or 'false', which is the exit status too: whether it is a format in the\n"
    "          notation, or in any\n"
    "part      what a column of data type CODE shows of a format in display notation: the date\n"
    "          for 5 and 19, the time for 26, all for 6, 20 and 27, nothing for any other\n"
    "convert   each VALUE, or each line of standard input, from one display or ole format to\n"
    "          the other, as platform P does for a column of data type CODE; a value that can't\n"
    "          be read comes back as it is and is told, and the exit status is 1\n"
    "default   the current, the saved and the default format of the platform; option 60000\n"
    "          keeps the saved one, and without it that is the locale's\n"
    "\n"
    "A notation N is display (MM/DD/YYYY), ole (%m/%d/%Y) or locale (MM/dd/yyyy).\n"
    "\n"
    "JSON: cells [{\"kind\", \"display\", \"ole\", \"locale\", \"description\", \"example\"}],\n"
    "formats [{\"code\", \"example\", \"display\", \"ole\", \"locale\"}], notation and part\n"
    "{\"format\"}, valid {\"result\"}, convert [{\"value\", \"result\", \"converted\"}],\n"
    "default [{\"choice\", \"format\"}].\n",
    {{"cells", PrintCells, {kJson}},
     {"formats", PrintFormats, {kJson}},
     {"notation FORMAT",
      Translate,
      {{"--from", "N", "the notation that FORMAT is in", Times::kOnce},
       {"--to", "N", "the notation that it is wanted in", Times::kOnce},
       kJson}},
     {"valid FORMAT", IsValid, {{"--notation", "N", "the notation; any without it"}, kJson}},
     {"part FORMAT", PrintPart, {{"--code", "CODE", kCode.help, Times::kOnce}, kJson}},
     {"convert [VALUE ...]",
      ConvertValues,
      {kFormatsOf,
       kCode,
       {"--in", "FORMAT", "what values are read by", Times::kOnce},
       {"--out", "FORMAT", "what they are printed by", Times::kOnce},
       kJson}},
     {"default", PrintChoices, {kFormatsOf, kJson}}}};

}  // namespace
}  // namespace dqtool
