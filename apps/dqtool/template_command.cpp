// dqtool template: replaces the variables of a text.

#include <optional>
#include <string>

#include "apps/common/content.h"
#include "apps/dqtool/command.h"
#include "siblings/options/template_engine.h"

namespace dqtool {
namespace {

/// What is reported is told, and remembered.
class Teller {
 public:
  explicit Teller(dq::CDQTemplateEngine& engine) {
    engine.SetReportSink([this](const dq::CString& message) {
      told_ = true;
      Complain(message.View());
    });
  }
  Teller(const Teller&) = delete;
  Teller& operator=(const Teller&) = delete;
  bool told() const { return told_; }

 private:
  bool told_ = false;
};

void Set(dq::CDQTemplateEngine& engine, const std::string& setting) {
  const std::size_t equals = setting.find('=');
  if (equals == std::string::npos || equals == 0) {
    throw WrongUsage("--set needs NAME=VALUE, not '" + setting + "'");
  }
  engine.SetVariable(("$$" + setting.substr(0, equals) + "$$").c_str(),
                     setting.c_str() + equals + 1);
}

/// The file's text; no value, which has been said, if there is none.
std::optional<std::string> ReadText(const std::string& path) {
  std::optional<std::string> text = dqapps::ReadContent(path);
  if (!text) return text;
  if (text->find('\0') != std::string::npos) {
    Complain("no text: " + dqapps::NameOfInput(path));
    return std::nullopt;
  }
  // The last line's end is printed with the line.
  if (text->ends_with('\n')) text->pop_back();
  return text;
}

int RunTemplate(const Arguments& arguments) {
  const std::string* const file = arguments.Find("--file");
  if (arguments.words.empty() == (file == nullptr)) {
    throw WrongUsage("either a TEXT or --file is needed");
  }
  dq::CDQTemplateEngine engine;
  const Teller teller(engine);
  for (const auto& [option, value] : arguments.options) {
    if (option == "--set") Set(engine, value);
  }
  const std::optional<std::string> text = file != nullptr ? ReadText(*file) : arguments.words[0];
  if (!text) return kNo;
  const dq::CString result = engine.ResolveVariableString(text->c_str());
  return PrintAnswer(arguments, result.View(), {{"text", result.View()}},
                     teller.told() ? kNo : kYes);
}

const Command kTemplate{
    "template",
    "Replaces the variables of a text.",
    "A variable is $$NAME$$ in the text; marks pair from left to right. One that isn't set stays\n"
    "as it is and is told on standard error, and the exit status is 1.\n"
    "\n"
    "JSON: {\"text\"}.\n",
    {{"[TEXT]",
      RunTemplate,
      {{"--set", "NAME=VALUE", "the value of a variable, named without its marks",
        Times::kAnyNumber},
       {"--file", "FILE", "the text is that of a file"},
       kJson}}}};

}  // namespace
}  // namespace dqtool
