#include "apps/workbench/main_frame.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "dqlib/framework/windows/message_box.h"
#include "dqlib/toolkit/dialog.h"
#include "dqlib/workspace/window_state.h"
#include "siblings/pictures/pictures.h"

namespace workbench {
namespace {

using dq::UINT;

/// Of the program's own; the dialogs' commands follow one another in the order of their table.
enum Command : UINT {
  kExit = 0xE141,
  kAbout = 0xE140,
  kControls = 0x8200,
  kConsole = 0x8201,
  kTree = 0x8202,
  kFirstDialog = 0x8100,
  kLastDialog = 0x81FF,
};

constexpr const char* kPlacement = "Workbench\\MainFrame";
constexpr dq::CRect kUsualPlace{80, 60, 880, 640};

/// A text as menus' data have it.
std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char character : text) {
    if (character == '"' || character == '\\') quoted += '\\';
    quoted += character;
  }
  return quoted + '"';
}

}  // namespace

MainFrame::MainFrame(Listener listener)
    : pictures_(dq::DQRESOURCES_GetInstanceHandle()), listener_(std::move(listener)) {}

MainFrame::~MainFrame() { MainFrame::DestroyWindow(); }

bool MainFrame::Open() {
  if (!Create("WorkbenchFrame", "Workbench", kUsualPlace, 0, nullptr, false)) return false;
  const bool made =
      MakeMenu() && MakeBars() &&
      output_.CreateWnd({.class_name = "Edit", .parent = this, .id = dq::kFirstPaneId});
  if (!made) return false;
  RecalcLayout();
  // Where nothing is kept, or no screen is any more, it stays where it is.
  if (!dq::DQLIB_RestoreWindowPlacement(kPlacement, this) || !IsShown()) ShowWindow(dq::SW_SHOW);
  return true;
}

bool MainFrame::MakeBars() {
  std::vector<dq::WORD> commands;
  for (UINT at = 0; at < dqapps::LibraryDialogs().size(); ++at) {
    commands.push_back(static_cast<dq::WORD>(kFirstDialog + at));
  }
  commands.push_back(0);
  commands.push_back(kAbout);
  tools_.SetButtons(commands);
  constexpr UINT kPanes[] = {0};
  return tools_.Create(this) && status_.SetIndicators(kPanes) && status_.Create(this);
}

dq::HBITMAP MainFrame::PictureOf(UINT command) {
  // The family's own pictures, one for each.
  constexpr UINT kFirstPicture = 3000;
  static std::map<UINT, dq::CBitmap> pictures;
  dq::CBitmap& picture = pictures[command];
  if (picture.GetSafeHandle() == nullptr) {
    dq::DQRESOURCES_LoadBitmap(picture, kFirstPicture + (command & 0xFF));
  }
  return picture.GetSafeHandle();
}

bool MainFrame::MakeMenu() {
  std::string text = "popup \"&File\"\nitem " + std::to_string(kExit) + " \"E&xit\"\nend\n";
  text += "popup \"&Dialogs\"\n";
  UINT command = kFirstDialog;
  for (const dqapps::LibraryDialog& dialog : dqapps::LibraryDialogs()) {
    text += "item " + std::to_string(command++) + ' ' + Quoted(dialog.Caption() + "...") + '\n';
  }
  text += "end\npopup \"&View\"\nitem " + std::to_string(kControls) + " \"&Controls\"\n";
  text += "item " + std::to_string(kConsole) + " \"Console and &output\"\n";
  text += "item " + std::to_string(kTree) + " \"&Tree\"\n";
  text += "end\npopup \"&Help\"\nitem " + std::to_string(kAbout) + " \"&About\"\nend\n";
  if (!menu_.LoadMenuIndirect(text)) return false;
  SetMenu(&menu_);
  return true;
}

void MainFrame::KeepPlacement() { dq::DQLIB_SaveWindowPlacement(kPlacement, this); }

bool MainFrame::CallMapped(const dq::HandlerKey& key, dq::HandlerArguments& arguments) {
  static constexpr dq::MessageMapEntry kEntries[] = {
      dq::CommandEntry<&MainFrame::OnExit>(kExit),
      dq::CommandEntry<&MainFrame::OnAbout>(kAbout),
      dq::CommandEntry<&MainFrame::OnControls>(kControls),
      dq::CommandEntry<&MainFrame::OnConsole>(kConsole),
      dq::CommandEntry<&MainFrame::OnTree>(kTree),
      dq::CommandRangeEntry<&MainFrame::OnDialog>(kFirstDialog, kLastDialog),
  };
  return dq::CallEntry(kEntries, *this, key, arguments) || CFrameWnd::CallMapped(key, arguments);
}

dq::LRESULT MainFrame::DefWindowProc(UINT message, dq::WPARAM wparam, dq::LPARAM lparam) {
  switch (message) {
    case dq::WM_CLOSE:
      KeepPlacement();
      break;
    case dq::WM_ENDSESSION:
      if (wparam != 0) KeepPlacement();
      break;
    case dq::WM_COMMANDHELP:
      SetMessageText(("There is no help on topic " + std::to_string(lparam) + ".").c_str());
      return 1;
    default:
      break;
  }
  return CFrameWnd::DefWindowProc(message, wparam, lparam);
}

void MainFrame::OnExit() { PostMessage(dq::WM_CLOSE); }

void MainFrame::OnDialog(UINT id) {
  const auto dialogs = dqapps::LibraryDialogs();
  const std::size_t index = id - kFirstDialog;
  if (index >= dialogs.size()) return;
  const dqapps::LibraryDialog& dialog = dialogs[index];
  const std::string caption = dialog.Caption();
  const dqapps::DialogOutcome outcome = dialog.Run();
  const std::string lines = outcome.is_opened ? outcome.Lines() : "it could not be opened";
  SetMessageText((caption + ": " + lines.substr(0, lines.find('\n'))).c_str());
  Tell(caption + '\n' + lines + '\n');
  listener_(dialog, outcome);
}

/// The one window of its kind: made with the arguments, or brought to the top.
template <typename Frame, typename... Arguments>
void MainFrame::Show(std::unique_ptr<Frame>& frame, Arguments&&... arguments) {
  if (frame != nullptr && frame->GetSafeHwnd() != nullptr) return frame->ActivateFrame();
  frame = std::make_unique<Frame>(std::forward<Arguments>(arguments)...);
  if (!frame->Open(*this)) frame.reset();
}

void MainFrame::OnControls() {
  Show(controls_, [this](const std::string& line) { Tell(line + '\n'); });
}

void MainFrame::OnConsole() { Show(console_); }

void MainFrame::OnTree() { Show(tree_); }

void MainFrame::OnAbout() {
  dq::AfxMessageBox("Workbench " WORKBENCH_VERSION "\n\nThe library's dialogs in windows.",
                    dq::BOX_INFORMATION);
}

/// Adds lines to the output.
void MainFrame::Tell(const std::string& text) {
  std::string lines;
  for (const char character : text) lines += character == '\n' ? "\r\n" : std::string(1, character);
  output_.SetSel(output_.GetWindowTextLength(), -1);
  output_.ReplaceSel(lines.c_str());
}

}  // namespace workbench
