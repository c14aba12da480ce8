// dqtool version: what a server calls itself as a version, and comparisons of it.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "apps/dqtool/command.h"
#include "apps/dqtool/platform_word.h"
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

int RunVersion(Words words) {
  if (words.empty()) throw WrongUsage("--platform P and a TEXT are needed");
  if (words[0] != "--platform") {
    if (words[0].starts_with("-")) RefuseOption(words[0]);
    throw WrongUsage("--platform P is needed first");
  }
  words = words.subspan(1);
  const dq::DBMS platform = TakePlatform(words);
  if (words.size() != 1 && words.size() != 3) {
    throw WrongUsage("what is needed is TEXT, or TEXT OP NUMBER");
  }
  const CDQDBVersionString version(words[0].c_str(), platform);
  if (words.size() == 1) {
    PrintLine(version.View());
    return kYes;
  }
  const auto* const found = std::ranges::find(kOperators, words[1], &Operator::word);
  if (found == std::end(kOperators)) throw WrongUsage("no operator '" + words[1] + "'");
  const bool holds = found->compare(version, NumberOf(words[2]));
  PrintLine(holds ? "true" : "false");
  return holds ? kYes : kNo;
}

const Command kVersion{
    "version", "--platform P TEXT [OP NUMBER]",
    "Tells the version of a server from what it calls itself.",
    "Prints the version as a short decimal number. With <, <=, >, >=, == or != and a NUMBER,\n"
    "prints 'true' or 'false' and ends with status 0 or 1; the version is cut to as many places "
    "as\n"
    "the number has, so that 8.1 is met by every 8.1.x. P is none, sybase, sqlserver, db2, oracle\n"
    "or db2os390.\n",
    RunVersion};

}  // namespace
}  // namespace dqtool
