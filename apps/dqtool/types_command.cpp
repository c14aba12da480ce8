// dqtool types, type-text, platform-text: what platforms and kinds of objects are called.

#include <string>

#include "apps/dqtool/command.h"
#include "apps/dqtool/vocabulary.h"
#include "dqlib/dbvocab/object_type_list.h"
#include "dqlib/frame/application_info.h"

namespace dqtool {
namespace {

int RunTypes(const Arguments& arguments) {
  dq::ObjectTypeQuery query;
  query.platform = PlatformOf(arguments.Get("--platform"));
  if (const std::string* const version = arguments.Find("--version")) {
    query.version = VersionOf(*version, query.platform);
  }
  query.reduced = arguments.Has("--reduced");
  if (const std::string* const code = arguments.Find("--app")) SetApplication(*code);
  query.lumen_sql = dq::CDQApplicationInfo::IsAppLumenSql();
  Listing listing(arguments);
  for (const dq::ObjectTypeEntry& entry : dq::ListObjectTypes(query)) {
    const dq::CString text = dq::detail::LoadText(entry.text_id);
    listing.Add({{"value", int{entry.type}}, {"text", text.View()}});
  }
  return listing.End();
}

const Command kTypes{
    "types",
    "Lists the kinds of objects of a platform.",
    "Prints a line VALUE<TAB>TEXT for each, in the order of lists.\n"
    "\n"
    "JSON: [{\"value\", \"text\"}].\n",
    {{"",
      RunTypes,
      {kPlatform,
       {"--version", "V", "the server's version, 0 without it: 8.1.7, or 8.17 as a number"},
       {"--reduced", "", "without indexes, tables, views, sequences and synonyms"},
       {"--app", "CODE", "the application that the list is for"},
       kJson}}}};

int RunTypeText(const Arguments& arguments) {
  const std::string* const word = arguments.Find("--platform");
  const dq::DBMS platform = word == nullptr ? dq::DBMS_NONE : PlatformOf(*word);
  const dq::OBJECTTYPES type = TypeOf(arguments.words[0], platform);
  const dq::CString text = dq::GetObjectTypeText(type, platform);
  return PrintAnswer(arguments, text.View(), {{"value", int{type}}, {"text", text.View()}});
}

const Command kTypeText{
    "type-text",
    "Prints what a kind of objects is called.",
    "VALUE is the kind's number, or a name that it has on any platform. Without --platform that\n"
    "is 'none'.\n"
    "\n"
    "JSON: {\"value\", \"text\"}.\n",
    {{"VALUE", RunTypeText, {{"--platform", "P", kPlatform.help}, kJson}}}};

int RunPlatformText(const Arguments& arguments) {
  const dq::CString text = dq::GetDBMSText(PlatformOf(arguments.words[0]));
  return PrintAnswer(arguments, text.View(), {{"text", text.View()}});
}

const Command kPlatformText{"platform-text",
                            "Prints what a platform is called.",
                            "P is none, sybase, sqlserver, db2, oracle or db2os390.\n"
                            "\n"
                            "JSON: {\"text\"}.\n",
                            {{"P", RunPlatformText, {kJson}}}};

}  // namespace
}  // namespace dqtool
