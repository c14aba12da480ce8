// dqtool creation-template: prints the script that creates an object.

#include <optional>
#include <string>

#include "apps/dqtool/command.h"
#include "apps/dqtool/number_word.h"
#include "apps/dqtool/platform_word.h"
#include "dqlib/dbvocab/object_info.h"
#include "dqlib/framework/base/file.h"
#include "siblings/options/options_server.h"

namespace dqtool {
namespace {

struct Wish {
  std::optional<dq::DBMS> platform;
  std::optional<dq::OBJECTTYPES> type;
  std::string owner;
  std::string name;
  std::optional<std::string> root;
};

Wish Parse(Words words) {
  Wish wish;
  while (!words.empty()) {
    const std::string& option = words[0];
    words = words.subspan(1);
    if (option == "--platform") {
      wish.platform = TakePlatform(words);
      continue;
    }
    if (option != "--type" && option != "--owner" && option != "--name" && option != "--root") {
      RefuseOption(option);
    }
    if (words.empty()) throw WrongUsage(option + " needs a word behind it");
    const std::string& word = words[0];
    words = words.subspan(1);
    if (option == "--type") {
      wish.type = static_cast<dq::OBJECTTYPES>(ReadNumber<int>(word, "VALUE"));
    } else if (option == "--owner") {
      wish.owner = word;
    } else if (option == "--name") {
      wish.name = word;
    } else {
      wish.root = word;
    }
  }
  if (!wish.platform || !wish.type) throw WrongUsage("--platform P and --type VALUE are needed");
  return wish;
}

/// For a script without text. A template that can't be opened has been told of, an empty one not.
int TellOfNoText(const dq::CString& template_path) {
  const dq::CString path = dq::CDQOptionsServer::GetObject()->ResolveVariableString(template_path);
  dq::CFile file;
  if (!file.Open(path, dq::CFile::modeRead | dq::CFile::shareDenyNone)) return kNo;
  return Complain("creation-template: no text in " + std::string(path.View()));
}

int RunCreationTemplate(Words words) {
  const Wish wish = Parse(words);
  const dq::CDBObjectInfo object(*wish.type, wish.owner.c_str(), wish.name.c_str());
  if (!object.IsValid()) {
    return Complain("creation-template: no object of this type with this owner and name");
  }
  const dq::CString path = dq::GetCreationTemplatePath(*wish.platform, *wish.type);
  if (path.IsEmpty()) {
    return Complain("creation-template: the platform has no template of this type");
  }
  if (wish.root) {
    dq::CDQOptionsServer::GetObject()->SetVariable("$$template_root$$", wish.root->c_str());
  }
  const dq::CString text = object.GetCreationTemplate(*wish.platform);
  std::string_view lines = text.View();
  if (lines.empty()) return TellOfNoText(path);
  if (lines.ends_with('\n')) lines.remove_suffix(1);
  PrintLine(lines);
  return kYes;
}

const Command kCreationTemplate{
    "creation-template", "--platform P --type VALUE --owner O --name N [--root DIR]",
    "Prints the script that creates an object.",
    "The script comes from the template of the type on the platform, with the object's type,\n"
    "owner and name filled in. Objects of types that have no owner need none.\n"
    "\n"
    "  --root DIR  the directory with the platforms' directories of templates\n",
    RunCreationTemplate};

}  // namespace
}  // namespace dqtool
