// dqtool guid: prints an identifier in its three forms.

#include <string>

#include "apps/dqtool/command.h"
#include "dqlib/core/guid.h"

namespace dqtool {
namespace {

int RunGuid(Words words) {
  if (words.size() != 1) throw WrongUsage("one TEXT is needed");
  const dq::CDQGuid guid(words[0].c_str());
  // A text that can't be read leaves the value, so the value tells.
  if (guid.GetODLString().CompareNoCase(words[0].c_str()) != 0) {
    return Complain("guid: no identifier: '" + words[0] + "'");
  }
  for (const dq::CString& form :
       {guid.GetODLString(), guid.GetStructString(), guid.GetRegistryString()}) {
    PrintLine(form.View());
  }
  return kYes;
}

const Command kGuid{
    "guid", "TEXT", "Prints an identifier in its three forms.",
    "TEXT is 01234567-89AB-CDEF-0123-456789ABCDEF, in either case. What is printed\n"
    "are that form, the members of the structure, and the form of the registry.\n",
    RunGuid};

}  // namespace
}  // namespace dqtool
