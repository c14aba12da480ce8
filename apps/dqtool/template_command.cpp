// dqtool template: replaces the variables of a text.

#include <optional>
#include <string>

#include "apps/dqtool/command.h"
#include "dqlib/platform/platform.h"
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
  if (equals == std::string::npos)
    throw WrongUsage("--set needs NAME=VALUE, not '" + setting + "'");
  engine.SetVariable(("$$" + setting.substr(0, equals) + "$$").c_str(),
                     setting.c_str() + equals + 1);
}

/// The file's text; no value, which has been said, if there is none.
std::optional<std::string> ReadText(const std::string& path) {
  std::string text;
  const dq::platform::Error error = dq::platform::Current().files->ReadAll(path, text);
  if (!error.ok()) {
    const auto reason = dq::platform::Current().system_errors->Describe(error.code);
    std::string complaint = "template: cannot read " + path + ": " + reason.value_or("");
    Complain(complaint.erase(complaint.find_last_not_of("\r\n: ") + 1));
    return std::nullopt;
  }
  if (text.find('\0') != std::string::npos) {
    Complain("template: no text: " + path);
    return std::nullopt;
  }
  // The last line's end is printed with the line.
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

int RunTemplate(Words words) {
  dq::CDQTemplateEngine engine;
  const Teller teller(engine);
  std::optional<std::string> file;
  std::optional<std::string> text;
  bool options_end = false;
  for (; !words.empty(); words = words.subspan(1)) {
    const std::string& word = words[0];
    if (options_end || !word.starts_with("--")) {
      if (text) throw WrongUsage("TEXT is one text; put it in quotes");
      text = word;
    } else if (word == "--") {
      options_end = true;
    } else if (word != "--set" && word != "--file") {
      RefuseOption(word);
    } else if (words.size() < 2) {
      throw WrongUsage(word + (word == "--set" ? " needs NAME=VALUE" : " needs a FILE"));
    } else {
      if (word == "--set") Set(engine, words[1]);
      if (word == "--file") file = words[1];
      words = words.subspan(1);
    }
  }
  if (text.has_value() == file.has_value()) throw WrongUsage("either a TEXT or --file is needed");
  if (file) text = ReadText(*file);
  if (!text) return kNo;
  PrintLine(engine.ResolveVariableString(text->c_str()).View());
  return teller.told() ? kNo : kYes;
}

const Command kTemplate{
    "template", "[--set NAME=VALUE ...] [--file FILE | TEXT]", "Replaces the variables of a text.",
    "A variable is $$NAME$$ in the text; marks pair from left to right. One that isn't set stays\n"
    "as it is and is told on standard error, and the exit status is 1.\n"
    "\n"
    "  --set NAME=VALUE  the value of a variable, named without its marks\n"
    "  --file FILE       the text is that of a file\n"
    "  --                what follows is no option\n",
    RunTemplate};

}  // namespace
}  // namespace dqtool
