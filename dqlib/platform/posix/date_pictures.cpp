#include "dqlib/platform/posix/date_pictures.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace dq::platform::posix {
namespace {

enum class Kind { kText, kDate, kTime };

struct Token {
  Kind kind;
  /// Unquoted text, or the picture of an element.
  std::string text;
};

using Tokens = std::vector<Token>;

/// An element and its pictures with and without a leading zero.
struct Element {
  char conversion;
  Kind kind;
  std::string_view padded;
  std::string_view unpadded;
  bool usually_padded;
};

constexpr Element kElements[] = {
    {'d', Kind::kDate, "dd", "d", true},      {'e', Kind::kDate, "dd", "d", false},
    {'m', Kind::kDate, "MM", "M", true},      {'b', Kind::kDate, "MMM", "MMM", true},
    {'h', Kind::kDate, "MMM", "MMM", true},   {'B', Kind::kDate, "MMMM", "MMMM", true},
    {'a', Kind::kDate, "ddd", "ddd", true},   {'A', Kind::kDate, "dddd", "dddd", true},
    {'y', Kind::kDate, "yy", "yy", true},     {'g', Kind::kDate, "yy", "yy", true},
    {'Y', Kind::kDate, "yyyy", "yyyy", true}, {'G', Kind::kDate, "yyyy", "yyyy", true},
    {'H', Kind::kTime, "HH", "H", true},      {'k', Kind::kTime, "HH", "H", false},
    {'I', Kind::kTime, "hh", "h", true},      {'l', Kind::kTime, "hh", "h", false},
    {'M', Kind::kTime, "mm", "m", true},      {'S', Kind::kTime, "ss", "s", true},
    {'p', Kind::kTime, "tt", "tt", true},     {'P', Kind::kTime, "tt", "tt", true},
};

/// Bytes of a pattern that are looked at, those of the patterns named in it counted again. It ends
/// patterns that name each other.
constexpr int kMaxBytes = 1000;

std::string_view ElementsOf(char conversion, const DatePatterns& patterns) {
  switch (conversion) {
    case 'D':
      return "%m/%d/%y";
    case 'F':
      return "%Y-%m-%d";
    case 'R':
      return "%H:%M";
    case 'T':
      return "%H:%M:%S";
    case 'r':
      return patterns.time_12h.empty() ? "%I:%M:%S %p" : std::string_view(patterns.time_12h);
    case 'c':
      return patterns.date_time;
    case 'x':
      return patterns.date;
    case 'X':
      return patterns.time;
    default:
      return {};
  }
}

void AddText(Tokens& tokens, char character) {
  if (tokens.empty() || tokens.back().kind != Kind::kText) tokens.push_back({Kind::kText, ""});
  tokens.back().text += character;
}

void TrimBlanks(std::string& text) {
  text.erase(text.find_last_not_of(' ') + 1);
  text.erase(0, text.find_first_not_of(' '));
}

class Tokeniser {
 public:
  explicit Tokeniser(const DatePatterns& patterns) : patterns_(patterns) {}

  void Add(std::string_view pattern) {
    for (std::size_t i = 0; i < pattern.size() && bytes_left_ > 0; ++i, --bytes_left_) {
      if (pattern[i] != '%') {
        AddText(tokens_, pattern[i]);
        continue;
      }
      // Flags, a width and the modifiers for other digits and eras stand before the conversion.
      const std::size_t start = i + 1;
      i = std::min(pattern.find_first_not_of("-_0^#+123456789EO", start), pattern.size());
      if (i < pattern.size()) AddConversion(pattern[i], pattern.substr(start, i - start));
    }
  }

  Tokens Take() { return std::move(tokens_); }

 private:
  void AddConversion(char conversion, std::string_view flags) {
    const auto element = std::ranges::find(kElements, conversion, &Element::conversion);
    if (element != std::end(kElements)) {
      const bool padded = flags.starts_with('0') ||
                          (element->usually_padded && flags.find_first_of("-_#") == flags.npos);
      tokens_.push_back({element->kind, std::string(padded ? element->padded : element->unpadded)});
    } else if (conversion == '%') {
      AddText(tokens_, '%');
    } else if (conversion == 'n' || conversion == 't') {
      AddText(tokens_, ' ');
    } else if (const std::string_view elements = ElementsOf(conversion, patterns_);
               !elements.empty()) {
      --bytes_left_;
      Add(elements);
    } else if (!tokens_.empty() && tokens_.back().kind == Kind::kText) {
      // The element has no picture, and the blank before it goes with it.
      std::string& text = tokens_.back().text;
      text.erase(text.find_last_not_of(' ') + 1);
    }
  }

