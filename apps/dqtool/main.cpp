// dqtool: the library's services at a shell prompt.

#include <cstdio>
#include <iterator>
#include <string>
#include <vector>

#include "apps/dqtool/command.h"
#include "dqlib/framework/base/trace.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/platform/platform.h"

namespace {

/// Message boxes that ask nothing are complaints of the command; others are put to the person.
class TellingPrompts : public dq::platform::Prompts {
 public:
  int Show(std::string_view caption, std::string_view text, dq::UINT type,
           dq::UINT help_id) override {
    if (dq::BoxButtons(type).size() > 1) {
      return target_.Show(caption, dqapps::ByComplainer(text), type, help_id);
    }
    dqapps::ComplainInLines(text);
    return dq::DefaultBoxButton(type);
  }
  void RunDialog(dq::platform::DialogView& dialog) override { target_.RunDialog(dialog); }

 private:
  dq::platform::Prompts& target_ = *dq::platform::Current().prompts;
};

}  // namespace

int main(int argc, char** argv) {
  dq::platform::Current().console->PrepareStreams();
  // Each line is one write, whoever reads at the other end.
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  std::vector<std::string> words;
  if (argc > 1) words.assign(std::next(argv), argv + argc);
  TellingPrompts prompts;
  dq::platform::Platform services = dq::platform::Current();
  services.prompts = &prompts;
  const dq::platform::ScopedPlatform scope(services);
  dq::SetTraceSink([](std::string_view text) { dqapps::Complain(text); });
  dq::CWinApp app("dqtool");
  app.SetRegistryKey("Velmora");
  return dqapps::RunCommandLine({"dqtool", DQTOOL_VERSION}, words);
}
