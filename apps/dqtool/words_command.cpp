// dqtool words: the words of SQL that tools share.

#include <string>
#include <vector>

#include "apps/dqtool/command.h"
#include "dqlib/dbvocab/sql_string.h"
#include "dqlib/platform/ascii.h"

namespace dqtool {
namespace {

int RunWords(const Arguments& arguments) {
  Listing listing(arguments);
  for (const dq::SqlWord& word : dq::SqlWords()) {
    listing.Add({{"name", word.name}, {"word", word.value->View()}});
  }
  return listing.End();
}

int RunWord(const Arguments& arguments) {
  const std::string& name = arguments.words[0];
  const dq::SqlWord* found = nullptr;
  std::vector<std::string> names;
  for (const dq::SqlWord& word : dq::SqlWords()) {
    names.emplace_back(word.name);
    if (dq::platform::EqualIgnoringCase(name, word.name)) found = &word;
  }
  if (found == nullptr) {
    return Complain("no word is named " + (name.empty() ? "''" : name) + DidYouMean(name, names));
  }
  return PrintAnswer(arguments, OnOneLine(found->value->View()),
                     {{"name", found->name}, {"word", found->value->View()}});
}

const Command kWords{
    "words",
    "Prints the words of SQL, or one of them.",
    "Prints a line NAME<TAB>WORD for each, or the word of one NAME, in any case. Control\n"
    "characters are shown as \\xHH.\n"
    "\n"
    "JSON: [{\"name\", \"word\"}, ...], or one such object for a NAME.\n",
    {{"", RunWords, {kJson}}, {"NAME", RunWord, {kJson}}}};

}  // namespace
}  // namespace dqtool
