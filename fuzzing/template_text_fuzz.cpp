// Templates against a plain reference. Input: lines "name=value" of variables without their marks,
// an empty line, and the template.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>

#include "siblings/options/template_engine.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

/// Replaces variables one character at a time.
std::string Expand(const std::string& text, const std::map<std::string, std::string>& variables) {
  std::string result;
  for (std::size_t i = 0; i < text.size();) {
    const bool opens = text.compare(i, 2, "$$") == 0;
    const std::size_t close = opens ? text.find("$$", i + 2) : std::string::npos;
    if (opens && close == std::string::npos) return result + text.substr(i);
    const std::string name = opens ? text.substr(i, close + 2 - i) : text.substr(i, 1);
    const auto found = variables.find(name);
    result += found == variables.end() ? name : found->second;
    i += name.size();
  }
  return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // Texts reach the engine zero-ended.
  std::string input(reinterpret_cast<const char*>(data), size);
  std::erase(input, '\0');
  std::map<std::string, std::string> variables;
  dq::CDQTemplateEngine engine;
  std::size_t reports = 0;
  engine.SetReportSink([&](const dq::CString&) { ++reports; });
  std::size_t at = 0;
  while (at < input.size() && input[at] != '\n') {
    const std::size_t end = std::min(input.find('\n', at), input.size());
    const std::string line = input.substr(at, end - at);
    at = std::min(end + 1, input.size());
    const std::size_t equals = std::min(line.find('='), line.size());
    const std::string name = "$$" + line.substr(0, equals) + "$$";
    const std::string value = line.substr(std::min(equals + 1, line.size()));
    const bool well_formed = name.find("$$", 2) == name.size() - 2;
    Require(engine.SetVariable(name.c_str(), value.c_str()) == well_formed);
    if (well_formed) variables[name] = value;
  }
  const std::string text = input.substr(std::min(at + 1, input.size()));
  reports = 0;
  Require(engine.ResolveVariableString(text.c_str()).View() == Expand(text, variables));
  Require(reports <= text.size());
  return 0;
}
