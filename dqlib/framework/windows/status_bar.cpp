#include "dqlib/framework/windows/status_bar.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/ui_state.h"

namespace dq {

IMPLEMENT_DYNAMIC(CStatusBar, CControlBar)

namespace {

// Pixels: beside a pane's text, above and below it, and between panes.
constexpr int kTextMargin = 3;
constexpr LONG kLineMargin = 4;
constexpr LONG kPaneGap = 2;

/// How much a pane takes of the bar.
LONG Extent(const StatusPane& pane) { return detail::WrappingSum(pane.width, 2 * kTextMargin); }

}  // namespace

/// A pane while it is brought up to date.
class CStatusBar::PaneUI : public CCmdUI {
 public:
  explicit PaneUI(CStatusBar& bar) : bar_(bar), watched_(bar) { m_pOther = &bar; }

  void Enable(BOOL on) override {
    m_bEnableChanged = true;
    SetStyle(SBPS_DISABLED, on == 0);
  }
  void SetCheck(int check) override { SetStyle(SBPS_POPOUT, check != 0); }
  void SetRadio(BOOL on) override { SetCheck(on != 0 ? 1 : 0); }
  void SetText(const char* text) override {
    if (HasPane()) bar_.SetText(Position(), text);
  }
  /// False once a handler has replaced the panes or ended the bar.
  bool HasPane() const { return watched_.IsThere() && bar_.GetItemID(Position()) == m_nID; }

 private:
  int Position() const { return static_cast<int>(m_nIndex); }
  void SetStyle(UINT bit, bool on) {
    if (!HasPane()) return;
    const UINT style = bar_.GetPaneStyle(Position());
    bar_.SetPaneStyle(Position(), on ? style | bit : style & ~bit);
  }

  CStatusBar& bar_;
  detail::Watched watched_;
};

bool CStatusBar::Create(CWnd* parent, int id) {
  if (!CreateWnd({.class_name = "StatusBar", .parent = parent, .id = id})) return false;
  const CFrameWnd* const frame = GetDockingFrame();
  if (frame != nullptr && !frame->GetMessageText().IsEmpty()) ShowMessage(frame->GetMessageText());
  return true;
}

bool CStatusBar::SetIndicators(std::span<const UINT> ids) {
  std::vector<Pane> panes;
  for (const UINT id : ids) {
    Pane& pane = panes.emplace_back();
    pane.id = id;
    if (id == 0) {
      pane.width = GetScreenSize().cx / 4;
      if (panes.size() == 1) pane.style = SBPS_STRETCH | SBPS_NOBORDERS;
      continue;
    }
    const std::optional<std::string_view> text = AfxFindString(id);
    if (!text) return false;
    const std::size_t end = text->find('\n');
    pane.text = text->substr(end == std::string_view::npos ? 0 : end + 1);
    pane.width = GetTextExtent(*this, pane.text.View()).cx;
    pane.style = SBPS_DISABLED;
  }
  const int former = GetItemCount();
  panes_ = std::move(panes);
  const CFrameWnd* const frame = GetDockingFrame();
  const int message = CommandToIndex(0);
  if (frame != nullptr && message >= 0) {
    panes_[static_cast<std::size_t>(message)].text = frame->GetMessageText();
  }
  if (GetSafeHwnd() == nullptr) return true;
  if (former > 0) Changed(WindowChange::kRowsRemoved, {0, former});
  if (GetItemCount() > 0) Changed(WindowChange::kRowsInserted, {0, GetItemCount()});
  return true;
}

int CStatusBar::CommandToIndex(UINT id) const {
  const auto found = std::ranges::find(panes_, id, &StatusPane::id);
  return found == panes_.end() ? -1 : static_cast<int>(found - panes_.begin());
}

StatusPane CStatusBar::GetPane(int position) const {
  if (position < 0 || position >= GetItemCount()) return {};
  return panes_[static_cast<std::size_t>(position)];
}

void CStatusBar::SetPane(int position, const StatusPane& pane) {
  if (position < 0 || position >= GetItemCount() || GetPane(position) == pane) return;
  static_cast<StatusPane&>(panes_[static_cast<std::size_t>(position)]) = pane;
  if (GetSafeHwnd() != nullptr) Changed(WindowChange::kRowsChanged, {position, 1});
}

void CStatusBar::SetText(int position, const char* text) {
  StatusPane pane = GetPane(position);
  pane.text = text;
  SetPane(position, pane);
}

bool CStatusBar::SetPaneText(int position, const char* text) {
  StatusPane pane = GetPane(position);
  pane.text = text;
  pane.style &= ~UINT{SBPS_DISABLED};
  SetPane(position, pane);
  return position >= 0 && position < GetItemCount();
}

void CStatusBar::SetPaneStyle(int position, UINT style) {
  StatusPane pane = GetPane(position);
  pane.style = style;
  SetPane(position, pane);
}

bool CStatusBar::GetPaneInfo(int position, UINT& id, UINT& style, int& width) const {
  if (position < 0 || position >= GetItemCount()) return false;
  const StatusPane pane = GetPane(position);
  id = pane.id;
  style = pane.style;
  width = pane.width;
  return true;
}

bool CStatusBar::SetPaneInfo(int position, UINT id, UINT style, int width) {
  SetPane(position, {id, style, std::max(0, width), GetPaneText(position)});
  return position >= 0 && position < GetItemCount();
}

CRect CStatusBar::GetItemRect(int position) const {
  if (position < 0 || position >= GetItemCount()) return {};
  const CRect client = GetClientRect();
  const auto stretched = std::ranges::find_if(
      panes_, [](const StatusPane& pane) { return (pane.style & SBPS_STRETCH) != 0; });
  long long taken = 0;
  for (auto pane = panes_.begin(); pane != panes_.end(); ++pane) {
    taken += (pane == panes_.begin() ? 0 : kPaneGap) + (pane == stretched ? 0 : Extent(*pane));
  }
  const long long rest = std::max<long long>(0, client.Width() - taken);
  long long left = 0;
  long long right = 0;
  for (auto pane = panes_.begin(); pane <= panes_.begin() + position; ++pane) {
    left = right + (pane == panes_.begin() ? 0 : kPaneGap);
    right = left + (pane == stretched ? rest : Extent(*pane));
  }
  const auto cut = [&](long long x) {
    return static_cast<LONG>(std::min<long long>(x, client.right));
  };
  return {cut(left), kPaneGap, cut(right), std::max(kPaneGap, client.bottom)};
}

CSize CStatusBar::CalcFixedLayout(const CSize& room, bool) {
  return {room.cx, GetTextExtent(*this, " ").cy + 2 * kLineMargin};
}

void CStatusBar::OnUpdateCmdUI(CCmdTarget& target, bool) {
  const detail::Watched self(*this);
  const detail::Watched route(target);
  for (int position = 0; self.IsThere() && route.IsThere() && position < GetItemCount();
       ++position) {
    PaneUI ui(*this);
    ui.m_nID = GetItemID(position);
    if (ui.m_nID == 0) continue;
    ui.m_nIndex = static_cast<UINT>(position);
    ui.m_nIndexMax = static_cast<UINT>(GetItemCount());
    const bool updated = ui.DoUpdate(target, false);
    if (!ui.HasPane()) continue;
    bool& was_updated = panes_[static_cast<std::size_t>(position)].updated;
    const bool changes = updated ? !ui.m_bEnableChanged : was_updated;
    was_updated = updated;
    if (changes) ui.Enable(updated);
  }
}

void CStatusBar::ShowMessage(const char* text) { SetText(CommandToIndex(0), text); }

}  // namespace dq
