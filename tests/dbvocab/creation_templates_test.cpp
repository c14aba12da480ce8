// The creation templates of resources/templates/, as the options lead to them.

#include <regex>

#include "dqlib/dbvocab/object_info.h"
#include "siblings/options/options_server.h"
#include "tests/support/own_settings.h"
#include "tests/support/testing.h"

namespace dq {
namespace {

using namespace ::testing;

constexpr DBMS kPlatforms[] = {DBMS_SYBASE, DBMS_SQLSERVER, DBMS_DB2, DBMS_ORACLE, DBMS_DB2OS390};

std::string Without(const std::string& text, const char* pattern) {
  return std::regex_replace(text, std::regex(pattern), "");
}

/// What every script keeps to, so that the platform's tool can run it as soon as the places in
/// angle brackets are filled in.
void CheckScript(const std::string& script, const std::string& end) {
  EXPECT_THAT(script, StartsWith("-- Create "));
  EXPECT_TRUE(
      std::ranges::all_of(script, [](char c) { return c == '\n' || (c >= ' ' && c < 127); }));
  EXPECT_THAT(Without(script, "<[a-z]+(_[a-z]+)*>"), Not(ContainsRegex("[<>\"$]|TODO")));
  const std::string code = Without(script, "--[^\n]*\n\n?");
  EXPECT_TRUE(code.substr(0, code.find_last_not_of('\n') + 1).ends_with("\n" + end)) << code;
  EXPECT_THAT(code, ContainsRegex("CREATE |ADD |PREP |exec sp_(add|grant)"));
  EXPECT_THAT(code, HasSubstr("NAMED"));
  EXPECT_EQ(std::ranges::count(code, '('), std::ranges::count(code, ')'));
  EXPECT_EQ(std::ranges::count(code, '\'') % 2, 0);
}

TEST(CreationTemplates, StandForEveryPairAndFillInToScriptsOfThePlatform) {
  CDQOptionsServer* const server = CDQOptionsServer::GetObject();
  std::vector<std::string> reports;
  TemplateReportSink former = server->GetTemplateEngine().SetReportSink(
      [&](const CString& message) { reports.emplace_back(message.View()); });
  std::set<std::string> expected;
  for (const DBMS platform : kPlatforms) {
    for (int number = OT_NONE; number <= OT_REDO_LOG_GROUP + 1; ++number) {
      const auto type = static_cast<OBJECTTYPES>(number);
      std::string path(GetCreationTemplatePath(platform, type).View());
      const std::string text(GetCreationTemplateText(platform, type).View());
      SCOPED_TRACE(path);
      EXPECT_EQ(path.empty(), text.empty());
      if (path.empty()) continue;
      std::ranges::replace(path, '\\', '/');
      expected.insert(path.substr(path.find('/') + 1));
      EXPECT_THAT(Without(text, "\\$\\$object_(type|owner|name)\\$\\$"), Not(HasSubstr("$$")));

      CDBObjectInfo object(type, "", "NAMED");
      const bool owned = !object.IsValid();
      if (owned) object.SetOwner("OWNING");
      const std::string script(object.GetCreationTemplate(platform).View());
      CheckScript(script, std::string(server->GetCommandDelimiter(platform).View()));
      EXPECT_TRUE(owned || text.find("$$object_owner$$") == std::string::npos);
    }
  }
  EXPECT_THAT(reports, IsEmpty());
  server->GetTemplateEngine().SetReportSink(std::move(former));

  const std::filesystem::path root(
      std::string(server->ResolveVariableString("$$template_root$$").View()));
  std::set<std::string> found;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    if (!entry.is_directory()) found.insert(entry.path().lexically_relative(root).generic_string());
  }
  EXPECT_EQ(found, expected);
}

}  // namespace
}  // namespace dq
