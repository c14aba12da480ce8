// dqtool split-name: the parts of a qualified name.

#include <string>

#include "apps/dqtool/command.h"
#include "dqlib/dbvocab/identifier_name.h"

namespace dqtool {
namespace {

int RunSplitName(const Arguments& arguments) {
  const dq::CString name(arguments.words[0]);
  dq::CString parts[3];
  if (dq::GetTwoPartName(name, parts[0], parts[1])) {
    parts[2].Empty();
  } else if (!dq::GetThreePartName(name, parts[0], parts[1], parts[2])) {
    return arguments.Has(kJson.name) ? PrintAnswer(arguments, "", {{"parts", Value::Texts()}}, kNo)
                                     : int{kNo};
  }
  Value::Texts texts;
  std::string lines;
  for (const dq::CString& part : parts) {
    if (part.IsEmpty()) continue;
    texts.emplace_back(part.View());
    lines += (lines.empty() ? "" : "\n") + texts.back();
  }
  return PrintAnswer(arguments, lines, {{"parts", texts}});
}

const Command kSplitName{
    "split-name",
    "Prints the parts of a qualified name.",
    "Prints the two or three parts that dots separate, a line each; what is behind the second dot\n"
    "is one part. Prints nothing and ends with status 1 if the name has neither two nor three, or\n"
    "one is empty.\n"
    "\n"
    "JSON: {\"parts\": [...]}.\n",
    {{"NAME", RunSplitName, {kJson}}}};

}  // namespace
}  // namespace dqtool
