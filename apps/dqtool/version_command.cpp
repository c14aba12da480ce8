// dqtool version: what a server calls itself as a version, and comparisons of it.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "apps/dqtool/command.h"
#include "apps/dqtool/vocabulary.h"
#include "dqlib/dbvocab/version_string.h"

namespace dqtool {
namespace {

using dq::CDQDBVersionString;

struct Operator {
  const char* word;
  bool (*compare)(const CDQDBVersionString& version, double number);
};
constexpr Operator kOperators[] = {
    {"<", [](const CDQDBVersionString& version, double number) { return version < number; }},
    {"<=", [](const CDQDBVersionString& version, double number) { return version <= number; }},
    {">", [](const CDQDBVersionString& version, double number) { return version > number; }},
    {">=", [](const CDQDBVersionString& version, double number) { return version >= number; }},
    {"==", [](const CDQDBVersionString& version, double number) { return version == number; }},
    {"!=", [](const CDQDBVersionString& version, double number) { return version != number; }},
};

double NumberOf(const std::string& word) {
  double number = 0;
  const char* const end = word.data() + word.size();
  const auto read = std::from_chars(word.data(), end, number, std::chars_format::fixed);
  if (read.ec != std::errc{} || read.ptr != end || !std::isfinite(number)) {
    throw WrongUsage("NUMBER is a decimal number, not '" + word + "'");
  }
  return number;
}

/// The version of the server. What holds none stays as it is, and is told.
CDQDBVersionString VersionFrom(const Arguments& arguments) {
  const std::string& text = arguments.words[0];
  CDQDBVersionString version(text.c_str(), PlatformOf(arguments.Get("--platform")));
  if (!HoldsVersion(version)) Complain("no version in '" + text + "'");
  return version;
}

int PrintVersion(const Arguments& arguments) {
  const CDQDBVersionString version = VersionFrom(arguments);
  return PrintAnswer(arguments, version.View(), {{"version", version.View()}});
}

int Compare(const Arguments& arguments) {
  const auto* const found = std::ranges::find(kOperators, arguments.words[1], &Operator::word);
  if (found == std::end(kOperators)) throw WrongUsage("no operator '" + arguments.words[1] + "'");
  const double number = NumberOf(arguments.words[2]);
  return PrintTruth(arguments, found->compare(VersionFrom(arguments), number));
}

const Command kVersion{
    "version",
    "Tells the version of a server from what it calls itself.",
    "Prints the version as a short decimal number. With <, <=, >, >=, == or != and a NUMBER,\n"
    "prints 'true' or 'false' and ends with status 0 or 1; the version is cut to as many places\n"
    "as the number has, so that 8.1 is met by every 8.1.x. A TEXT that holds no version stays as\n"
    "it is, which is told on standard error, and counts as 0.\n"
    "\n"
    "JSON: {\"version\"}, or {\"result\"} for a comparison.\n",
    {{"TEXT", PrintVersion, {kPlatform, kJson}}, {"TEXT OP NUMBER", Compare, {kPlatform, kJson}}}};

}  // namespace
}  // namespace dqtool
