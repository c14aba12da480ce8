#include "dqlib/framework/windows/wnd.h"

#include <algorithm>
#include <unordered_map>
#include <utility>
#include <vector>

#include "dqlib/framework/base/trace.h"
#include "dqlib/framework/windows/data_exchange.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/message_queue.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/win_thread.h"

namespace dq {
namespace {

/// Children that are looked at one by one before an index of them is made.
constexpr int kWalkedChildren = 16;

thread_local constinit detail::UiState t_ui;

bool IsOwn(const CWnd* window) {
  return window != nullptr && MessageQueue::FindOwnWindow(window->GetSafeHwnd()) == window;
}

}  // namespace

namespace detail {

UiState& CurrentUi() { return t_ui; }

bool IsKeyOffered(const CWnd& window) {
  const KeyOffer* const offer = CurrentUi().key_offer;
  return offer != nullptr && offer->window == window.GetSafeHwnd();
}

bool PassKeyOn(const CWnd& window) {
  if (!IsKeyOffered(window)) return false;
  CurrentUi().key_offer->passed_on = true;
  return true;
}

Watched::Watched(const CWnd& window)
    : window_(&window), handle_(window.GetSafeHwnd()), ended_(t_ui.ended) {}

Watched::Watched(const CCmdTarget& target)
    : window_(DYNAMIC_DOWNCAST(CWnd, const_cast<CCmdTarget*>(&target))),
      handle_(window_ == nullptr ? nullptr : window_->GetSafeHwnd()),
      ended_(t_ui.ended) {}

bool Watched::IsThere() const {
  return handle_ == nullptr || ended_ == t_ui.ended ||
         MessageQueue::FindOwnWindow(handle_) == window_;
}

}  // namespace detail

using detail::Watched;
using detail::WrappingDifference;
using detail::WrappingSum;

/// The first child of each id, and how many have it. What would take a walk through the children is
/// answered by false: then the index is of no use any more.
struct CWnd::ChildIndex {
  struct Entry {
    CWnd* first;
    std::size_t count;
  };
  std::unordered_map<int, Entry> entries;

  /// `is_last`: no child with the id stands behind it.
  bool Add(CWnd* child, bool is_last) {
    const auto [entry, is_new] = entries.try_emplace(child->id_, Entry{child, 0});
    ++entry->second.count;
    return is_new || is_last;
  }

