#include "apps/common/command_line.h"

#include <algorithm>
#include <optional>

#include <CLI/CLI.hpp>

#include "apps/common/names.h"
#include "dqlib/platform/ascii.h"

namespace dqapps {
namespace {

/// The parser takes some words for more than words ("++", "[a,b]", "--name="), so each that is
/// none of its own gets this before it, and so does a value behind "=".
constexpr char kPlain = '\1';

bool IsOptionWord(std::string_view word) {
  if (word.size() < 2 || word[0] != '-') return false;
  const std::size_t digit = word[1] == '.' ? 2 : 1;
  return digit == word.size() || word[digit] < '0' || word[digit] > '9';
}

std::string Wrapped(std::string word) {
  if (!IsOptionWord(word)) return kPlain + word;
  const std::size_t equals = word.starts_with("--") ? word.find('=') : word.npos;
  if (equals != word.npos) word.insert(equals + 1, 1, kPlain);
  return word;
}

std::string Unwrapped(std::string word) {
  if (word.starts_with(kPlain)) return word.substr(1);
  const std::size_t equals = word.starts_with("--") ? word.find('=') : word.npos;
  if (equals != word.npos) word.erase(equals + 1, 1);
  return word;
}

/// One word of a form.
struct Place {
  std::string text;
  bool optional = false;
  bool repeated = false;
  bool IsLiteral() const { return dq::platform::AsciiLower(text[0]) == text[0]; }
};

std::vector<Place> PlacesOf(const Form& form) {
  std::vector<Place> places;
  std::string_view rest = form.words;
  bool optional = false;
  while (!rest.empty()) {
    std::string_view word = rest.substr(0, rest.find(' '));
    rest.remove_prefix(std::min(word.size() + 1, rest.size()));
    if (word.starts_with('[')) {
      optional = true;
      word.remove_prefix(1);
    }
    const bool ends = word.ends_with(']');
    if (ends) word.remove_suffix(1);
    if (word == "...") {
      places.back().repeated = true;
    } else {
      places.push_back({.text = std::string(word), .optional = optional});
    }
    if (ends) optional = false;
  }
  return places;
}

/// How well words fit to a form.
struct Fit {
  std::size_t literals = 0;
  bool literals_fit = true;
  bool enough = true;
  bool too_many = false;
  bool ok() const { return literals_fit && enough && !too_many; }
};

Fit FitOf(const std::vector<Place>& places, Words words) {
  Fit fit;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const bool given = i < words.size();
    if (!given && !places[i].optional) fit.enough = false;
    if (!places[i].IsLiteral()) continue;
    if (given && dq::platform::EqualIgnoringCase(words[i], places[i].text)) {
      ++fit.literals;
    } else {
      fit.literals_fit = false;
    }
  }
  fit.too_many = words.size() > places.size() && (places.empty() || !places.back().repeated);
  return fit;
}

std::string WithArticle(const std::string& name) {
  // A letter that stands alone is read out.
  const std::string_view vowels = name.size() == 1 ? "AEFHILMNORSX" : "AEIOU";
  const bool vowel = vowels.find(name[0]) != std::string_view::npos;
  return (vowel ? "an " : "a ") + name;
}

/// "a FILE and a TEXT are needed"
std::string NeededOf(const std::vector<Place>& places) {
  std::vector<std::string> names;
  for (const Place& place : places) {
    if (!place.optional && !place.IsLiteral()) names.push_back(WithArticle(place.text));
  }
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    text += (i == 0 ? "" : i + 1 == names.size() ? " and " : ", ") + names[i];
  }
  return text + (names.size() > 1 ? " are needed" : " is needed");
}

