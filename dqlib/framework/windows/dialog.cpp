#include "dqlib/framework/windows/dialog.h"

#include <algorithm>
#include <utility>

#include "dqlib/framework/base/trace.h"
#include "dqlib/framework/windows/dialog_controls.h"
#include "dqlib/framework/windows/dialog_keys.h"
#include "dqlib/framework/windows/message_queue.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/win_thread.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

constexpr const char kDialogClass[] = "#32770";

/// Runs a step of clearing up. A handler that throws then would end the program, because the step
/// runs in a destructor; the run's own result or exception goes on instead.
template <typename Step>
void ClearUp(Step step) {
  try {
    step();
  } catch (...) {
    AfxTrace("A handler failed while a dialog was closed.\n");
  }
}

HWND HandleOf(const CWnd* window) { return window == nullptr ? nullptr : window->GetSafeHwnd(); }

/// What a modal dialog takes from others while it runs, and gives back.
class ModalState {
 public:
  explicit ModalState(const CWnd& dialog) {
    // Not from the dialog's own window, which may be there already.
    const CWnd* const focus = CWnd::GetFocus();
    const CWnd* const active = CWnd::GetActiveWindow();
    if (focus != &dialog && !dialog.IsChild(focus)) focus_ = HandleOf(focus);
    if (active != &dialog) active_ = HandleOf(active);
  }

  /// Disables the window that the dialog belongs to, the main window where it is given, and those
  /// that own them: a person could go around the dialog by any of them.
  void Disable(CWnd* owner, CWnd* main = nullptr) {
    std::vector<HWND> windows;
    for (CWnd* const first : {owner, main}) {
      for (CWnd* next = first; next != nullptr; next = next->GetOwner()) {
        next = next->GetTopLevelParent();
        if (windows.empty() && next->IsWindowEnabled()) owner_ = active_ = HandleOf(next);
        windows.push_back(HandleOf(next));
      }
    }
    for (const HWND each : windows) {
      CWnd* const window = MessageQueue::FindOwnWindow(each);
      if (window == nullptr || !window->IsWindowEnabled()) continue;
      disabled_.push_back(each);
      window->EnableWindow(false);
    }
  }

  /// Before the dialog's window goes: a window system makes another one active then, of another
  /// program if there is none of this one to be used.
  void Enable() {
    while (!disabled_.empty()) {
      CWnd* const window = MessageQueue::FindOwnWindow(disabled_.back());
      disabled_.pop_back();
      if (window != nullptr) ClearUp([window] { window->EnableWindow(true); });
    }
  }

  /// Makes the owner active, or where that was left alone, the former window, and gives the focus
  /// back, unless something else has it by then.
  void Activate() const {
    ClearUp([this] {
      CWnd* const active = MessageQueue::FindOwnWindow(active_);
      if (active != nullptr && (owner_ != nullptr || CWnd::GetActiveWindow() == nullptr)) {
        active->SetActiveWindow();
      }
      CWnd* const focus = MessageQueue::FindOwnWindow(focus_);
      if (focus != nullptr && CWnd::GetFocus() == nullptr) focus->SetFocus();
    });
  }

 private:
  HWND focus_ = nullptr;
  HWND active_ = nullptr;
  /// Null if it was disabled before.
  HWND owner_ = nullptr;
  std::vector<HWND> disabled_;
};

bool LayerRunsDialogs() {
  bool runs = false;
  if (const WindowObserver* const observer = GetWindowObserver()) {
    detail::Guarded([&] { runs = observer->RunsDialogs(); });
  }
  return runs;
}

}  // namespace

IMPLEMENT_DYNAMIC(CDialog, CWnd)

/// A modal run. It outlives the dialog where a handler drops that.
struct CDialog::Run {
  /// Null once it is dropped.
  CDialog* dialog;
  /// The window is hidden at the end.
  const bool keeps_window;
  bool closed = false;
  int result = IDCANCEL;
  ModalState state;

  Run(CDialog& of, bool keeps) : dialog(&of), keeps_window(keeps), state(of) { of.run_ = this; }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;
  /// However the run is left, by an exception too.
  ~Run() {
    state.Enable();
    EndWindow();
    // It may have dropped itself by now.
    if (dialog != nullptr) dialog->run_ = nullptr;
    state.Activate();
  }

 private:
  void EndWindow() {
    if (dialog == nullptr) return;
    if (keeps_window) return ClearUp([this] { dialog->ShowWindow(SW_HIDE); });
    ClearUp([this] { dialog->DestroyWindow(); });
    if (dialog != nullptr) dialog->controls_.clear();
  }
};

/// The dialog as the prompts see it. It holds the handle, because handlers may end the dialog.
class CDialog::View : public platform::DialogView {
 public:
  View(CDialog& dialog, const Run& run)
      : dialog_(dialog), run_(run), window_(dialog.GetSafeHwnd()) {}

