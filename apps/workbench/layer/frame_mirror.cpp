#include "apps/workbench/layer/frame_mirror.h"

#include <wx/frame.h>
#include <wx/menu.h>

#include "apps/workbench/layer/gtk_menu.h"
#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/text.h"
#include "dqlib/framework/windows/mini_dock_frame.h"

namespace workbench {
namespace {

using dq::CWnd;
using dq::UINT;
using dq::WindowChange;

/// The high word of `WM_MENUSELECT` when a menu is left.
constexpr UINT kMenuLeft = 0xFFFF;

}  // namespace

Bars UsualBars(const CWnd& window) {
  if (dynamic_cast<const dq::CFrameWnd*>(&window) == nullptr) return {};
  static const int menu_height = MenuBarHeight();
  return {window.GetMenu() == nullptr ? 0 : menu_height};
}

FrameMirror::FrameMirror(Layer& layer, CWnd& window) : TopLevelMirror(layer, window) {
  layer.AddFrame(*this);
  events_.command = [this](UINT id) {
    this->layer().ShowMenus();
    Post([id](CWnd& frame) { frame.SendMessage(dq::WM_COMMAND, dq::MakeWParam(id, 0)); });
  };
  events_.opens = [this](dq::HMENU menu, int position) {
    Post([menu, position](CWnd& frame) {
      frame.SendMessage(dq::WM_INITMENUPOPUP, reinterpret_cast<dq::WPARAM>(menu), position);
    });
  };
  events_.looked_at = [this](UINT id, UINT state, dq::HMENU menu) {
    Post([=](CWnd& frame) {
      frame.SendMessage(dq::WM_MENUSELECT, dq::MakeWParam(id, state),
                        reinterpret_cast<dq::LPARAM>(menu));
    });
  };
  events_.with_owner = [this](std::function<void(CWnd&)> act) { PostFact(std::move(act)); };
}

FrameMirror::~FrameMirror() { layer().RemoveFrame(*this); }

wxFrame& FrameMirror::frame() const { return static_cast<wxFrame&>(*native()); }

wxTopLevelWindow* FrameMirror::MakeTopLevel(long style) {
  const bool is_small = dynamic_cast<dq::CMiniDockFrameWnd*>(&window()) != nullptr;
  const long kind = is_small ? wxFRAME_TOOL_WINDOW | wxFRAME_NO_TASKBAR : wxMINIMIZE_BOX;
  auto* const native =
      new wxFrame(nullptr, wxID_ANY, wxString(), wxDefaultPosition, wxSize(1, 1), style | kind);
  native->Bind(wxEVT_MENU_CLOSE,
               [this](wxMenuEvent&) { events_.looked_at(0, kMenuLeft, nullptr); });
  return native;
}

void FrameMirror::Apply(const Changes& changes) {
  if (changes.Has(WindowChange::kMenu)) ShowMenu();
  TopLevelMirror::Apply(changes);
}

void FrameMirror::ShowMenu() {
  const dq::CMenu* const menu = window().GetMenu();
  const dq::HMENU handle = menu == nullptr ? nullptr : menu->GetSafeHmenu();
  if (menu_ != nullptr && menu_->menu() == handle) return;
  menu_.reset();
  wxMenuBar* const former = frame().GetMenuBar();
  wxMenuBar* const bar = handle == nullptr ? nullptr : new wxMenuBar;
  if (bar != nullptr) menu_ = std::make_unique<MenuMirror>(handle, *bar, events_);
  frame().SetMenuBar(bar);
  delete former;
}

void FrameMirror::UpdateMenu() {
  if (menu_ != nullptr) menu_->Update();
}

bool FrameMirror::TakeMenuKey(std::string_view character, GdkEvent& press) {
  wxMenu* const menu = menu_ == nullptr ? nullptr : menu_->MenuOfKey(ToNative(character), window());
  if (menu == nullptr) return false;
  DropFromBar(*menu, press);
  return true;
}

Bars FrameMirror::ShownBars() const {
  const wxMenuBar* const bar = frame().GetMenuBar();
  return {bar == nullptr ? 0 : bar->GetSize().y};
}

}  // namespace workbench