  /// Before the child leaves its place.
  bool Remove(const CWnd* child) {
    const auto entry = entries.find(child->id_);
    if (--entry->second.count == 0) {
      entries.erase(entry);
      return true;
    }
    if (entry->second.first != child) return true;
    CWnd* next = child->next_;
    for (int walked = 0; next != nullptr && walked < kWalkedChildren; ++walked) {
      if (next->id_ == child->id_) {
        entry->second.first = next;
        return true;
      }
      next = next->next_;
    }
    return false;
  }
};

IMPLEMENT_DYNAMIC(CWnd, CCmdTarget)

CWnd::CWnd() = default;

CWnd::~CWnd() {
  EndInDestructor();
  // It may be ending already, in one of its own handlers.
  detail::AllSteps steps;
  if (m_hWnd != nullptr) TakeDownTree(steps);
  CWinThread* const thread = AfxGetThread();
  if (thread != nullptr && thread->m_pMainWnd == this) thread->m_pMainWnd = nullptr;
}

void CWnd::EndInDestructor() {
  try {
    DestroyWindow();
  } catch (...) {
    AfxTrace("A handler failed while the object of a window was dropped.\n");
  }
}

bool CWnd::CreateWnd(const char* class_name) {
  return CreateWnd(WindowCreation{.class_name = class_name == nullptr ? "" : class_name});
}

bool CWnd::CreateWnd(const WindowCreation& creation) {
  if (MessageQueue::FindWindow(m_hWnd) != nullptr) return false;
  for (const CWnd* above : {creation.parent, creation.owner}) {
    if (above != nullptr && (!IsOwn(above) || above->destroying_)) return false;
  }
  m_hWnd = MessageQueue::AddWindow(this, std::string(creation.class_name));
  if (m_hWnd == nullptr) return false;
  class_name_ = creation.class_name;
  id_ = creation.id;
  visible_ = creation.visible;
  enabled_ = creation.enabled;
  place_ = creation.place;
  state_ = SIZE_RESTORED;
  placement_ = {};
  font_ = nullptr;
  tool_tip_.Empty();
  scroll_[SB_HORZ] = scroll_[SB_VERT] = {};
  OnSetText(std::string(creation.text).c_str());
  Link(creation.parent, creation.parent == nullptr ? nullptr : creation.parent->last_child_);
  if (creation.parent == nullptr && creation.owner != nullptr) {
    owner_ = creation.owner;
    next_owned_ = std::exchange(owner_->first_owned_, this);
    if (next_owned_ != nullptr) next_owned_->previous_owned_ = this;
  }
  TakeFrameWidths();
  if (creation.client_size) {
    place_.right = WrappingSum(place_.right, WrappingSum(frame_widths_.left, frame_widths_.right));
    place_.bottom =
        WrappingSum(place_.bottom, WrappingSum(frame_widths_.top, frame_widths_.bottom));
  }
  if (creation.centered) place_ = CenteredPlace(nullptr);
  const Watched made(*this);
  Changed(WindowChange::kCreated);
  const LRESULT result = WindowProc(WM_CREATE, 0, reinterpret_cast<LPARAM>(&creation));
  if (!made.IsThere()) return false;
  if (result == -1) {
    DestroyWindow();
    return false;
  }
  SendSize();
  if (made.IsThere()) WindowProc(WM_MOVE, 0, MakeLParam(place_.left, place_.top));
  return made.IsThere();
}

BOOL CWnd::DestroyWindow() {
  if (m_hWnd == nullptr || destroying_) return 0;
  const HWND self = m_hWnd;
  detail::AllSteps steps;
  if (MessageQueue::FindOwnWindow(self) != this) {
    // Its thread has ended, or another one drops it: nobody is left to be told.
    TakeDownTree(steps);
    return 0;
  }
  destroying_ = true;
  const HWND heir = HeirOfActivity();
  steps.Take([this] { LeaveFocus(*this, true); });
  // The last one is the next to be told.
  std::vector<HWND> waiting{self};
  while (!waiting.empty()) {
    const HWND next = waiting.back();
    waiting.pop_back();
    CWnd* const window = MessageQueue::FindOwnWindow(next);
    if (window == nullptr) continue;
    window->destroying_ = true;
    if (!window->DestroyOwned(steps)) continue;
    steps.Take([window] { window->WindowProc(WM_DESTROY, 0, 0); });
    // The handler may have ended it; what it had below is gone then.
    if (MessageQueue::FindOwnWindow(next) != window) continue;
    for (CWnd* child = window->last_child_; child != nullptr; child = child->previous_) {
      waiting.push_back(child->m_hWnd);
    }
  }
  if (MessageQueue::FindOwnWindow(self) == this) TakeDownTree(steps);
  CWnd* const next = t_ui.active == nullptr ? MessageQueue::FindOwnWindow(heir) : nullptr;
  if (next != nullptr && next->enabled_ && next->IsWindowVisible()) {
    steps.Take([next] { next->SetActiveWindow(); });
  }
  steps.Rethrow();
  return 1;
}

/// The window around, or that of its owner, if the active window ends with this one; else null.
HWND CWnd::HeirOfActivity() const {
  CWnd* const above = parent_ != nullptr ? parent_ : owner_;
  const CWnd* at = GetActiveWindow();
  while (at != nullptr && at != this) at = at->parent_ != nullptr ? at->parent_ : at->owner_;
  return at == nullptr || above == nullptr ? nullptr : HWND{above->GetTopLevelParent()->m_hWnd};
}

/// Ends the windows that it owns. False if it is gone itself then.
bool CWnd::DestroyOwned(detail::AllSteps& steps) {
  const Watched self(*this);
  while (CWnd* const owned = first_owned_) {
    owned->LeaveOwner();
    steps.Take([owned] { owned->DestroyWindow(); });
    if (!self.IsThere()) return false;
  }
  return true;
}

void CWnd::LeaveOwner() {
  if (owner_ == nullptr) return;
  (previous_owned_ == nullptr ? owner_->first_owned_ : previous_owned_->next_owned_) = next_owned_;
  if (next_owned_ != nullptr) next_owned_->previous_owned_ = previous_owned_;
  owner_ = next_owned_ = previous_owned_ = nullptr;
}

void CWnd::TakeDownTree(detail::AllSteps& steps) {
  const HWND self = m_hWnd;
  const bool was_alive = MessageQueue::FindOwnWindow(self) == this;
  for (CWnd* at = this;;) {
    while (at->first_child_ != nullptr) at = at->first_child_;
    if (at == this) break;
    CWnd* const parent = at->parent_;
    const HWND parent_handle = parent->m_hWnd;
    at->TakeDown(steps);
    at = parent;
    // The child's last call may have dropped this one, or any above the child.
    if (!was_alive) continue;
    if (MessageQueue::FindOwnWindow(self) != this) return;
    if (MessageQueue::FindOwnWindow(parent_handle) != parent) at = this;
  }
  TakeDown(steps);
}

void CWnd::TakeDown(detail::AllSteps& steps) {
  while (first_owned_ != nullptr) first_owned_->LeaveOwner();
  const HWND self = m_hWnd.exchange(nullptr);
  for (HWND* const kept : {&t_ui.focus, &t_ui.capture, &t_ui.active}) {
    if (*kept == self) *kept = nullptr;
  }
  Unlink();
  destroying_ = exchanging_ = false;
  children_by_id_.reset();
  const bool was_alive = MessageQueue::RemoveWindow(self);
  detail::EndHotKeys(self);
  ++t_ui.ended;
  if (!was_alive) return;
  Changed(WindowChange::kDestroyed);
  steps.Take([this] { PostNcDestroy(); });
}

CWnd* CWnd::FromHandle(HWND window) { return MessageQueue::FindWindow(window); }

// ---- The tree

void CWnd::Link(CWnd* parent, CWnd* after) {
  parent_ = parent;
  if (parent == nullptr) return;
  previous_ = after;
  next_ = after == nullptr ? parent->first_child_ : after->next_;
  (previous_ == nullptr ? parent->first_child_ : previous_->next_) = this;
  (next_ == nullptr ? parent->last_child_ : next_->previous_) = this;
  ChildIndex* const index = parent->children_by_id_.get();
  if (index != nullptr && !index->Add(this, next_ == nullptr)) parent->children_by_id_.reset();
}

void CWnd::Unlink() {
  LeaveOwner();
  if (parent_ == nullptr) return;
  ChildIndex* const index = parent_->children_by_id_.get();
  if (index != nullptr && !index->Remove(this)) parent_->children_by_id_.reset();
  (previous_ == nullptr ? parent_->first_child_ : previous_->next_) = next_;
  (next_ == nullptr ? parent_->last_child_ : next_->previous_) = previous_;
  parent_ = next_ = previous_ = nullptr;
}

void CWnd::SetDlgCtrlID(int id) {
  ChildIndex* const index = parent_ == nullptr ? nullptr : parent_->children_by_id_.get();
  const bool left = index == nullptr || index->Remove(this);
  id_ = id;
  if (index != nullptr && !(left && index->Add(this, false))) parent_->children_by_id_.reset();
  if (m_hWnd != nullptr) Changed(WindowChange::kId);
}

CWnd* CWnd::SetParent(CWnd* parent) {
  if (m_hWnd == nullptr || parent == this || destroying_) return nullptr;
  if (parent != nullptr && (!IsOwn(parent) || parent->destroying_ || IsChild(parent))) {
    return nullptr;
  }
  // No window is below or behind one that it owns: that one becomes its own.
  CWnd* top = parent == nullptr ? nullptr : parent->GetTopLevelParent();
  while (top != nullptr && !HasWithin(top->owner_)) {
    top = top->owner_ == nullptr ? nullptr : top->owner_->GetTopLevelParent();
  }
  if (top != nullptr) top->LeaveOwner();
  CWnd* const former = parent_;
  Unlink();
  Link(parent, parent == nullptr ? nullptr : parent->last_child_);
  Changed(WindowChange::kOrder);
  return former;
}

CWnd* CWnd::GetTopLevelParent() {
  CWnd* window = this;
  while (window->parent_ != nullptr) window = window->parent_;
  return window;
}

CFrameWnd* CWnd::GetParentFrame() const {
  for (CWnd* above = parent_; above != nullptr; above = above->parent_) {
    if (CFrameWnd* const frame = DYNAMIC_DOWNCAST(CFrameWnd, above)) return frame;
  }
  return nullptr;
}

CWnd* CWnd::GetDlgItem(int id) const {
  if (children_by_id_ == nullptr) {
    int walked = 0;
    for (CWnd* child = first_child_; child != nullptr; child = child->next_) {
      if (child->id_ == id) return child;
      if (++walked == kWalkedChildren) break;
    }
    if (walked < kWalkedChildren) return nullptr;
    children_by_id_ = std::make_unique<ChildIndex>();
    for (CWnd* child = first_child_; child != nullptr; child = child->next_) {
      children_by_id_->Add(child, true);
    }
  }
  const auto found = children_by_id_->entries.find(id);
  return found == children_by_id_->entries.end() ? nullptr : found->second.first;
}

bool CWnd::IsChild(const CWnd* other) const {
  for (; other != nullptr; other = other->parent_) {
    if (other->parent_ == this) return true;
  }
  return false;
}

CWnd* CWnd::WindowAt(const CPoint& screen) {
  if (!IsWindowVisible() || !GetWindowRect().PtInRect(screen)) return nullptr;
  HWND found = m_hWnd;
  for (HWND next = found; next != nullptr;) {
    found = next;
    CWnd* const window = MessageQueue::FindOwnWindow(found);
    if (window == nullptr) return nullptr;
    const CPoint at = window->ScreenToClient(screen);
    next = nullptr;
    if (!window->GetClientRect().PtInRect(at)) break;
    // By handle, because windows are asked whether they are hit, and may end others then.
    std::vector<HWND> under;
    for (const CWnd* child = window->first_child_; child != nullptr; child = child->next_) {
      if (child->visible_ && child->place_.PtInRect(at)) under.push_back(child->m_hWnd);
    }
    for (const HWND each : under) {
      CWnd* const child = MessageQueue::FindOwnWindow(each);
      if (child == nullptr || !child->IsHit(screen)) continue;
      next = each;
      break;
    }
  }
  return MessageQueue::FindOwnWindow(found);
}

void CWnd::SetWindowOrder(CWnd* after) {
  if (parent_ == nullptr || after == this || (after != nullptr && after->parent_ != parent_)) {
    return;
  }
  if (previous_ == after) return;
  CWnd* const parent = parent_;
  Unlink();
  Link(parent, after);
  Changed(WindowChange::kOrder);
}

// ---- Dialogs

BOOL CWnd::UpdateData(BOOL save) {
  if (m_hWnd == nullptr || exchanging_) return 0;
  CDataExchange exchange(this, save != 0);
  const Watched self(*this);
  exchanging_ = true;
  BOOL done = 1;
  try {
    DoDataExchange(&exchange);
  } catch (const CException&) {
    // Whoever failed has told the user.
    done = 0;
  } catch (...) {
    if (self.IsThere()) exchanging_ = false;
    throw;
  }
  if (!self.IsThere()) return 0;
  exchanging_ = false;
  return done;
}

void CWnd::DoDataExchange(CDataExchange*) {}

void CWnd::SetDlgItemText(int id, const char* text) {
  if (CWnd* const control = GetDlgItem(id)) control->SetWindowText(text);
}

CString CWnd::GetDlgItemText(int id) const {
  const CWnd* const control = GetDlgItem(id);
  return control == nullptr ? CString() : control->GetWindowText();
}

void CWnd::SetDlgItemInt(int id, int value) { SetDlgItemText(id, std::to_string(value).c_str()); }

void CWnd::CheckDlgButton(int id, int check) {
  if (CWnd* const button = GetDlgItem(id)) {
    button->SendMessage(BM_SETCHECK, static_cast<WPARAM>(check));
  }
}

int CWnd::IsDlgButtonChecked(int id) const {
  CWnd* const button = GetDlgItem(id);
  return button == nullptr ? 0 : static_cast<int>(button->SendMessage(BM_GETCHECK));
}

void CWnd::CheckRadioButton(int first_id, int last_id, int id) {
  for (long long at = first_id; at <= last_id; ++at) {
    CheckDlgButton(static_cast<int>(at), at == id ? 1 : 0);
  }
}

int CWnd::GetCheckedRadioButton(int first_id, int last_id) const {
  for (long long at = first_id; at <= last_id; ++at) {
    if (IsDlgButtonChecked(static_cast<int>(at)) != 0) return static_cast<int>(at);
  }
  return 0;
}

void CWnd::UpdateDialogControls(CCmdTarget& target, bool disable_if_no_handler) {
  std::vector<HWND> controls;
  for (const CWnd* child = first_child_; child != nullptr; child = child->next_) {
    controls.push_back(child->m_hWnd);
  }
  const Watched self(*this);
  const Watched route(target);
  for (const HWND each : controls) {
    CWnd* const control = MessageQueue::FindOwnWindow(each);
    if (control == nullptr || control->id_ == 0 || control->id_ == -1) continue;
    constexpr LRESULT kPushButton = DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON;
    const bool is_push_button = (control->SendMessage(WM_GETDLGCODE) & kPushButton) != 0;
    CCmdUI ui;
    ui.m_nID = static_cast<UINT>(control->id_);
    ui.m_pOther = control;
    ui.DoUpdate(target, disable_if_no_handler && is_push_button);
    if (!self.IsThere() || !route.IsThere()) return;
  }
}

/// Among the children of its parent.
void CWnd::TakePlaceOf(CWnd& former) {
  parent_ = std::exchange(former.parent_, nullptr);
  previous_ = std::exchange(former.previous_, nullptr);
  next_ = std::exchange(former.next_, nullptr);
  (previous_ == nullptr ? parent_->first_child_ : previous_->next_) = this;
  (next_ == nullptr ? parent_->last_child_ : next_->previous_) = this;
  if (parent_->children_by_id_ == nullptr) return;
  CWnd*& first = parent_->children_by_id_->entries.at(id_).first;
  if (first == &former) first = this;
}

bool CWnd::SubclassDlgItem(int id, CWnd* parent) {
  CWnd* const former = parent == nullptr ? nullptr : parent->GetDlgItem(id);
  if (m_hWnd != nullptr || former == nullptr || former->destroying_) return false;
  OnSubclassed(*former);
  text_ = former->text_;
  class_name_ = former->class_name_;
  id_ = former->id_;
  place_ = former->place_;
  frame_widths_ = former->frame_widths_;
  placement_ = former->placement_;
  update_ = former->update_;
  erase_ = former->erase_;
  state_ = former->state_;
  visible_ = former->visible_;
  enabled_ = former->enabled_;
  font_ = former->font_;
  tool_tip_ = former->tool_tip_;
  std::ranges::copy(former->scroll_, scroll_);
  TakePlaceOf(*former);
  for (CWnd* child = former->first_child_; child != nullptr; child = child->next_) {
    child->parent_ = this;
  }
  first_child_ = std::exchange(former->first_child_, nullptr);
  last_child_ = std::exchange(former->last_child_, nullptr);
  former->children_by_id_.reset();
  first_owned_ = std::exchange(former->first_owned_, nullptr);
  for (CWnd* owned = first_owned_; owned != nullptr; owned = owned->next_owned_) {
    owned->owner_ = this;
  }
  m_hWnd = former->m_hWnd.exchange(nullptr);
  MessageQueue::ReplaceWindow(m_hWnd, this);
  ++t_ui.ended;
  Changed(WindowChange::kReplaced);
  return true;
}

void CWnd::Describe(platform::DialogControl&) const {}
bool CWnd::Enter(std::string_view) { return false; }
bool CWnd::Press() { return false; }

int GetWindowClassName(HWND window, char* buffer, int size) {
  if (buffer == nullptr || size < 1) return 0;
  const std::string name = MessageQueue::ClassName(window);
  const std::size_t length = name.copy(buffer, static_cast<std::size_t>(size - 1));
  buffer[length] = '\0';
  return static_cast<int>(length);
}

}  // namespace dq