  std::string Caption() override {
    return IsOpen() ? std::string(dialog_.GetWindowText()) : std::string();
  }

  std::vector<platform::DialogControl> Controls() override {
    PumpUntilIdle();
    if (!IsOpen()) return {};
    return detail::DescribeControls(dialog_);
  }

  bool Enter(int id, std::string_view value) override {
    CWnd* const control = Usable(id);
    const bool taken = control != nullptr && control->Enter(value);
    PumpUntilIdle();
    return taken;
  }

  bool Press(int id) override {
    CWnd* const control = Usable(id);
    bool taken = control != nullptr && control->Press();
    // A dialog without such a button takes the keys for it all the same.
    if (!taken && IsOpen() && dialog_.GetDlgItem(id) == nullptr && (id == IDOK || id == IDCANCEL)) {
      dialog_.SendMessage(WM_COMMAND, static_cast<WPARAM>(id));
      taken = true;
    }
    PumpUntilIdle();
    return taken;
  }

  /// For the person, it is closed when the thread is told to end.
  bool IsOpen() override { return IsLeftOpen() && !MessageQueue::Current()->IsToEnd(); }
  bool IsLeftOpen() const {
    return MessageQueue::FindOwnWindow(window_) == &dialog_ && !run_.closed;
  }

 private:
  CWnd* Usable(int id) {
    if (!IsOpen()) return nullptr;
    CWnd* const control = detail::FindControl(dialog_, id);
    if (control == nullptr || !control->IsWindowVisible()) return nullptr;
    for (const CWnd* window = control; window != &dialog_; window = window->GetParent()) {
      if (!window->IsWindowEnabled()) return nullptr;
    }
    return control;
  }

  CDialog& dialog_;
  const Run& run_;
  HWND window_;
};

CDialog::CDialog(UINT template_id, CWnd* parent)
    : template_id_(template_id), modal_parent_(parent) {}

CDialog::~CDialog() {
  // While the controls are still there: their parent goes first.
  EndInDestructor();
  if (run_ != nullptr) run_->dialog = nullptr;
}

void CDialog::InitModalIndirect(DialogTemplate dialog, CWnd* parent) {
  own_template_ = std::make_shared<const DialogTemplate>(std::move(dialog));
  modal_parent_ = parent;
}

int CDialog::DoModal() {
  if (run_ != nullptr || GetSafeHwnd() != nullptr) return -1;
  // Over what the person works with, to which they come back: a dialog that runs already mustn't be
  // closed meanwhile.
  CWnd* const active = GetActiveWindow();
  CWnd* const above = active != nullptr && active->CanHaveFocus() ? active : AfxGetMainWnd();
  CWnd* const parent = modal_parent_ != nullptr ? modal_parent_ : above;
  // A handler may set another one meanwhile.
  const std::shared_ptr<const DialogTemplate> own = own_template_;
  if (own != nullptr) return RunModal(*own, parent);
  const std::optional<DialogTemplate> found = FindDialogTemplate(template_id_);
  return found ? RunModal(*found, parent) : -1;
}

int CDialog::RunModal(const DialogTemplate& dialog, CWnd* parent) {
  // The main window may be another thread's.
  if (parent != nullptr && MessageQueue::FindOwnWindow(parent->GetSafeHwnd()) != parent) return -1;
  CWnd* const owner = parent == nullptr ? nullptr : parent->GetTopLevelParent();
  const HWND owner_window = HandleOf(owner);
  CWnd* const main = modal_parent_ == nullptr ? AfxGetMainWnd() : nullptr;
  Run run(*this, false);
  run.state.Disable(owner, MessageQueue::FindOwnWindow(HandleOf(main)));
  if (run.dialog == nullptr || MessageQueue::FindOwnWindow(owner_window) != owner) return -1;
  if (!Open(dialog, owner, false)) return run.closed ? run.result : -1;
  return RunShown(run);
}

int CDialog::RunWindow() {
  const HWND window = GetSafeHwnd();
  if (run_ != nullptr || window == nullptr || GetParent() != nullptr) return -1;
  Run run(*this, true);
  run.state.Disable(GetOwner());
  return MessageQueue::FindOwnWindow(window) == this ? RunShown(run) : run.result;
}

int CDialog::RunShown(Run& run) {
  if (run.closed) return run.result;
  View view(*this, run);
  ShowWindow(SW_SHOW);
  if (!view.IsOpen()) {
    // A handler has closed it while it came up, or the thread is about to end.
  } else if (LayerRunsDialogs()) {
    // Without the layer nobody could answer.
    PumpUntilHandled([&view] { return !view.IsOpen() || !LayerRunsDialogs(); });
  } else {
    platform::Current().prompts->RunDialog(view);
  }
  if (view.IsLeftOpen()) OnCancel();
  if (view.IsLeftOpen()) EndDialog(IDCANCEL);
  return run.result;
}

