// dqtool types, type-text, platform-text: what platforms and kinds of objects are called.

#include <charconv>
#include <cmath>
#include <string>
#include <system_error>

#include "apps/dqtool/command.h"
#include "apps/dqtool/number_word.h"
#include "apps/dqtool/platform_word.h"
#include "dqlib/dbvocab/object_type_list.h"
#include "dqlib/dbvocab/version_string.h"
#include "dqlib/frame/application_info.h"

namespace dqtool {
namespace {

/// A number as it is, any other text as the platform's servers call themselves.
double ReadVersion(const std::string& word, dq::DBMS platform) {
  double version = 0;
  const char* const end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, version);
  if (error != std::errc() || stop != end) {
    const dq::CDQDBVersionString text(word.c_str(), platform);
    if (text.FindOneOf("0123456789") != 0) {
      throw WrongUsage("V is a version, not '" + word + "'");
    }
    version = static_cast<double>(text);
  }
  if (!std::isfinite(version)) throw WrongUsage("V is a version, not '" + word + "'");
  return version;
}

int RunTypes(Words words) {
  dq::ObjectTypeQuery query;
  bool has_platform = false;
  const std::string* version = nullptr;
  while (!words.empty()) {
    const std::string& word = words[0];
    words = words.subspan(1);
    if (word == "--platform") {
      query.platform = TakePlatform(words);
      has_platform = true;
    } else if (word == "--version") {
      if (words.empty()) throw WrongUsage("--version needs a V");
      version = &words[0];
      words = words.subspan(1);
    } else if (word == "--reduced") {
      query.reduced = true;
    } else if (word == "--app") {
      if (words.empty()) throw WrongUsage("--app needs a CODE");
      dq::CDQApplicationInfo::SetAppCode(words[0].c_str());
      words = words.subspan(1);
    } else {
      RefuseOption(word);
    }
  }
  if (!has_platform) throw WrongUsage("--platform P is needed");
  if (version != nullptr) query.version = ReadVersion(*version, query.platform);
  query.lumen_sql = dq::CDQApplicationInfo::IsAppLumenSql();
  for (const dq::ObjectTypeEntry& entry : dq::ListObjectTypes(query)) {
    PrintLine(std::to_string(entry.type) + '\t' + entry.text);
  }
  return kYes;
}

const Command kTypes{
    "types", "--platform P [--version V] [--reduced] [--app CODE]",
    "Lists the kinds of objects of a platform.",
    "Prints a line VALUE<TAB>TEXT for each, in the order of lists. Platforms are 'none',\n"
    "'sybase', 'sqlserver', 'db2', 'oracle' and 'db2os390'.\n"
    "\n"
    "  --version V  the server's version, 0 without it: 8.1.7, or 8.17 as a number\n"
    "  --reduced    without indexes, tables, views, sequences and synonyms\n"
    "  --app CODE   the application that the list is for\n",
    RunTypes};

int RunTypeText(Words words) {
  if (words.empty()) throw WrongUsage("a VALUE is needed");
  const auto type = static_cast<dq::OBJECTTYPES>(ReadNumber<int>(words[0], "VALUE"));
  words = words.subspan(1);
  dq::DBMS platform = dq::DBMS_NONE;
  while (!words.empty()) {
    if (words[0] != "--platform") RefuseOption(words[0]);
    words = words.subspan(1);
    platform = TakePlatform(words);
  }
  PrintLine(dq::GetObjectTypeText(type, platform).View());
  return kYes;
}

const Command kTypeText{
    "type-text", "VALUE [--platform P]", "Prints what a kind of objects is called.",
    "VALUE is the kind's number. Without a platform it is 'none'.\n", RunTypeText};

int RunPlatformText(Words words) {
  if (words.size() != 1) throw WrongUsage("one P is needed");
  const dq::DBMS platform = TakePlatform(words);
  PrintLine(dq::GetDBMSText(platform).View());
  return kYes;
}

const Command kPlatformText{"platform-text", "P", "Prints what a platform is called.", "",
                            RunPlatformText};

}  // namespace
}  // namespace dqtool
