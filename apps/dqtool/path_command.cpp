// dqtool path: paths relative to a base and back, and as the network knows them.

#include <string>

#include "apps/dqtool/command.h"
#include "dqlib/core/file_utility.h"

namespace dqtool {
namespace {

using Utility = dq::CDQFileUtility;

int Print(const Arguments& arguments, const dq::CString& path) {
  return PrintAnswer(arguments, path.View(), {{"path", path.View()}});
}

int PrintRelative(const Arguments& arguments) {
  return Print(arguments, Utility::AbsolutePathToRelative(arguments.words[0].c_str(),
                                                          arguments.words[1].c_str()));
}

int PrintAbsolute(const Arguments& arguments) {
  return Print(arguments, Utility::RelativePathToAbsolute(arguments.words[0].c_str(),
                                                          arguments.words[1].c_str()));
}

int PrintUniversal(const Arguments& arguments) {
  return Print(arguments, Utility::GetUniversalName(arguments.words[0].c_str()));
}

const Command kPath{
    "path",
    "Prints another form of a path.",
    "A relative path is '.' and what follows BASE, or '..' and what follows BASE's drive; one\n"
    "that is neither stays as it is. 'absolute' is the opposite. Paths with drives or backslashes\n"
    "come in lower case. 'universal' is the path as other machines know it: a share, or the\n"
    "drive's administrative share; a path without a colon stays as it is.\n"
    "\n"
    "JSON: {\"path\"}.\n",
    {{"relative BASE PATH", PrintRelative, {kJson}},
     {"absolute BASE PATH", PrintAbsolute, {kJson}},
     {"universal PATH", PrintUniversal, {kJson}}}};

}  // namespace
}  // namespace dqtool
