// Any template with any variables. Input: lines "name=value" of variables without their marks, an
// empty line, and the template.

#include "fuzzing/fuzzing.h"

void dq::fuzz::Try(std::string_view input) {
  // A zero ends every text.
  input = input.substr(0, input.find('\0'));
  CDQTemplateEngine engine;
  std::size_t reports = 0;
  engine.SetReportSink([&](const CString&) { ++reports; });
  for (std::string_view line = TakeLine(input); !line.empty(); line = TakeLine(input)) {
    const std::string name = "$$" + std::string(line.substr(0, line.find('='))) + "$$";
    const std::string value(line.substr(std::min(line.find('='), line.size() - 1) + 1));
    const bool well_formed = name.find("$$", 2) == name.size() - 2;
    Require(engine.SetVariable(name.c_str(), value.c_str()) == well_formed);
    Require(!well_formed || engine.ResolveVariableString(name.c_str()) == value.c_str());
  }
  reports = 0;
  const std::string text(input);
  const CString resolved = engine.ResolveVariableString(text.c_str());
  Require(reports <= text.size());
  // What has no marks stays as it is, and so does what stands before the first.
  const std::size_t plain = std::min(text.find("$$"), text.size());
  Require(resolved.View().substr(0, plain) == text.substr(0, plain));
  Require(plain < text.size() || resolved.View() == text);
}
