// dqtool split-name: the parts of a qualified name.

#include "apps/dqtool/command.h"
#include "dqlib/dbvocab/identifier_name.h"

namespace dqtool {
namespace {

int RunSplitName(Words words) {
  if (words.size() == 1 && AsksForHelp(words[0])) throw HelpWanted();
  if (words.size() != 1) throw WrongUsage("one NAME is needed");
  const dq::CString name(words[0]);
  dq::CString parts[3];
  if (dq::GetTwoPartName(name, parts[0], parts[1])) {
    parts[2].Empty();
  } else if (!dq::GetThreePartName(name, parts[0], parts[1], parts[2])) {
    return kNo;
  }
  for (const dq::CString& part : parts) {
    if (!part.IsEmpty()) PrintLine(part.View());
  }
  return kYes;
}

const Command kSplitName{
    "split-name", "NAME", "Prints the parts of a qualified name.",
    "Prints the two or three parts that dots separate, a line each; what is behind the second dot\n"
    "is one part. Ends with status 1 if the name has neither two nor three, or one is empty.\n",
    RunSplitName};

}  // namespace
}  // namespace dqtool
