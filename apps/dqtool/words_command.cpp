// dqtool words: the words of SQL that tools share.

#include <string>

#include "apps/dqtool/command.h"
#include "dqlib/dbvocab/sql_string.h"

namespace dqtool {
namespace {

int RunWords(Words words) {
  if (words.size() > 1) throw WrongUsage("one NAME is enough");
  if (!words.empty() && words[0].starts_with('-')) RefuseOption(words[0]);
  for (const dq::SqlWord& word : dq::SqlWords()) {
    const std::string value = OnOneLine(word.value->View());
    if (words.empty()) {
      PrintLine(std::string(word.name) + '\t' + value);
    } else if (words[0] == word.name) {
      PrintLine(value);
      return kYes;
    }
  }
  return words.empty() ? kYes : Complain("words: no word is named " + words[0]);
}

const Command kWords{"words", "[NAME]", "Prints the words of SQL, or one of them.",
                     "Prints a line NAME<TAB>WORD for each, or the word of one NAME, whose case\n"
                     "counts. Control characters are shown as \\xHH.\n",
                     RunWords};

}  // namespace
}  // namespace dqtool