  const DatePatterns& patterns_;
  Tokens tokens_;
  int bytes_left_ = kMaxBytes;
};

Tokens Tokenise(std::string_view pattern, const DatePatterns& patterns) {
  Tokeniser tokeniser(patterns);
  tokeniser.Add(pattern);
  return tokeniser.Take();
}

bool NeedsQuotes(char character) {
  return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z') ||
         static_cast<unsigned char>(character) >= 0x80;
}

/// Appends text with quotes where it needs them. A quoted run goes on to the next punctuation or
/// blank: second bytes of two-byte characters are all above these.
void AppendText(std::string& picture, std::string_view text) {
  bool quoted = false;
  for (const char character : text) {
    const bool below_letters = static_cast<unsigned char>(character) < 0x40;
    if (quoted ? below_letters && character != '\'' : NeedsQuotes(character)) {
      picture += '\'';
      quoted = !quoted;
    }
    picture += character;
    if (character == '\'') picture += '\'';
  }
  if (quoted) picture += '\'';
}

std::string Picture(const Tokens& tokens) {
  std::string picture;
  for (const Token& token : tokens) {
    if (token.kind == Kind::kText) {
      AppendText(picture, token.text);
    } else {
      picture += token.text;
    }
  }
  TrimBlanks(picture);
  return picture;
}

/// A picture without its quoted text, which leaves the letters of its elements.
std::string WithoutQuotedText(std::string_view picture) {
  std::string elements;
  bool quoted = false;
  for (const char character : picture) {
    if (character == '\'') {
      quoted = !quoted;
    } else if (!quoted) {
      elements += character;
    }
  }
  return elements;
}

/// The date in `all`: a text before the time keeps what belongs to the element before it, and those
/// within and behind the time go.
Tokens DateOnly(const Tokens& all) {
  Tokens date;
  bool behind_time = false;
  for (const Token& token : all) {
    if (token.kind == Kind::kTime) {
      if (!behind_time && !date.empty() && date.back().kind == Kind::kText) {
        std::string& text = date.back().text;
        text.erase(std::min(text.find_first_of(" ,"), text.size()));
      }
      behind_time = true;
    } else if (token.kind == Kind::kDate) {
      if (behind_time && !date.empty()) AddText(date, ' ');
      behind_time = false;
      date.push_back(token);
    } else if (!behind_time) {
      date.push_back(token);
    }
  }
  return date;
}

}  // namespace

std::string ShortDatePicture(const DatePatterns& patterns) {
  return Picture(Tokenise(patterns.date, patterns));
}

std::string TimePicture(const DatePatterns& patterns) {
  return Picture(Tokenise(patterns.time, patterns));
}

std::string LongDatePicture(const DatePatterns& patterns) {
  Tokens date = DateOnly(Tokenise(patterns.date_time, patterns));
  if (std::ranges::find(date, Kind::kDate, &Token::kind) == date.end()) {
    return ShortDatePicture(patterns);
  }
  for (Token& token : date) {
    if (token.kind == Kind::kDate && (token.text == "ddd" || token.text == "MMM")) {
      token.text += token.text.front();
    }
  }
  if (date.back().kind == Kind::kText) {
    std::string& text = date.back().text;
    text.erase(text.find_last_not_of(" ,") + 1);
  }
  return Picture(date);
}

std::string PictureSeparator(std::string_view picture, std::string_view letters,
                             std::string_view fallback) {
  const std::size_t element = picture.find_first_of(letters);
  if (element == picture.npos) return std::string(fallback);
  const std::size_t start = picture.find_first_not_of(letters, element);
  if (start == picture.npos) return std::string(fallback);
  const std::size_t end = picture.find_first_of(letters, start);
  if (end == picture.npos) return std::string(fallback);
  const std::string_view separator = picture.substr(start, end - start);
  return std::string(separator.find('\'') == separator.npos ? separator : fallback);
}

std::string DateOrder(std::string_view picture) {
  const std::string elements = WithoutQuotedText(picture);
  const std::size_t year = elements.find('y');
  const std::size_t month = elements.find('M');
  if (year < month) return "2";
  std::size_t day = elements.find('d');
  while (day != elements.npos && elements.compare(day, 3, "ddd") == 0) {
    day = elements.find('d', elements.find_first_not_of('d', day));
  }
  return month < day ? "0" : "1";
}

bool HasTwentyFourHours(std::string_view picture) {
  return WithoutQuotedText(picture).find('H') != std::string::npos;
}

}  // namespace dq::platform::posix
