#include "apps/dqtool/vocabulary.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>
#include <vector>

#include "dqlib/dbvocab/object_type_list.h"
#include "dqlib/dbvocab/version_string.h"
#include "dqlib/frame/application_info.h"
#include "dqlib/frame/resources.h"
#include "dqlib/platform/ascii.h"
#include "dqlib/resources/string_table.h"
#include "siblings/options/option_value.h"

namespace dqtool {
namespace {

constexpr dq::DBMS kPlatforms[] = {dq::DBMS_NONE, dq::DBMS_SYBASE, dq::DBMS_SQLSERVER,
                                   dq::DBMS_DB2,  dq::DBMS_ORACLE, dq::DBMS_DB2OS390};
/// Above it no number is in use.
constexpr int kLastType = 88;

std::string Lower(std::string word) {
  std::ranges::transform(word, word.begin(), dq::platform::AsciiLower);
  return word;
}

/// What the kinds are called on the platform, in lists first.
std::vector<dq::ObjectTypeEntry> TypesOf(dq::DBMS platform) {
  std::vector<dq::ObjectTypeEntry> types =
      dq::ListObjectTypes({.platform = platform, .version = 100});
  for (int number = 1; number <= kLastType; ++number) {
    const auto type = static_cast<dq::OBJECTTYPES>(number);
    const dq::UINT text_id = dq::GetObjectTypeTextId(type, platform);
    if (text_id != dq::IDS_UNKNOWN) types.push_back({type, text_id});
  }
  return types;
}

}  // namespace

dq::DBMS PlatformOf(const std::string& word) {
  if (const auto platform = dq::PlatformOfWord(Lower(word))) return *platform;
  std::vector<std::string> names;
  for (const dq::DBMS platform : kPlatforms) names.emplace_back(dq::PlatformWord(platform));
  throw WrongUsage("no platform " + (word.empty() ? "''" : word) + DidYouMean(word, names));
}

dq::OBJECTTYPES TypeOf(const std::string& word, dq::DBMS platform) {
  int number = 0;
  const char* const end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, number);
  if (error == std::errc() && stop == end) return static_cast<dq::OBJECTTYPES>(number);
  std::vector<dq::DBMS> platforms = {platform};
  platforms.insert(platforms.end(), std::begin(kPlatforms), std::end(kPlatforms));
  std::vector<std::string> names;
  for (const dq::DBMS each : platforms) {
    for (const dq::ObjectTypeEntry& entry : TypesOf(each)) {
      names.emplace_back(dq::EnglishText(entry.text_id));
      if (dq::platform::EqualIgnoringCase(word, names.back())) return entry.type;
    }
  }
  throw WrongUsage("no kind of objects '" + word + "', by number or name" +
                   DidYouMean(word, names));
}

dq::OBJECTTYPES TypeOfObject(const std::string& word, dq::DBMS platform) {
  const dq::OBJECTTYPES type = TypeOf(word, platform);
  if (type != dq::OT_NONE && (type < dq::OT_ALIAS || type > dq::OT_REDO_LOG_GROUP)) {
    throw WrongUsage("no kind of objects has the number " + word);
  }
  return type;
}

bool IsNumbersWithDots(std::string_view text) {
  char before = '.';
  for (const char each : text) {
    const bool is_digit = each >= '0' && each <= '9';
    if (!is_digit && (each != '.' || before == '.')) return false;
    before = each;
  }
  return before != '.';
}

bool HoldsVersion(const dq::CDQDBVersionString& version) {
  const std::string_view major = version.View().substr(0, version.View().find('.'));
  return !major.empty() && major.find_first_not_of("0123456789") == major.npos;
}

double VersionOf(const std::string& word, dq::DBMS platform) {
  constexpr std::size_t kMostDigits = 9;
  std::size_t digits = 0;
  bool too_long = false;
  for (const char each : word) {
    digits = each >= '0' && each <= '9' ? digits + 1 : 0;
    too_long = too_long || digits > kMostDigits;
  }
  const bool bare = word.find_first_not_of("0123456789.") == word.npos;
  if (too_long || (bare && !IsNumbersWithDots(word))) {
    throw WrongUsage("V is a version, not '" + word + "'");
  }
  double version = 0;
  const char* const end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, version, std::chars_format::fixed);
  if (error != std::errc() || stop != end) {
    const dq::CDQDBVersionString text(word.c_str(), platform);
    if (!HoldsVersion(text)) throw WrongUsage("V is a version, not '" + word + "'");
    version = static_cast<double>(text);
  }
  if (!std::isfinite(version) || version < 0) {
    throw WrongUsage("V is a version, not '" + word + "'");
  }
  return version;
}

void SetApplication(const std::string& code) {
  std::vector<std::string> codes;
  for (const dq::UINT id : {dq::IDS_APP_LUMEN_SQL, dq::IDS_APP_DELTA_KEEPER, dq::IDS_APP_QUILLBASE,
                            dq::IDS_APP_PACER}) {
    dq::CString text;
    dq::DQLoadString(text, id, nullptr);
    codes.emplace_back(text.View());
    if (dq::platform::EqualIgnoringCase(code, codes.back())) {
      // As it was given: the tests of the library don't mind the case.
      dq::CDQApplicationInfo::SetAppCode(code.c_str());
      return;
    }
  }
  std::string known;
  for (const std::string& each : codes) known += (known.empty() ? "'" : ", '") + each + "'";
  throw WrongUsage("no application '" + code + "'; there are " + known);
}

}  // namespace dqtool
