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
  const auto read = std::from_chars(word.data(), end, number);
  if (read.ec != std::errc{} || read.ptr != end || !std::isfinite(number)) {
    throw WrongUsage("NUMBER is a decimal number, not '" + word + "'");
  }
  return number;
}

int PrintVersion(const Arguments& arguments) {
  const CDQDBVersionString version(arguments.words[0].c_str(),
                                   PlatformOf(arguments.Get("--platform")));
  return PrintAnswer(arguments, version.View(), {{"version", version.View()}});
}

int Compare(const Arguments& arguments) {
  const CDQDBVersionString version(arguments.words[0].c_str(),
                                   PlatformOf(arguments.Get("--platform")));
  const auto* const found = std::ranges::find(kOperators, arguments.words[1], &Operator::word);
  if (found == std::end(kOperators)) throw WrongUsage("no operator '" + arguments.words[1] + "'");
  return PrintTruth(arguments, found->compare(version, NumberOf(arguments.words[2])));
}

const Command kVersion{
    "version",
    "Tells the version of a server from what it calls itself.",
    "Prints the version as a short decimal number. With <, <=, >, >=, == or != and a NUMBER,\n"
    "prints 'true' or 'false' and ends with status 0 or 1; the version is cut to as many places\n"
    "as the number has, so that 8.1 is met by every 8.1.x.\n"
    "\n"
    "JSON: {\"version\"}, or {\"result\"} for a comparison.\n",
    {{"TEXT", PrintVersion, {kPlatform, kJson}}, {"TEXT OP NUMBER", Compare, {kPlatform, kJson}}}};

}  // namespace
}  // namespace dqtool
