#include "dqlib/framework/windows/resource_text.h"

#include <algorithm>
#include <charconv>

#include "dqlib/framework/base/resource_chain.h"

namespace dq::detail {
namespace {

constexpr std::string_view kBlanks = " \t";

bool IsControl(char character) {
  return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
}

}  // namespace

bool ResourceTextReader::NextLine() {
  if (failed()) return false;
  if (!AtLineEnd()) return Fail("more stands on the line than belongs there");
  while (!rest_.empty()) {
    ++number_;
    const std::size_t end = std::min(rest_.find('\n'), rest_.size());
    line_ = rest_.substr(0, end);
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    if (line_.ends_with('\r')) line_.remove_suffix(1);
    SkipBlanks();
    if (!line_.empty() && line_.front() != '#') return true;
    line_ = {};
  }
  return false;
}

std::optional<std::string_view> ResourceTextReader::Word() {
  if (failed()) return std::nullopt;
  if (line_.empty() || line_.front() == '"') {
    Fail("a word is missing");
    return std::nullopt;
  }
  const std::size_t size = std::min(line_.find_first_of(" \t\""), line_.size());
  const std::string_view word = line_.substr(0, size);
  line_.remove_prefix(size);
  SkipBlanks();
  return word;
}

std::optional<std::string> ResourceTextReader::Text() {
  if (failed()) return std::nullopt;
  if (!line_.starts_with('"')) {
    Fail("a text in quotes is missing");
    return std::nullopt;
  }
  line_.remove_prefix(1);
  std::string text;
  while (!line_.empty() && line_.front() != '"') {
    const char character = line_.front();
    line_.remove_prefix(1);
    if (character == '\\') {
      if (!AddEscape(text)) return std::nullopt;
    } else if (IsControl(character) && character != '\t') {
      Fail("a control character in a text");
      return std::nullopt;
    } else {
      text += character;
    }
  }
  if (line_.empty()) {
    Fail("a text isn't closed");
    return std::nullopt;
  }
  line_.remove_prefix(1);
  SkipBlanks();
  return text;
}

bool ResourceTextReader::AddEscape(std::string& text) {
  constexpr std::string_view kLetters = "nt\"\\";
  constexpr std::string_view kMeanings = "\n\t\"\\";
  const std::size_t at = line_.empty() ? std::string_view::npos : kLetters.find(line_.front());
  if (at == std::string_view::npos) return Fail("an unknown escape in a text");
  text += kMeanings[at];
  line_.remove_prefix(1);
  return true;
}

std::optional<int> ResourceTextReader::Number(int lowest, int highest) {
  const std::optional<std::string_view> word = Word();
  if (!word) return std::nullopt;
  const std::optional<int> number = ReadWholeNumber(*word, lowest, highest);
  if (!number) {
    Fail("a number from " + std::to_string(lowest) + " to " + std::to_string(highest) +
         " is missing");
  }
  return number;
}

bool ResourceTextReader::Fail(std::string_view why) {
  if (!failed()) error_ = "line " + std::to_string(number_) + ": " + std::string(why);
  return false;
}

void ResourceTextReader::SkipBlanks() {
  line_.remove_prefix(std::min(line_.find_first_not_of(kBlanks), line_.size()));
}

std::optional<std::string_view> FindResourceData(unsigned id, unsigned short type) {
  const HINSTANCE module = AfxFindResourceHandle(id, type);
  const platform::Resource* const found =
      module == nullptr ? nullptr : module->Find(type, static_cast<WORD>(id));
  if (found == nullptr) return std::nullopt;
  return found->data;
}

std::optional<int> ReadWholeNumber(std::string_view digits, int lowest, int highest) {
  int number = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number);
  if (error != std::errc{} || stop != end || number < lowest || number > highest) {
    return std::nullopt;
  }
  return number;
}

}  // namespace dq::detail
