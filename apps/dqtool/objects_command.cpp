// dqtool objects: lists and adds the objects of an object map file.

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "apps/dqtool/command.h"
#include "apps/dqtool/number_word.h"
#include "dqlib/dbvocab/object_info_map.h"
#include "dqlib/platform/platform.h"

namespace dqtool {
namespace {

int List(const std::string& path) {
  dq::CDBObjectInfoMap map;
  if (!map.Load(path.c_str())) {
    const auto status = dq::platform::Current().files->Status(path);
    // What is there, and can't be read, has been told of.
    const bool is_missing = status.error.kind == dq::platform::ErrorKind::kNotFound;
    return is_missing ? Complain("objects: there is no file " + path) : kNo;
  }
  // The map's own order turns round with each pass through a file.
  std::map<dq::CString, dq::CObject*> objects;
  for (dq::POSITION position = map.GetStartPosition(); position != nullptr;) {
    dq::CString key;
    dq::CObject* object = nullptr;
    map.GetNextAssoc(position, key, object);
    objects.emplace(std::move(key), object);
  }
  for (const auto& [key, object] : objects) {
    const dq::CDBObjectInfo nothing;
    const auto& info = object == nullptr ? nothing : static_cast<dq::CDBObjectInfo&>(*object);
    PrintLine(OnOneLine(key.View()) + '\t' + std::to_string(info.GetObjectType()) + '\t' +
              OnOneLine(info.GetOwner().View()) + '\t' + OnOneLine(info.GetName().View()));
  }
  return kYes;
}

int Add(const std::string& path, Words words) {
  const auto type = static_cast<dq::OBJECTTYPES>(ReadNumber<int>(words[1], "TYPE"));
  dq::CDBObjectInfoMap map;
  const bool done = map.Update(path.c_str(), [&] {
    map.Insert(
        words[0].c_str(),
        std::make_unique<dq::CDBObjectInfo>(type, words[2].c_str(), words[3].c_str()).release());
  });
  return done ? kYes : kNo;
}

int RunObjects(Words words) {
  if (words.empty()) throw WrongUsage("a FILE is needed");
  if (words[0].starts_with("--")) RefuseOption(words[0]);
  if (words.size() == 2 && words[1] == "list") return List(words[0]);
  if (words.size() == 6 && words[1] == "add") return Add(words[0], words.subspan(2));
  throw WrongUsage("'list' or 'add KEY TYPE OWNER NAME' is needed behind FILE");
}

const Command kObjects{
    "objects", "FILE list | FILE add KEY TYPE OWNER NAME", "Lists or adds to an object map file.",
    "'list' prints a line KEY<TAB>TYPE<TAB>OWNER<TAB>NAME for each object, sorted by key.\n"
    "'add' puts one in, in place of the one with the key if there is one; it makes the file if\n"
    "need be. TYPE is the number of a kind of objects, as 'dqtool types' has them.\n",
    RunObjects};

}  // namespace
}  // namespace dqtool
