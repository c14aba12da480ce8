// workbench: the library's dialogs in windows.

#include <cstdio>
#include <exception>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "apps/common/command_line.h"
#include "apps/workbench/layer/desktop_services.h"
#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/trace.h"
#include "apps/workbench/main_frame.h"
#include "dqlib/framework/base/trace.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/platform/platform.h"

namespace workbench {
namespace {

using dqapps::Complain;

constexpr const char* kHelp =
    "usage: workbench [--trace]\n"
    "\n"
    "Opens a window with the library's dialogs. It needs a display of X11.\n"
    "\n"
    "  --trace    print what is shown, and how dialogs were left, as lines of JSON\n"
    "  --help     print this\n"
    "  --version  print the version";

/// Prints each line at once. Nobody need read it.
class PrintedTrace : public Trace {
 public:
  void Write(const TraceLine& line) override {
    try {
      if (is_read_) dqapps::PrintLine(line.Finish());
    } catch (const dqapps::OutputClosed& closed) {
      is_read_ = false;
      if (!closed.IsReaderGone()) Complain(closed.what());
    }
  }

 private:
  bool is_read_ = true;
};

int Run(bool traces) {
  if (const auto why = WhyNoDisplay()) {
    Complain("there is no display: " + *why);
    Complain("start it in a desktop session, bring one along by 'ssh -X', or make one in memory:");
    Complain("xvfb-run ./run workbench (package xvfb)");
    return dqapps::kNo;
  }
  dq::CWinApp app("workbench");
  app.SetRegistryKey("Velmora");
  PrintedTrace trace;
  std::optional<MainFrame> frame;
  const auto when_lost = [&frame] {
    Complain("the display is gone");
    if (frame) frame->KeepPlacement();
    dq::PostQuitMessage(dqapps::kNo);
  };
  Layer layer({.trace = traces ? &trace : nullptr,
               .picture_of = MainFrame::PictureOf,
               .when_lost = when_lost});
  const DesktopServices services(layer);
  frame.emplace([&](const dqapps::LibraryDialog& dialog, const dqapps::DialogOutcome& outcome) {
    if (!traces) return;
    TraceLine line("outcome");
    line.Add("dialog", static_cast<long long>(dialog.id));
    line.Add("lines", outcome.is_opened ? outcome.Lines() : std::string());
    trace.Write(line);
  });
  app.m_pMainWnd = &*frame;
  if (!frame->Open()) return Complain("the main window can't be made");
  return app.Run();
}

int RunCommandLine(dqapps::Words words) {
  bool traces = false;
  for (const std::string& word : words) {
    if (word == "--trace") {
      traces = true;
    } else if (word == "--version") {
      dqapps::PrintLine("workbench " WORKBENCH_VERSION);
      return dqapps::kYes;
    } else if (dqapps::AsksForHelp(word)) {
      dqapps::PrintLine(kHelp);
      return dqapps::kYes;
    } else {
      Complain("no option '" + word + "'; 'workbench --help' shows those there are");
      return dqapps::kWrongUsage;
    }
  }
  return Run(traces);
}

}  // namespace
}  // namespace workbench

int main(int argc, char** argv) {
  dq::platform::Current().console->PrepareStreams();
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  dqapps::SetComplainer("workbench", "");
  dq::SetTraceSink([](std::string_view text) { dqapps::Complain(text); });
  std::vector<std::string> words;
  if (argc > 1) words.assign(std::next(argv), argv + argc);
  try {
    return workbench::RunCommandLine(words);
  } catch (const dqapps::OutputClosed& closed) {
    return closed.IsReaderGone() ? dqapps::kReaderGone : dqapps::Complain(closed.what());
  } catch (const std::exception& failure) {
    return dqapps::Complain(failure.what());
  }
}
