// Command lines, told by tables and read by one parser.
//
// A command has one form or several; a form is its words and its options:
//
//   const Command kEcho{"echo", "Prints a text.", "",
//                       {{"[TEXT ...]", RunEcho, {{"--times", "N", "how often; once without
//                       it"}}}}};
//
// Words in lower case stand as they are, those in upper case are places; "[X]" may be missing, and
// "..." behind a place lets more words follow. Behind a place called PROGRAM all belongs to it.
//
// Options stand anywhere, as `--name VALUE` or `--name=VALUE`; "--" ends them. A word that begins
// with "-" is an option, unless it is "-" alone or a number. `--help` or `-h` is one of every form.
// The case of options and lower-case words doesn't count.

#pragma once

#include <charconv>
#include <exception>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>
#include <utility>
#include <vector>

#include "apps/common/console.h"

namespace dqapps {

using Words = std::span<const std::string>;

/// How often an option may and must be given. A mark, which takes no value, may be repeated.
enum class Times { kAtMostOnce, kOnce, kAnyNumber };

/// One option of a form.
struct Option {
  /// "--name"
  const char* name;
  /// What the value is called in usage lines; "" for a mark, which takes none.
  const char* value;
  /// For the help; lines after the first are indented there.
  const char* help;
  Times times = Times::kAtMostOnce;
};

/// Of forms that list or answer: prints JSON.
inline constexpr Option kJson{"--json", "", "print JSON"};

class Arguments;

/// One way to call a command.
struct Form {
  const char* words;
  /// Does it and returns an `ExitStatus`, or another status of its own.
  int (*run)(const Arguments& arguments);
  std::vector<Option> options = {};
};

/// What a command line gave to a form.
class Arguments {
 public:
  /// The words in the form's places, in order; those that may be missing may be.
  std::vector<std::string> words;
  /// The options with their values, "" for marks, in order.
  std::vector<std::pair<std::string, std::string>> options;

  bool Has(std::string_view option) const { return Find(option) != nullptr; }
  /// The option's value; null if it isn't there.
  const std::string* Find(std::string_view option) const;
  /// The same, "" if it isn't there.
  std::string Get(std::string_view option) const;
};

/// Thrown when help is asked for.
class HelpWanted : public std::exception {};

/// Wrong words of a form that is known: the complaint may show how it is used.
class WrongUsageOfForm : public WrongUsage {
 public:
  WrongUsageOfForm(const std::string& text, const Form& form) : WrongUsage(text), form_(form) {}
  const Form& form() const { return form_; }

 private:
  const Form& form_;
};

/// The form that the words are of, and what they give to it. Throws `HelpWanted`, and `WrongUsage`
/// for words that make no sense. A form's options of one name take a value in all forms or none.
const Form& ReadCommandLine(std::span<const Form> forms, Words words, Arguments& arguments);

/// A form as its usage line shows it: "convert --in FORMAT [VALUE ...]".
std::string UsageOf(const Form& form);

/// Whether the word is that for help, in any case.
bool AsksForHelp(std::string_view word);

/// The number that the word is; throws `WrongUsage`, with what the word stands for, if it is none
/// of the range.
template <typename Number>
Number ReadNumber(const std::string& word, const std::string& what,
                  Number low = std::numeric_limits<Number>::min(),
                  Number high = std::numeric_limits<Number>::max()) {
  Number number{};
  const char* const end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, number);
  const bool is_number = error == std::errc() && stop == end;
  if (is_number && number >= low && number <= high) return number;
  const bool is_any = std::is_signed_v<Number> && low == std::numeric_limits<Number>::min();
  throw WrongUsage(what + " is a number" +
                   (is_any ? "" : " from " + std::to_string(low) + " to " + std::to_string(high)) +
                   ", not '" + word + "'");
}

}  // namespace dqapps
