// dqtool guid: prints an identifier in its three forms.

#include <string>

#include "apps/dqtool/command.h"
#include "dqlib/core/guid.h"

namespace dqtool {
namespace {

int RunGuid(const Arguments& arguments) {
  const std::string& word = arguments.words[0];
  const dq::CDQGuid guid(word.c_str());
  // A text that can't be read leaves the value, so the value tells.
  if (guid.GetODLString().CompareNoCase(word.c_str()) != 0) {
    return Complain("no identifier: '" + word + "'");
  }
  const std::string odl(guid.GetODLString().View());
  const std::string members(guid.GetStructString().View());
  const std::string registry(guid.GetRegistryString().View());
  return PrintAnswer(arguments, odl + '\n' + members + '\n' + registry,
                     {{"odl", odl}, {"struct", members}, {"registry", registry}});
}

const Command kGuid{
    "guid",
    "Prints an identifier in its three forms.",
    "TEXT is 01234567-89AB-CDEF-0123-456789ABCDEF, in either case. What is printed\n"
    "are that form, the members of the structure, and the form of the registry.\n"
    "\n"
    "JSON: {\"odl\", \"struct\", \"registry\"}.\n",
    {{"TEXT", RunGuid, {kJson}}}};

}  // namespace
}  // namespace dqtool