bool CDialog::Create(UINT template_id, CWnd* parent, bool child) {
  const std::optional<DialogTemplate> found = FindDialogTemplate(template_id);
  if (!found) return false;
  template_id_ = template_id;
  return CreateIndirect(*found, parent, child);
}

bool CDialog::CreateIndirect(const DialogTemplate& dialog, CWnd* parent, bool child) {
  if (run_ != nullptr || GetSafeHwnd() != nullptr || (child && parent == nullptr)) return false;
  controls_.clear();
  return Open(dialog, parent, child);
}

bool CDialog::Open(const DialogTemplate& dialog, CWnd* parent, bool child) {
  if (!CreateWnd({.class_name = kDialogClass,
                  .text = dialog.caption,
                  .place = {0, 0, dialog.size.cx, dialog.size.cy},
                  .client_size = true,
                  .centered = !child,
                  .parent = child ? parent : nullptr,
                  .owner = child ? nullptr : parent,
                  .visible = false})) {
    return false;
  }
  const detail::Watched self(*this);
  if (!detail::MakeControls(dialog, *this, controls_)) return false;
  const bool choose_focus = OnInitDialog() != 0;
  if (!self.IsThere()) return false;
  first_focus_ = choose_focus && !child;
  return true;
}

BOOL CDialog::OnInitDialog() {
  if (UpdateData(0) != 0) return 1;
  // Half of its values are missing: a person mustn't answer by the rest.
  EndDialog(-1);
  return 0;
}

void CDialog::EndDialog(int result) {
  if (run_ == nullptr) {
    ShowWindow(SW_HIDE);
  } else if (!run_->closed) {
    run_->closed = true;
    run_->result = result;
  }
}

void CDialog::OnOK() {
  if (UpdateData(1) != 0) EndDialog(IDOK);
}

void CDialog::OnCancel() { EndDialog(IDCANCEL); }

bool CDialog::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  static constexpr MessageMapEntry kEntries[] = {
      CommandEntry<&CDialog::OnOK>(IDOK),
      CommandEntry<&CDialog::OnCancel>(IDCANCEL),
  };
  return CallEntry(kEntries, *this, key, arguments) || CWnd::CallMapped(key, arguments);
}

BOOL CDialog::OnCmdMsg(UINT id, int code, void* extra, void* handler_info) {
  const detail::Watched self(*this);
  if (CWnd::OnCmdMsg(id, code, extra, handler_info) != 0) return 1;
  if (!self.IsThere()) return 0;
  if (code != CN_COMMAND && code != CN_UPDATE_COMMAND_UI) return 0;
  constexpr UINT kFirstCommand = 0x8000;
  constexpr UINT kLastCommand = 0xEFFF;
  if (id < kFirstCommand || id > kLastCommand) return 0;
  CWnd* const above = GetParent() != nullptr ? GetParent() : GetOwner();
  if (above != nullptr && above->OnCmdMsg(id, code, extra, handler_info) != 0) return 1;
  CWinThread* const thread = AfxGetThread();
  return thread == nullptr ? 0 : thread->OnCmdMsg(id, code, extra, handler_info);
}

LRESULT CDialog::DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_CLOSE) {
    OnCancel();
    return 0;
  }
  if (message == WM_SHOWWINDOW && wparam != 0) {
    const detail::Watched self(*this);
    if (std::exchange(first_focus_, false)) detail::FocusFirst(*this);
    if (!self.IsThere()) return 0;
    GotoDlgCtrl(MessageQueue::FindOwnWindow(std::exchange(wanted_focus_, nullptr)));
  }
  if (message == WM_IDLEUPDATECMDUI) UpdateDialogControls(*this, false);
  return CWnd::DefWindowProc(message, wparam, lparam);
}

void CDialog::NextDlgCtrl() {
  if (CWnd* const control = detail::NextTabStop(*this, true)) control->SetFocus();
}

void CDialog::PrevDlgCtrl() {
  if (CWnd* const control = detail::NextTabStop(*this, false)) control->SetFocus();
}

BOOL CDialog::PreTranslateMessage(MSG* message) {
  if (CWnd::PreTranslateMessage(message) != 0) return 1;
  // In a dialog that lies in another one, keys are the outer one's.
  if (GetParent() != nullptr && GetParent()->IsKindOf(RUNTIME_CLASS(CDialog))) return 0;
  return detail::TranslateDialogKey(*this, *message) ? 1 : 0;
}

void CDialog::GotoDlgCtrl(CWnd* control) {
  if (control == nullptr) return;
  if (IsWindowVisible()) {
    control->SetFocus();
  } else {
    wanted_focus_ = control->GetSafeHwnd();
  }
}

}  // namespace dq
