// dqtool creation-template: prints the script that creates an object.

#include <string>
#include <string_view>

#include "apps/dqtool/command.h"
#include "apps/dqtool/vocabulary.h"
#include "dqlib/dbvocab/object_info.h"
#include "dqlib/framework/base/file.h"
#include "siblings/options/options_server.h"

namespace dqtool {
namespace {

/// For a script without text. A template that can't be opened has been told of, an empty one not.
int TellOfNoText(const dq::CString& template_path) {
  const dq::CString path = dq::CDQOptionsServer::GetObject()->ResolveVariableString(template_path);
  dq::CFile file;
  if (!file.Open(path, dq::CFile::modeRead | dq::CFile::shareDenyNone)) return kNo;
  return Complain("no text in " + std::string(path.View()));
}

int RunCreationTemplate(const Arguments& arguments) {
  const dq::DBMS platform = PlatformOf(arguments.Get("--platform"));
  const dq::OBJECTTYPES type = TypeOfObject(arguments.Get("--type"), platform);
  const std::string owner = arguments.Get("--owner");
  const std::string name = arguments.Get("--name");
  const dq::CDBObjectInfo object(type, owner.c_str(), name.c_str());
  if (!object.IsValid()) {
    return Complain("no object of this type has the owner '" + owner + "' and the name '" + name +
                    "'");
  }
  const dq::CString path = dq::GetCreationTemplatePath(platform, type);
  if (path.IsEmpty()) return Complain("the platform has no template of this type");
  if (const std::string* const root = arguments.Find("--root")) {
    dq::CDQOptionsServer::GetObject()->SetVariable("$$template_root$$", root->c_str());
  }
  const dq::CString text = object.GetCreationTemplate(platform);
  std::string_view lines = text.View();
  if (lines.empty()) return TellOfNoText(path);
  if (lines.ends_with('\n')) lines.remove_suffix(1);
  return PrintAnswer(arguments, lines, {{"text", lines}});
}

const Command kCreationTemplate{
    "creation-template",
    "Prints the script that creates an object.",
    "The script comes from the template of the type on the platform, with the object's type,\n"
    "owner and name filled in. Objects of types that have no owner need none.\n"
    "\n"
    "JSON: {\"text\"}.\n",
    {{"",
      RunCreationTemplate,
      {kPlatform,
       {"--type", "TYPE", "the kind of the object, by number or name as 'dqtool types' has them",
        Times::kOnce},
       {"--owner", "O", "its owner"},
       {"--name", "N", "its name"},
       {"--root", "DIR", "the directory with the platforms' directories of templates"},
       kJson}}}};

}  // namespace
}  // namespace dqtool
