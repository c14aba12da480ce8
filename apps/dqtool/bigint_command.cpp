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

int NoNumber(const std::string& word) { return Complain("no number: '" + word + "'"); }

/// As text, for numbers of JSON are too short.
int Print(const Arguments& arguments, const CDQBigInt& number) {
  const std::string text = number.toString();
  return PrintAnswer(arguments, text, {{"result", text}});
}

int Reckon(const Arguments& arguments) {
  const std::string& operation = arguments.words[1];
  if (operation.size() != 1 || operation.find_first_of("+-*/%<=") == std::string::npos) {
    throw WrongUsage("OPERATION is one of + - * / % < =, not '" + operation + "'");
  }
  for (const std::string& word : {arguments.words[0], arguments.words[2]}) {
    if (!IsNumber(word)) return NoNumber(word);
  }
  const CDQBigInt left(arguments.words[0]);
  const CDQBigInt right(arguments.words[2]);
  switch (operation[0]) {
    case '+':
      return Print(arguments, left + right);
    case '-':
      return Print(arguments, left - right);
    case '*':
      return Print(arguments, left * right);
    case '<':
      return PrintTruth(arguments, left < right);
    case '=':
      return PrintTruth(arguments, left == right);
    default:
      break;
  }
  if (right == 0) return Complain("division by zero");
  return Print(arguments, operation == "/" ? left / right : left % right);
}

int PrintInt(const Arguments& arguments) {
  if (!IsNumber(arguments.words[0])) return NoNumber(arguments.words[0]);
  const int number = static_cast<int>(CDQBigInt(arguments.words[0]));
  return PrintAnswer(arguments, std::to_string(number), {{"result", number}});
}

const Command kBigInt{
    "bigint",
    "Reckons with integers of any length.",
    "OPERATION is one of + - * / % < =. '<' and '=' print 'true' or 'false', which is the exit\n"
    "status too. 'int' prints the last six digits as a number. A and B are decimal digits with\n"
    "an optional '-' before them.\n"
    "\n"
    "The remainder of a number by a larger one is the larger one, and its sign is that of the\n"
    "quotient, also for a remainder of zero.\n"
    "\n"
    "JSON: {\"result\"}, a text, true or false, or for 'int' a number.\n",
    {{"A OPERATION B", Reckon, {kJson}}, {"A int", PrintInt, {kJson}}}};

}  // namespace
}  // namespace dqtool
