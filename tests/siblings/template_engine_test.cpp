#include "siblings/options/template_engine.h"

#include "tests/support/testing.h"

namespace dq {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

class TemplateEngine : public ::testing::Test {
 protected:
  TemplateEngine() {
    engine.SetReportSink([this](const CString& message) { reports.emplace_back(message.View()); });
  }
  CDQTemplateEngine engine;
  std::vector<std::string> reports;
};

std::string Unknown(const std::string& name) {
  return "DQTemplateEngine::Process - Variable  '" + name + "' is not in the dictionary.";
}

std::string Malformed(const std::string& text) {
  return "DQTemplateEngine::Process - Malformed variable encountered in input string '" + text +
         "'.";
}

TEST_F(TemplateEngine, ReplacesVariablesAndReportsTheRest) {
  engine.SetVariable("$$name$$", "old");
  engine.SetVariable("$$name$$", "EMP");
  engine.SetVariable("$$self$$", "$$name$$");
  engine.SetVariable("$$null$$", nullptr);
  engine.SetVariable("$$$x$$", "dollar");
  for (const auto& [text, result, expected] :
       test::Rows<const char*, std::string, std::vector<std::string>>{
           {nullptr, "", {}},
           {"no marks, $1 $ each", "no marks, $1 $ each", {}},
           {"<$$name$$$$name$$.$$null$$>", "<EMPEMP.>", {}},
           {"$$self$$", "$$name$$", {}},
           {"$$Name$$", "$$Name$$", {Unknown("$$Name$$")}},
           {"$$a$$ $$name$$ $$b$$", "$$a$$ EMP $$b$$", {Unknown("$$a$$"), Unknown("$$b$$")}},
           {"$$name$$ $$open", "EMP $$open", {Malformed("$$name$$ $$open")}},
           {"$$$$", "$$$$", {Unknown("$$$$")}},
           {"$$$x$$", "dollar", {}},
           {"cost $$5 and $$name$$",
            "cost $$5 and $$name$$",
            {Unknown("$$5 and $$"), Malformed("cost $$5 and $$name$$")}},
       }) {
    reports.clear();
    SCOPED_TRACE(result);
    EXPECT_EQ(engine.ResolveVariableString(text), result.c_str());
    EXPECT_THAT(reports, ElementsAreArray(expected));
  }
}

TEST_F(TemplateEngine, StoresOnlyUnderNamesThatATextCanNeed) {
  for (const char* name : {"$$name", "name$$", "$$$", "", " $$name$$", "$$a$$b$$", "$$$$$"}) {
    reports.clear();
    EXPECT_FALSE(engine.SetVariable(name, "value")) << name;
    EXPECT_FALSE(engine.HasVariable(name)) << name;
    EXPECT_THAT(reports, ElementsAre("DQTemplateEngine::SetVariable - Attempting to set malformed "
                                     "variable '" +
                                     std::string(name) + "'."));
  }
  EXPECT_FALSE(engine.SetVariable(nullptr, "value"));
  EXPECT_TRUE(engine.SetVariable("$$$$", "empty name"));
  EXPECT_EQ(engine.ResolveVariableString("<$$$$>"), "<empty name>");
}

TEST_F(TemplateEngine, ASinkMayPutAnotherOneInItsPlace) {
  TemplateReportSink former = engine.SetReportSink(nullptr);
  engine.SetReportSink([this, former](const CString& message) {
    engine.SetReportSink(former);
    reports.push_back("once");
    former(message);
  });
  EXPECT_EQ(engine.ResolveVariableString("$$a$$$$b$$"), "$$a$$$$b$$");
  EXPECT_THAT(reports, ElementsAre("once", Unknown("$$a$$"), Unknown("$$b$$")));
}

TEST_F(TemplateEngine, TakesAMegabyteOfMarks) {
  for (const int more : {0, 1, 2, 3}) {
    const std::string marks((1 << 20) + more, '$');
    reports.clear();
    EXPECT_EQ(engine.ResolveVariableString(marks.c_str()).View(), marks);
    EXPECT_EQ(reports.size(), (1 << 18) + more / 2);
    EXPECT_EQ(reports.back(), more < 2 ? Unknown("$$$$") : Malformed(marks));
  }
}

}  // namespace
}  // namespace dq
