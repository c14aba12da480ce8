// dqtool objects: lists and adds the objects of an object map file.

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "apps/common/content.h"
#include "apps/dqtool/command.h"
#include "apps/dqtool/vocabulary.h"
#include "dqlib/dbvocab/object_info_map.h"
#include "dqlib/platform/platform.h"

namespace dqtool {
namespace {

int List(const Arguments& arguments) {
  if (arguments.words[0].empty()) throw WrongUsage("FILE is empty");
  const dqapps::InputFile input(arguments.words[0]);
  if (!input.ok()) return kNo;
  const std::string& path = input.path();
  dq::CDBObjectInfoMap map;
  if (!map.Load(path.c_str())) {
    const auto status = dq::platform::Current().files->Status(path);
    // What is there, and can't be read, has been told of.
    const bool is_missing = status.error.kind == dq::platform::ErrorKind::kNotFound;
    return is_missing ? Complain("there is no file " + path) : kNo;
  }
  // The map's own order turns round with each pass through a file.
  std::map<dq::CString, dq::CObject*> objects;
  for (dq::POSITION position = map.GetStartPosition(); position != nullptr;) {
    dq::CString key;
    dq::CObject* object = nullptr;
    map.GetNextAssoc(position, key, object);
    objects.emplace(std::move(key), object);
  }
  Listing listing(arguments);
  for (const auto& [key, object] : objects) {
    const dq::CDBObjectInfo nothing;
    const auto& info = object == nullptr ? nothing : static_cast<dq::CDBObjectInfo&>(*object);
    listing.Add({{"key", key.View()},
                 {"type", int{info.GetObjectType()}},
                 {"owner", info.GetOwner().View()},
                 {"name", info.GetName().View()}});
  }
  return listing.End();
}

int Add(const Arguments& arguments) {
  const std::vector<std::string>& words = arguments.words;
  const std::string& path = words[0];
  if (path.empty()) throw WrongUsage("FILE is empty");
  if (path == "-") {
    throw WrongUsage("standard input can't be changed; for a file of that name: ./-");
  }
  const dq::OBJECTTYPES type = TypeOfObject(words[2], dq::DBMS_NONE);
  dq::CDBObjectInfoMap map;
  const bool done = map.Update(path.c_str(), [&] {
    map.Insert(
        words[1].c_str(),
        std::make_unique<dq::CDBObjectInfo>(type, words[3].c_str(), words[4].c_str()).release());
  });
  return done ? kYes : kNo;
}

const Command kObjects{
    "objects",
    "Lists or adds to an object map file.",
    "'list' prints a line KEY<TAB>TYPE<TAB>OWNER<TAB>NAME for each object, sorted by key; FILE "
    "may\n"
    "be '-', standard input. 'add' puts one in, in place of the one with the key if there is one;\n"
    "it makes the file if need be. TYPE is a kind of objects, by number or name as 'dqtool types'\n"
    "has them.\n"
    "\n"
    "JSON: [{\"key\", \"type\", \"owner\", \"name\"}].\n",
    {{"FILE list", List, {kJson}}, {"FILE add KEY TYPE OWNER NAME", Add}}};

}  // namespace
}  // namespace dqtool
