#include "dqlib/framework/windows/drag_drop.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/platform/platform.h"

namespace dq {
namespace {

using Targets = std::unordered_map<HWND, COleDropTarget*>;

/// Never taken down: targets may be static objects.
Targets& AllTargets() {
  static Targets& targets = *new Targets;
  return targets;
}

/// The nearest window with a target, from `under` upwards.
CWnd* TargetWindow(CWnd* under) {
  while (under != nullptr && COleDropTarget::Of(under) == nullptr) under = under->GetParent();
  return under;
}

}  // namespace

// ---- Data

void COleDataObject::AttachClipboard() {
  pieces_.clear();
  platform::Clipboard& clipboard = *platform::Current().clipboard;
  for (const UINT format : clipboard.Formats()) {
    if (const std::optional<std::string> bytes = clipboard.Get(format)) SetData(format, *bytes);
  }
}

bool COleDataObject::IsDataAvailable(UINT format) const {
  return std::ranges::find(pieces_, format, &Piece::format) != pieces_.end();
}

std::optional<std::string> COleDataObject::GetData(UINT format) const {
  const auto found = std::ranges::find(pieces_, format, &Piece::format);
  if (found == pieces_.end()) return std::nullopt;
  return found->bytes;
}

std::vector<UINT> COleDataObject::GetFormats() const {
  std::vector<UINT> formats;
  for (const Piece& piece : pieces_) formats.push_back(piece.format);
  return formats;
}

void COleDataObject::SetData(UINT format, std::string_view bytes) {
  const auto found = std::ranges::find(pieces_, format, &Piece::format);
  if (found == pieces_.end()) {
    pieces_.push_back({format, std::string(bytes)});
  } else {
    found->bytes = bytes;
  }
}

bool COleDataSource::SetClipboard() const {
  std::vector<std::string> bytes;
  std::vector<platform::ClipboardData> pieces;
  const std::vector<UINT> formats = data_.GetFormats();
  bytes.reserve(formats.size());
  for (const UINT format : formats) {
    bytes.push_back(data_.GetData(format).value_or(std::string()));
    pieces.push_back({format, bytes.back()});
  }
  return platform::Current().clipboard->SetAll(pieces).ok();
}

UINT COleDataSource::DoDragDrop(CWnd& from, UINT effects, COleDropSource* source) const {
  UINT effect = DROPEFFECT_NONE;
  WindowObserver* const observer = GetWindowObserver();
  if (observer == nullptr || from.GetSafeHwnd() == nullptr) return effect;
  // The source may be gone with its window before the drag ends.
  const COleDataObject data = data_;
  COleDropSource plain;
  COleDropSource& asked = source == nullptr ? plain : *source;
  detail::Guarded([&] { effect = observer->StartDrag(from, data, effects, asked); });
  return effect & effects;
}

// ---- The side that data come from

COleDropSource::~COleDropSource() = default;

DragStep COleDropSource::QueryContinueDrag(bool escape, UINT keys) {
  constexpr UINT kButtons = MK_LBUTTON | MK_RBUTTON;
  if (escape || (keys & kButtons) == kButtons) return DragStep::kGiveUp;
  return (keys & kButtons) == 0 ? DragStep::kDrop : DragStep::kGoOn;
}

bool COleDropSource::GiveFeedback(UINT) { return false; }

// ---- Targets

COleDropTarget::~COleDropTarget() { Revoke(); }

bool COleDropTarget::Register(CWnd* window) {
  const HWND handle = window == nullptr ? nullptr : window->GetSafeHwnd();
  if (handle == nullptr || CWnd::FromHandle(window_) != nullptr) return false;
  Revoke();
  if (!AllTargets().emplace(handle, this).second) return false;
  window_ = handle;
  return true;
}

void COleDropTarget::Revoke() {
  if (window_ != nullptr) AllTargets().erase(window_);
  window_ = nullptr;
}

COleDropTarget* COleDropTarget::Of(const CWnd* window) {
  const auto found = AllTargets().find(window == nullptr ? nullptr : window->GetSafeHwnd());
  return found == AllTargets().end() ? nullptr : found->second;
}

UINT COleDropTarget::OnDragEnter(CWnd* window, COleDataObject* data, UINT keys, CPoint point) {
  return OnDragOver(window, data, keys, point);
}

UINT COleDropTarget::OnDragOver(CWnd*, COleDataObject*, UINT, CPoint) { return DROPEFFECT_NONE; }

void COleDropTarget::OnDragLeave(CWnd*) {}

BOOL COleDropTarget::OnDrop(CWnd*, COleDataObject*, UINT, CPoint) { return 0; }

int COleDropTarget::OnDropEx(CWnd*, COleDataObject*, UINT, UINT, CPoint) { return -1; }

// ---- A drag

DragInput::DragInput(COleDataObject data, UINT effects)
    : data_(std::move(data)), effects_(effects) {}

DragInput::~DragInput() {
  detail::Guarded([this] { Leave(); });
}

COleDropTarget* DragInput::Target() const { return COleDropTarget::Of(CWnd::FromHandle(over_)); }

UINT DragInput::Move(CWnd* under, UINT keys, const CPoint& screen) {
  CWnd* const window = TargetWindow(under);
  const HWND now = window == nullptr ? nullptr : window->GetSafeHwnd();
  const bool enters = now != over_;
  if (enters) Leave();
  over_ = now;
  COleDropTarget* const target = Target();
  if (window == nullptr || target == nullptr) return DROPEFFECT_NONE;
  const CPoint point = window->ScreenToClient(screen);
  const UINT effect = enters ? target->OnDragEnter(window, &data_, keys, point)
                             : target->OnDragOver(window, &data_, keys, point);
  return effect & effects_;
}

void DragInput::Leave() {
  COleDropTarget* const target = Target();
  CWnd* const window = CWnd::FromHandle(over_);
  over_ = nullptr;
  if (target != nullptr) target->OnDragLeave(window);
}

UINT DragInput::Drop(CWnd* under, UINT keys, const CPoint& screen) {
  const UINT effect = Move(under, keys, screen);
  COleDropTarget* const target = Target();
  CWnd* const window = CWnd::FromHandle(over_);
  if (target == nullptr) return DROPEFFECT_NONE;
  const CPoint point = window->ScreenToClient(screen);
  const HWND handle = std::exchange(over_, nullptr);
  const int chosen = target->OnDropEx(window, &data_, effect, effects_, point);
  if (chosen != -1) return static_cast<UINT>(chosen) & effects_;
  if (COleDropTarget::Of(CWnd::FromHandle(handle)) != target) return DROPEFFECT_NONE;
  if (effect == DROPEFFECT_NONE) {
    target->OnDragLeave(window);
    return DROPEFFECT_NONE;
  }
  return target->OnDrop(window, &data_, effect, point) != 0 ? effect : UINT{DROPEFFECT_NONE};
}

}  // namespace dq
