// dqtool path: paths relative to a base and back, and as the network knows them.

#include <string>

#include "apps/dqtool/command.h"
#include "dqlib/core/file_utility.h"

namespace dqtool {
namespace {

int PrintPath(Words words) {
  if (words.empty()) throw WrongUsage("relative, absolute or universal is needed");
  const std::string& form = words[0];
  const bool universal = form == "universal";
  if (!universal && form != "relative" && form != "absolute") {
    throw WrongUsage("relative, absolute or universal is needed, not '" + form + "'");
  }
  if (words.size() != (universal ? 2 : 3)) {
    throw WrongUsage(form + (universal ? " needs a PATH" : " needs a BASE and a PATH"));
  }
  using Utility = dq::CDQFileUtility;
  const dq::CString path =
      universal            ? Utility::GetUniversalName(words[1].c_str())
      : form == "relative" ? Utility::AbsolutePathToRelative(words[1].c_str(), words[2].c_str())
                           : Utility::RelativePathToAbsolute(words[1].c_str(), words[2].c_str());
  PrintLine(path.View());
  return kYes;
}

const Command kPath{
    "path", "relative|absolute BASE PATH | universal PATH", "Prints another form of a path.",
    "A relative path is '.' and what follows BASE, or '..' and what follows BASE's drive; one "
    "that\n"
    "is neither stays as it is. 'absolute' is the opposite. Paths with drives or backslashes come\n"
    "in lower case. 'universal' is the path as other machines know it: a share, or the drive's\n"
    "administrative share; a path without a colon stays as it is.\n",
    PrintPath};

}  // namespace
}  // namespace dqtool
