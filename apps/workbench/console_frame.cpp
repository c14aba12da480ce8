#include "apps/workbench/console_frame.h"

#include <array>
#include <string>

namespace workbench {
namespace {

using dq::UINT;

enum Command : UINT {
  /// Plus the type of the message.
  kFirstMessage = 0x8300,
  kLastMessage = 0x8307,
  kManyMessages = 0x8310,
  kLeave = 0x8311,
};

struct MessageItem {
  const char* item;
  const char* text;
};
constexpr std::array<MessageItem, 8> kMessages = {{
    {"&Information", "3 rows affected"},
    {"&Warning", "The table has no primary key"},
    {"&Error", "Syntax error at line 2\nselect * form orders\n         ^"},
    {"&Database information", "Changed database context to 'sales'"},
    {"Database wa&rning", "Index is not unique"},
    {"Database err&or", "ORDERS: no such table"},
    {"&Start of a task", "Backup"},
    {"E&nd of a task", "Backup"},
}};

}  // namespace

dq::LRESULT ShellView::WindowProc(UINT message, dq::WPARAM wparam, dq::LPARAM lparam) {
  if (message == dq::WM_DESTROY && GetParent() != nullptr) GetParent()->PostMessage(dq::WM_CLOSE);
  return CDQConsoleProgramView::WindowProc(message, wparam, lparam);
}

bool ConsoleFrame::Open(dq::CWnd& owner) {
  const dq::CPoint at = owner.ClientToScreen({40, 40});
  const dq::CRect place{at.x, at.y, at.x + 640, at.y + 440};
  const bool made = CreateFrame({.class_name = "ConsoleFrame",
                                 .text = "Console and output",
                                 .place = place,
                                 .owner = &owner,
                                 .visible = false},
                                0, nullptr);
  if (!made || !MakeMenu()) return false;
  EnableDocking(dq::CBRS_ALIGN_ANY);
  constexpr UINT kPanes[] = {0};
  status_.SetIndicators(kPanes);
  if (!status_.Create(this) || !pane_.Create(this)) return false;
  if (!shell_.Create(this, {}, dq::kFirstPaneId, static_cast<dq::CDocument*>(nullptr)))
    return false;
  RecalcLayout();
  ShowWindow(dq::SW_SHOW);
  SetActiveView(&shell_);
  return true;
}

bool ConsoleFrame::MakeMenu() {
  std::string text = "popup \"&Messages\"\n";
  UINT command = kFirstMessage;
  for (const MessageItem& message : kMessages) {
    text += "item " + std::to_string(command++) + " \"" + message.item + "\"\n";
  }
  text += "item " + std::to_string(kManyMessages) + " \"A &thousand\"\n";
  text += "separator\nitem " + std::to_string(kLeave) + " \"&Close\"\nend\n";
  text += "popup \"&View\"\nitem " + std::to_string(dq::CDQOutputWnd::kBarId) +
          " \"&Output pane\"\nend\n";
  if (!menu_.LoadMenuIndirect(text)) return false;
  SetMenu(&menu_);
  return true;
}

bool ConsoleFrame::CallMapped(const dq::HandlerKey& key, dq::HandlerArguments& arguments) {
  static constexpr dq::MessageMapEntry kEntries[] = {
      dq::CommandRangeEntry<&ConsoleFrame::OnMessage>(kFirstMessage, kLastMessage),
      dq::CommandEntry<&ConsoleFrame::OnManyMessages>(kManyMessages),
      dq::CommandEntry<&ConsoleFrame::OnLeave>(kLeave),
  };
  return dq::CallEntry(kEntries, *this, key, arguments) || CFrameWnd::CallMapped(key, arguments);
}

dq::LRESULT ConsoleFrame::DefWindowProc(UINT message, dq::WPARAM wparam, dq::LPARAM lparam) {
  if (message != dq::DQM_ADD_OUTPUT_MESSAGE) {
    return CFrameWnd::DefWindowProc(message, wparam, lparam);
  }
  const auto& sent = *reinterpret_cast<const dq::CDQOutputMessage*>(lparam);
  pane_.AddMessage(sent.GetText(), sent.GetType());
  return 0;
}

void ConsoleFrame::OnMessage(UINT id) {
  const UINT type = id - kFirstMessage;
  pane_.AddMessage(kMessages[type].text, static_cast<int>(type));
}

void ConsoleFrame::OnManyMessages() {
  for (int number = 1; number <= 1000; ++number) {
    pane_.AddMessage(("Message " + std::to_string(number)).c_str(), dq::OUTPUT_PROGRAM_INFO);
  }
}

}  // namespace workbench