/// Throws for words that fit no form.
[[noreturn]] void RefuseWords(std::span<const Form> forms, Words words) {
  const Form* nearest = nullptr;
  std::size_t most = 0;
  std::size_t nearest_size = 0;
  std::vector<std::string> literals;
  std::optional<std::size_t> literal_at;
  for (const Form& form : forms) {
    const std::vector<Place> places = PlacesOf(form);
    const Fit fit = FitOf(places, words);
    if (fit.literals_fit) {
      // Of forms that fit alike, the shortest that has room for the words, else the longest.
      const bool has_room = nearest_size >= words.size();
      const bool is_nearer =
          has_room ? !fit.too_many && places.size() < nearest_size : places.size() > nearest_size;
      if (nearest == nullptr || fit.literals > most || (fit.literals == most && is_nearer)) {
        nearest = &form;
        nearest_size = places.size();
      }
      most = std::max(most, fit.literals);
    }
    for (std::size_t i = 0; i < places.size(); ++i) {
      if (!places[i].IsLiteral()) continue;
      literal_at = i;
      if (std::ranges::find(literals, places[i].text) == literals.end()) {
        literals.push_back(places[i].text);
      }
    }
  }
  if (nearest != nullptr) {
    const std::vector<Place> places = PlacesOf(*nearest);
    if (!FitOf(places, words).too_many) throw WrongUsageOfForm(NeededOf(places), *nearest);
    if (places.empty()) throw WrongUsageOfForm("it takes no words", *nearest);
    const Place& last = places.back();
    throw WrongUsageOfForm(last.IsLiteral() ? last.text + " takes no words"
                                            : last.text + " is one text; put it in quotes",
                           *nearest);
  }
  std::string needed;
  for (std::size_t i = 0; i < literals.size(); ++i) {
    needed += (i == 0 ? "" : i + 1 == literals.size() ? " or " : ", ") + literals[i];
  }
  needed += " is needed";
  if (words.size() <= *literal_at) {
    // What stands before the word is missing too.
    if (*literal_at > 0 && words.empty()) {
      const std::string first = PlacesOf(forms.front()).front().text;
      needed = WithArticle(first) + " is needed, and " + needed.substr(0, needed.size() - 10);
    }
    throw WrongUsage(needed);
  }
  throw WrongUsage(needed + ", not '" + words[*literal_at] + "'" +
                   DidYouMean(words[*literal_at], literals));
}

const Form& FindForm(std::span<const Form> forms, Words words) {
  const Form* found = nullptr;
  std::size_t most = 0;
  for (const Form& form : forms) {
    const Fit fit = FitOf(PlacesOf(form), words);
    if (!fit.ok() || (found != nullptr && fit.literals <= most)) continue;
    found = &form;
    most = fit.literals;
  }
  if (found == nullptr) RefuseWords(forms, words);
  return *found;
}

/// The options of all forms, each once.
std::vector<const Option*> AllOptions(std::span<const Form> forms) {
  std::vector<const Option*> options;
  for (const Form& form : forms) {
    for (const Option& option : form.options) {
      const bool is_new = std::ranges::none_of(
          options, [&](const Option* each) { return std::string_view(each->name) == option.name; });
      if (is_new) options.push_back(&option);
    }
  }
  return options;
}

/// The parser, set up for the options of all forms.
class Parser {
 public:
  explicit Parser(std::span<const Form> forms) : options_(AllOptions(forms)) {
    app_.set_help_flag();
    app_.allow_extras();
    app_.prefix_command(std::ranges::any_of(forms, [](const Form& form) {
      return std::string_view(form.words).starts_with("PROGRAM");
    }));
    help_ = app_.add_flag("-h,--help")->ignore_case()->disable_flag_override();
    for (const Option* option : options_) {
      CLI::Option* const added = *option->value == '\0'
                                     ? app_.add_flag(option->name)->disable_flag_override()
                                     : app_.add_option(option->name);
      added->ignore_case()->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
      added->allow_extra_args(false);
      parsed_.push_back(added);
    }
  }

  /// Takes the options off the words.
  std::vector<std::string> Parse(Words words, Arguments& arguments) {
    std::vector<std::string> backwards;
    for (const std::string& word : words) backwards.push_back(Wrapped(word));
    std::ranges::reverse(backwards);
    try {
      app_.parse(backwards);
    } catch (const CLI::Error&) {
      // All that the parser refuses is a value that is missing or where none belongs.
      if (help_->count() > 0) throw HelpWanted();
      RefuseValue(words);
    }
    if (help_->count() > 0) throw HelpWanted();
    for (std::size_t i = 0; i < options_.size(); ++i) {
      const Option& option = *options_[i];
      const bool is_mark = *option.value == '\0';
      for (const std::string& value : parsed_[i]->results()) {
        arguments.options.emplace_back(option.name, is_mark ? std::string() : Unwrapped(value));
      }
      if (!is_mark && option.times != Times::kAnyNumber && parsed_[i]->count() > 1) {
        throw WrongUsage(std::string(option.name) + " stands twice");
      }
    }
    return RestOf(app_.remaining());
  }

