// dqtool bigint: reckons with integers of any length.

#include <string>
#include <string_view>

#include "apps/dqtool/command.h"
#include "dqlib/core/big_int.h"

namespace dqtool {
namespace {

using dq::CDQBigInt;

bool IsNumber(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  return !text.empty() && text.find_first_not_of("0123456789") == text.npos;
}

int Answer(bool yes) {
  PrintLine(yes ? "true" : "false");
  return yes ? kYes : kNo;
}

int Print(const CDQBigInt& number) {
  PrintLine(number.toString());
  return kYes;
}

int Reckon(const CDQBigInt& left, char operation, const CDQBigInt& right) {
  switch (operation) {
    case '+':
      return Print(left + right);
    case '-':
      return Print(left - right);
    case '*':
      return Print(left * right);
    case '/':
      return Print(left / right);
    case '%':
      return Print(left % right);
    case '<':
      return Answer(left < right);
    default:
      return Answer(left == right);
  }
}

int RunBigInt(Words words) {
  const bool to_int = words.size() == 2 && words[1] == "int";
  if (!to_int && (words.size() != 3 || words[1].size() != 1 ||
                  words[1].find_first_of("+-*/%<=") == std::string::npos)) {
    throw WrongUsage("what is needed is A, one of + - * / % < =, and B, or A and int");
  }
  for (const std::string& word : {words.front(), words.back()}) {
    if (to_int && word == "int") continue;
    if (!IsNumber(word)) return Complain("bigint: no number: '" + word + "'");
  }
  const CDQBigInt left(words[0]);
  if (to_int) {
    PrintLine(std::to_string(static_cast<int>(left)));
    return kYes;
  }
  const char operation = words[1][0];
  const CDQBigInt right(words[2]);
  if ((operation == '/' || operation == '%') && right == 0) {
    return Complain("bigint: division by zero");
  }
  return Reckon(left, operation, right);
}

const Command kBigInt{
    "bigint", "A OPERATION B | A int", "Reckons with integers of any length.",
    "OPERATION is one of + - * / % < =. '<' and '=' print 'true' or 'false', which is the exit\n"
    "status too. 'int' prints the last six digits as a number. A and B are decimal digits with\n"
    "an optional '-' before them.\n"
    "\n"
    "The remainder of a number by a larger one is the larger one, and its sign is that of the\n"
    "quotient, also for a remainder of zero.\n",
    RunBigInt};

}  // namespace
}  // namespace dqtool
