#include "siblings/options/options_file.h"

#include <algorithm>
#include <set>
#include <utility>

#include "dqlib/platform/ascii.h"

namespace dq {
namespace {

constexpr std::string_view kFormat = "dqoptions";
constexpr std::string_view kVersion = "1";
constexpr std::size_t kLongestName = 63;
/// The word that stands for "" where a value has no quotes around it.
constexpr std::string_view kNoValue = "none";

/// A word of a line, or a text in quotes with its escapes undone.
struct Token {
  std::string text;
  bool quoted = false;
};

bool IsBlank(char character) { return character == ' ' || character == '\t'; }

bool IsControl(char character) {
  return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
}

bool IsWordCharacter(char character) {
  const char letter = platform::AsciiLower(character);
  return (letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9') || letter == '_';
}

/// Letters, digits and "_", with no digit first.
bool IsName(std::string_view text) {
  return !text.empty() && text.size() <= kLongestName &&
         std::ranges::all_of(text, IsWordCharacter) && (text.front() < '0' || text.front() > '9');
}

std::string LowerCase(std::string text) {
  std::ranges::transform(text, text.begin(), platform::AsciiLower);
  return text;
}

/// Reads one text line by line. Functions that read return false once `error_` is set.
class Reader {
 public:
  explicit Reader(OptionsFile& file) : file_(file) {}

  bool Read(std::string_view text) {
    while (!text.empty()) {
      ++line_;
      const std::size_t end = std::min(text.find('\n'), text.size());
      std::string_view line = text.substr(0, end);
      text.remove_prefix(std::min(end + 1, text.size()));
      if (line.ends_with('\r')) line.remove_suffix(1);
      if (!ReadLine(line)) return false;
    }
    ++line_;
    if (!has_format_) return Fail("no options file: the line 'dqoptions 1' is missing");
    return EndOption();
  }

  OptionsFileError TakeError() { return {line_, std::move(error_)}; }

 private:
  bool Fail(std::string text) {
    error_ = std::move(text);
    return false;
  }

  bool ReadLine(std::string_view line) {
    tokens_.clear();
    if (!Split(line)) return false;
    if (tokens_.empty()) return true;
    if (!has_format_) return ReadFormat();
    const Token& first = tokens_.front();
    if (first.quoted) return Fail("a text where a word is expected");
    if (first.text == "option") return ReadOption();
    if (first.text == "variable") return ReadVariable();
    if (first.text == "label") return ReadLabel();
    if (first.text == "default") return ReadDefault();
    if (first.text == "range") return ReadRange();
    if (first.text == "machine") return ReadMachine();
    return Fail("unknown word '" + first.text + "'");
  }

  bool Split(std::string_view line) {
    for (;;) {
      while (!line.empty() && IsBlank(line.front())) line.remove_prefix(1);
      if (line.empty() || (tokens_.empty() && line.front() == '#')) return true;
      if (!(line.front() == '"' ? SplitText(line) : SplitWord(line))) return false;
      if (!line.empty() && !IsBlank(line.front())) return Fail("a blank is missing");
    }
  }

  /// Words are printed in complaints, so no other characters come through.
  bool SplitWord(std::string_view& line) {
    const auto end = std::ranges::find_if_not(
        line, [](char each) { return IsWordCharacter(each) || each == '-'; });
    const auto size = static_cast<std::size_t>(end - line.begin());
    if (size == 0) return Fail("a character that no word has");
    tokens_.push_back({std::string(line.substr(0, size)), false});
    line.remove_prefix(size);
    return true;
  }

  bool SplitText(std::string_view& line) {
    std::string text;
    line.remove_prefix(1);
    while (!line.empty() && line.front() != '"') {
      if (line.front() == '\\') {
        if (!SplitEscape(line, text)) return false;
        continue;
      }
      if (IsControl(line.front())) return Fail("a control character in a text");
      text += line.front();
      line.remove_prefix(1);
    }
    if (line.empty()) return Fail("a text without its closing quote");
    line.remove_prefix(1);
    tokens_.push_back({std::move(text), true});
    return true;
  }

  bool SplitEscape(std::string_view& line, std::string& text) {
    constexpr std::pair<char, char> kEscapes[] = {
        {'\\', '\\'}, {'"', '"'}, {'n', '\n'}, {'r', '\r'}, {'t', '\t'}};
    line.remove_prefix(1);
    for (const auto& [letter, meaning] : kEscapes) {
      if (!line.starts_with(letter)) continue;
      text += meaning;
      line.remove_prefix(1);
      return true;
    }
    const auto byte =
        line.starts_with('x') && line.size() > 2 ? BytesOfHex(line.substr(1, 2)) : std::nullopt;
    if (!byte) return Fail("an unknown escape in a text");
    text += *byte;
    line.remove_prefix(3);
    return true;
  }

  bool ReadFormat() {
    if (tokens_.front().text != kFormat) {
      return Fail("no options file: the line 'dqoptions 1' is missing");
    }
    if (tokens_.size() != 2 || tokens_[1].text != kVersion) {
      return Fail("a version of the form that is not known here");
    }
    has_format_ = true;
    return true;
  }

  bool ReadOption() {
    if (!EndOption()) return false;
    if (tokens_.size() != 4) return Fail("'option' takes an id, a kind and a name");
    const auto kind = tokens_[2].quoted ? std::nullopt : KindOfWord(tokens_[2].text);
    option_ = {};
    option_.id =
        IsOptionValue(OptionKind::kInt, tokens_[1].text) ? OptionNumber(tokens_[1].text) : 0;
    option_.name = tokens_[3].text;
    if (option_.id <= 0) return Fail("an id is a number from 1 to 2147483647");
    if (!kind) return Fail("unknown kind");
    if (!IsName(option_.name)) return Fail("a name is letters, digits and '_', at most 63");
    if (!ids_.insert(option_.id).second) return Fail("a second option with the id");
    if (!names_.insert(LowerCase(option_.name)).second)
      return Fail("a second option with the name");
    option_.kind = *kind;
    in_option_ = true;
    has_label_ = false;
    has_default_ = false;
    return true;
  }

  /// Takes up the option that the lines before told of.
  bool EndOption() {
    if (!std::exchange(in_option_, false)) return true;
    if (!has_label_) return Fail("option " + option_.name + " has no label");
    if (!has_default_) return Fail("option " + option_.name + " has no default");
    bool fits = IsValueOf(option_, option_.fallback);
    for (const auto& [platform, value] : option_.platform_fallbacks) {
      fits = fits && IsValueOf(option_, value);
    }
    if (!fits) return Fail("option " + option_.name + " has a default out of its range");
    file_.options.push_back(std::move(option_));
    return true;
  }

  bool ReadLabel() {
    if (!in_option_ || has_label_) return Fail("a label without its option");
    if (tokens_.size() != 2 || !tokens_[1].quoted) return Fail("'label' takes a text");
    option_.label = tokens_[1].text;
    has_label_ = true;
    return true;
  }

  bool ReadDefault() {
    if (!in_option_) return Fail("a default without its option");
    if (tokens_.size() < 2 || tokens_.size() > 3) {
      return Fail("'default' takes a platform, if the value is one platform's, and a value");
    }
    OptionValue value;
    if (!ReadValue(tokens_.back(), value)) return false;
    if (tokens_.size() == 2) {
      option_.fallback = std::move(value);
      return !std::exchange(has_default_, true) || Fail("a second default");
    }
    const auto platform = tokens_[1].quoted ? std::nullopt : PlatformOfWord(tokens_[1].text);
    if (!platform || *platform == DBMS_NONE) return Fail("unknown platform");
    return option_.platform_fallbacks.emplace(*platform, std::move(value)).second ||
           Fail("a second default for the platform");
  }

  /// Texts and paths stand in quotes, every other value doesn't.
  bool ReadValue(const Token& token, OptionValue& value) {
    const OptionKind kind = option_.kind;
    const bool wants_quotes = kind == OptionKind::kString || kind == OptionKind::kDirectory;
    std::optional<OptionValue> read = token.text;
    if (!wants_quotes && token.text == kNoValue) {
      read = "";
    } else if (kind == OptionKind::kBinary) {
      read = BytesOfHex(token.text);
    }
    if (token.quoted != wants_quotes || !read || !IsOptionValue(kind, *read)) {
      return Fail("no value of the kind " + std::string(KindWord(kind)));
    }
    value = std::move(*read);
    return true;
  }

  bool ReadRange() {
    if (!in_option_ || option_.range || option_.kind != OptionKind::kInt) {
      return Fail("a range without its option, which is of the kind int");
    }
    const bool fits = tokens_.size() == 3 && !tokens_[1].quoted && !tokens_[2].quoted &&
                      IsOptionValue(OptionKind::kInt, tokens_[1].text) &&
                      IsOptionValue(OptionKind::kInt, tokens_[2].text);
    if (!fits) return Fail("'range' takes two numbers");
    option_.range = {OptionNumber(tokens_[1].text), OptionNumber(tokens_[2].text)};
    return option_.range->first <= option_.range->second || Fail("a range that holds no number");
  }

  bool ReadMachine() {
    if (!in_option_ || !option_.machine_key.empty()) {
      return Fail("a value of the machine without its option");
    }
    const bool fits = tokens_.size() == 3 && tokens_[1].quoted && !tokens_[1].text.empty() &&
                      tokens_[2].quoted && option_.kind != OptionKind::kBinary;
    if (!fits) return Fail("'machine' takes a key and a value's name, and no binary option has it");
    option_.machine_key = tokens_[1].text;
    option_.machine_value = tokens_[2].text;
    return true;
  }

  bool ReadVariable() {
    if (!EndOption()) return false;
    const bool fits = tokens_.size() == 4 && !tokens_[1].quoted && IsName(tokens_[1].text) &&
                      !tokens_[2].quoted && tokens_[3].quoted &&
                      IsOptionValue(OptionKind::kString, tokens_[3].text);
    const bool is_directory = fits && tokens_[2].text == KindWord(OptionKind::kDirectory);
    if (!fits || !(is_directory || tokens_[2].text == KindWord(OptionKind::kString))) {
      return Fail("'variable' takes a name, 'string' or 'directory', and a text");
    }
    if (!variables_.insert(tokens_[1].text).second) return Fail("a second variable with the name");
    file_.variables.push_back({tokens_[1].text, tokens_[3].text, is_directory});
    return true;
  }

  OptionsFile& file_;
  std::size_t line_ = 0;
  std::string error_;
  std::vector<Token> tokens_;
  bool has_format_ = false;

  OptionDefinition option_;
  bool in_option_ = false;
  bool has_label_ = false;
  bool has_default_ = false;
  std::set<int> ids_;
  std::set<std::string> names_;
  std::set<std::string> variables_;
};

}  // namespace

bool IsValueOf(const OptionDefinition& option, std::string_view value) {
  if (!IsOptionValue(option.kind, value)) return false;
  if (!option.range) return true;
  const int number = OptionNumber(value);
  return number >= option.range->first && number <= option.range->second;
}

std::optional<OptionsFileError> ReadOptionsText(std::string_view text, OptionsFile& file) {
  file = {};
  Reader reader(file);
  if (reader.Read(text)) return std::nullopt;
  file = {};
  return reader.TakeError();
}

}  // namespace dq