 private:
  [[noreturn]] void RefuseValue(Words words) const {
    for (const Option* option : options_) {
      if (!words.empty() && dq::platform::EqualIgnoringCase(words.back(), option->name)) {
        throw WrongUsage(std::string(option->name) + " needs " + WithArticle(option->value));
      }
    }
    for (const std::string& word : words) {
      const std::string name = word.substr(0, word.find('='));
      for (const Option* option : options_) {
        if (name.size() < word.size() && *option->value == '\0' &&
            dq::platform::EqualIgnoringCase(name, option->name)) {
          throw WrongUsage(std::string(option->name) + " takes no value");
        }
      }
    }
    throw WrongUsage("the options make no sense");
  }

  std::vector<std::string> RestOf(const std::vector<std::string>& remaining) const {
    std::vector<std::string> words;
    bool options_end = false;
    for (const std::string& each : remaining) {
      std::string word = Unwrapped(each);
      if (!options_end && word == "--" && each == word) {
        options_end = true;
      } else if (!options_end && IsOptionWord(word)) {
        RefuseOption(word);
      } else {
        options_end = options_end || app_.get_prefix_command();
        words.push_back(std::move(word));
      }
    }
    return words;
  }

  [[noreturn]] void RefuseOption(const std::string& word) const {
    const std::string name = word.substr(0, word.find('='));
    std::vector<std::string> names;
    for (const Option* option : options_) names.emplace_back(option->name);
    std::string text = "no option " + name + DidYouMean(name, names);
    if (!word.starts_with("--")) text += "; a word that begins with '-' stands behind '--'";
    throw WrongUsage(text);
  }

  CLI::App app_;
  CLI::Option* help_ = nullptr;
  std::vector<const Option*> options_;
  /// What the parser has of each of them.
  std::vector<CLI::Option*> parsed_;
};

void CheckOptions(const Form& form, const Arguments& arguments) {
  for (const auto& given : arguments.options) {
    const std::string& name = given.first;
    const bool known = std::ranges::any_of(
        form.options, [&name](const Option& option) { return name == option.name; });
    if (!known) throw WrongUsageOfForm(name + " is no option of this form", form);
  }
  for (const Option& option : form.options) {
    if (option.times == Times::kOnce && !arguments.Has(option.name)) {
      throw WrongUsageOfForm(std::string(option.name) + " " + option.value + " is needed", form);
    }
  }
}

}  // namespace

const std::string* Arguments::Find(std::string_view option) const {
  for (const auto& [name, value] : options) {
    if (name == option) return &value;
  }
  return nullptr;
}

std::string Arguments::Get(std::string_view option) const {
  const std::string* const value = Find(option);
  return value == nullptr ? std::string() : *value;
}

const Form& ReadCommandLine(std::span<const Form> forms, Words words, Arguments& arguments) {
  const std::vector<std::string> rest = Parser(forms).Parse(words, arguments);
  const Form& form = FindForm(forms, rest);
  CheckOptions(form, arguments);
  const std::vector<Place> places = PlacesOf(form);
  for (std::size_t i = 0; i < rest.size(); ++i) {
    if (i >= places.size() || !places[i].IsLiteral()) arguments.words.push_back(rest[i]);
  }
  return form;
}

std::string UsageOf(const Form& form) {
  std::string usage;
  const auto add = [&usage](const std::string& part) {
    usage += (usage.empty() ? "" : " ") + part;
  };
  std::string_view rest = form.words;
  while (!rest.empty() && dq::platform::AsciiLower(rest[0]) == rest[0] && rest[0] != '[') {
    const std::string_view word = rest.substr(0, rest.find(' '));
    add(std::string(word));
    rest.remove_prefix(std::min(word.size() + 1, rest.size()));
  }
  for (const Option& option : form.options) {
    std::string text = option.name;
    if (*option.value != '\0') text += std::string(" ") + option.value;
    if (option.times == Times::kAnyNumber) text += " ...";
    add(option.times == Times::kOnce ? text : "[" + text + "]");
  }
  if (!rest.empty()) add(std::string(rest));
  return usage;
}

bool AsksForHelp(std::string_view word) {
  return dq::platform::EqualIgnoringCase(word, "--help") ||
         dq::platform::EqualIgnoringCase(word, "-h");
}

}  // namespace dqapps
