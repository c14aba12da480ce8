// dqtool text: prints a string of the library's string table, with its places filled.

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "apps/dqtool/command.h"
#include "dqlib/frame/resources.h"

namespace dqtool {
namespace {

/// The place at the start of `text`, which begins with '%'; "" if it is none.
std::string_view PlaceAt(std::string_view text) {
  for (const std::string_view place : {"%s", "%d", "%ld", "%1", "%2", "%c"}) {
    if (text.starts_with(place)) return text.substr(0, place.size());
  }
  return {};
}

/// Fills the places in turn, one with each word; a place without a word stays. `unused` gets the
/// number of words without a place.
std::string Fill(std::string_view text, std::span<const std::string> words, std::size_t& unused) {
  std::string filled;
  while (!text.empty()) {
    const std::size_t percent = std::min(text.find('%'), text.size());
    filled.append(text.substr(0, percent));
    text.remove_prefix(percent);
    if (text.empty()) break;
    const std::string_view place = PlaceAt(text);
    if (place.empty() || words.empty()) {
      const std::size_t size = std::max<std::size_t>(place.size(), 1);
      filled.append(text.substr(0, size));
      text.remove_prefix(size);
    } else {
      filled.append(words[0]);
      words = words.subspan(1);
      text.remove_prefix(place.size());
    }
  }
  unused = words.size();
  return filled;
}

int PrintText(const Arguments& arguments) {
  const std::string& word = arguments.words[0];
  if (word.empty() || word.find_first_not_of("0123456789") != std::string::npos) {
    throw WrongUsage("ID is a number, not '" + word + "'");
  }
  dq::UINT id = 0;
  const auto parsed = std::from_chars(word.data(), word.data() + word.size(), id);
  dq::CString text;
  // A number that is too large is that of no string; so is -1, which loads as "no text".
  if (parsed.ec != std::errc{} || id == static_cast<dq::UINT>(-1) ||
      !dq::DQLoadString(text, id, nullptr)) {
    return Complain("no string with id " + word);
  }
  std::size_t unused = 0;
  const std::string filled = Fill(text.View(), std::span(arguments.words).subspan(1), unused);
  if (unused != 0) {
    throw WrongUsage(std::to_string(unused) + " ARG more than the string has places");
  }
  return PrintAnswer(arguments, filled, {{"id", id}, {"text", filled}});
}

const Command kText{
    "text",
    "Prints a string of the library by its number.",
    "Each ARG fills the next place of the string (%s, %d, %ld, %1, %2, %c) as text; places\n"
    "without an ARG stay as they are.\n"
    "\n"
    "JSON: {\"id\", \"text\"}.\n",
    {{"ID [ARG ...]", PrintText, {kJson}}}};

}  // namespace
}  // namespace dqtool
