#include "dqlib/framework/windows/tool_bar.h"

#include <algorithm>

#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/resource_text.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/window_messages.h"
#include "dqlib/platform/modules.h"

namespace dq {

using detail::WrappingSum;

IMPLEMENT_DYNAMIC(CToolBar, CControlBar)

namespace {

constexpr std::string_view kClassName = "ToolBar";
constexpr WORD kVersion = 1;
// Pixels: around a button's picture, around the buttons, and a separator between them.
constexpr LONG kButtonMargin = 4;
constexpr LONG kBarMargin = 2;
constexpr LONG kSeparatorWidth = 8;
constexpr std::size_t kHeadWords = 4;
constexpr std::size_t kHighestWord = 0xFFFF;

WORD WordAt(std::string_view data, std::size_t index) {
  const auto low = static_cast<unsigned char>(data[2 * index]);
  const auto high = static_cast<unsigned char>(data[2 * index + 1]);
  return static_cast<WORD>(low | (high << 8));
}

void AddWord(std::string& data, std::size_t word) {
  data += static_cast<char>(word & 0xFF);
  data += static_cast<char>((word >> 8) & 0xFF);
}

/// A button while it is brought up to date.
class ButtonUI : public CCmdUI {
 public:
  explicit ButtonUI(CToolBar& bar) : bar_(bar), watched_(bar) { m_pOther = &bar; }

  void Enable(BOOL on) override {
    m_bEnableChanged = true;
    if (HasButton()) bar_.EnableButton(Position(), on != 0);
  }
  void SetCheck(int check) override {
    if (HasButton()) bar_.CheckButton(Position(), check);
  }
  void SetRadio(BOOL on) override { SetCheck(on != 0 ? 1 : 0); }
  /// Buttons show pictures alone.
  void SetText(const char*) override {}

 private:
  int Position() const { return static_cast<int>(m_nIndex); }
  /// False once a handler has replaced the buttons or ended the bar.
  bool HasButton() const { return watched_.IsThere() && bar_.GetItemID(Position()) == m_nID; }

  CToolBar& bar_;
  detail::Watched watched_;
};

}  // namespace

std::optional<ToolBarTemplate> ReadToolBarTemplate(std::string_view data) {
  if (data.size() < 2 * kHeadWords || WordAt(data, 0) != kVersion) return std::nullopt;
  const std::size_t count = WordAt(data, 3);
  if (data.size() / 2 - kHeadWords < count) return std::nullopt;
  ToolBarTemplate bar;
  bar.picture_size = {WordAt(data, 1), WordAt(data, 2)};
  for (std::size_t at = 0; at < count; ++at) {
    bar.commands.push_back(WordAt(data, kHeadWords + at));
  }
  return bar;
}

std::string WriteToolBarTemplate(const CSize& picture_size, std::span<const WORD> commands) {
  const auto fits = [](LONG size) { return size >= 0 && size <= static_cast<LONG>(kHighestWord); };
  if (!fits(picture_size.cx) || !fits(picture_size.cy) || commands.size() > kHighestWord) return {};
  std::string data;
  AddWord(data, kVersion);
  AddWord(data, static_cast<std::size_t>(picture_size.cx));
  AddWord(data, static_cast<std::size_t>(picture_size.cy));
  AddWord(data, commands.size());
  for (const WORD command : commands) AddWord(data, command);
  return data;
}

bool CToolBar::Create(CWnd* parent, int id) {
  return CreateWnd(WindowCreation{.class_name = kClassName, .parent = parent, .id = id});
}

bool CToolBar::LoadToolBar(UINT id) {
  const std::optional<std::string_view> data = detail::FindResourceData(id, RESOURCE_TOOLBAR);
  const std::optional<ToolBarTemplate> bar = data ? ReadToolBarTemplate(*data) : std::nullopt;
  if (!bar) return false;
  picture_size_ = bar->picture_size;
  SetButtons(bar->commands);
  return true;
}

void CToolBar::SetButtons(std::span<const WORD> commands) {
  const int former = GetItemCount();
  buttons_.clear();
  for (const WORD command : commands) buttons_.push_back({.command = command});
  if (GetSafeHwnd() == nullptr) return;
  if (former > 0) Changed(WindowChange::kRowsRemoved, {0, former});
  if (GetItemCount() > 0) Changed(WindowChange::kRowsInserted, {0, GetItemCount()});
}

UINT CToolBar::GetItemID(int position) const { return GetButton(position).command; }

int CToolBar::CommandToIndex(UINT command) const {
  if (command == 0) return -1;
  const auto found = std::ranges::find(buttons_, command, &ToolBarButton::command);
  return found == buttons_.end() ? -1 : static_cast<int>(found - buttons_.begin());
}

void CToolBar::SetPictureSize(const CSize& size) {
  if (picture_size_ == size) return;
  picture_size_ = size;
  if (GetSafeHwnd() != nullptr) Changed(WindowChange::kContent);
}

ToolBarButton CToolBar::GetButton(int position) const {
  if (position < 0 || position >= GetItemCount()) return {};
  return buttons_[static_cast<std::size_t>(position)];
}

bool CToolBar::IsButton(int position) const { return GetItemID(position) != 0; }

void CToolBar::SetButton(int position, const ToolBarButton& state) {
  if (!IsButton(position) || GetButton(position) == state) return;
  buttons_[static_cast<std::size_t>(position)] = state;
  if (GetSafeHwnd() != nullptr) Changed(WindowChange::kRowsChanged, {position, 1});
}

void CToolBar::EnableButton(int position, bool enable) {
  ToolBarButton state = GetButton(position);
  state.enabled = enable;
  state.pressed = state.pressed && enable;
  SetButton(position, state);
}

void CToolBar::CheckButton(int position, int check) {
  ToolBarButton state = GetButton(position);
  state.checked = check == 0 || check == 1 ? check : 2;
  SetButton(position, state);
}

void CToolBar::PressButton(int position, bool press) {
  ToolBarButton state = GetButton(position);
  state.pressed = press && state.enabled;
  SetButton(position, state);
}

bool CToolBar::ClickButton(int position) {
  CWnd* const parent = GetParent();
  const ToolBarButton button = GetButton(position);
  if (parent == nullptr || button.command == 0 || !button.enabled) return false;
  parent->SendMessage(WM_COMMAND, MakeWParam(button.command, CN_COMMAND),
                      reinterpret_cast<LPARAM>(GetSafeHwnd()));
  return true;
}

void CToolBar::OnUpdateCmdUI(CCmdTarget& target, bool disable_if_no_handler) {
  const detail::Watched self(*this);
  const detail::Watched route(target);
  for (int position = 0; self.IsThere() && route.IsThere() && position < GetItemCount();
       ++position) {
    if (!IsButton(position)) continue;
    ButtonUI ui(*this);
    ui.m_nID = GetItemID(position);
    ui.m_nIndex = static_cast<UINT>(position);
    ui.m_nIndexMax = static_cast<UINT>(GetItemCount());
    ui.DoUpdate(target, disable_if_no_handler);
  }
}

CRect CToolBar::GetItemRect(int position) const {
  if (position < 0 || position >= GetItemCount()) return {};
  const CRect inside = GetInsideRect();
  LONG start = kBarMargin + (IsVertical() ? inside.top : inside.left);
  for (int at = 0; at < position; ++at) start = WrappingSum(start, ExtentOf(at));
  const LONG end = WrappingSum(start, ExtentOf(position));
  const CSize button = ButtonSize();
  if (IsVertical()) {
    return {kBarMargin, start, WrappingSum(kBarMargin, button.cx), end};
  }
  return {start, kBarMargin, end, WrappingSum(kBarMargin, button.cy)};
}

CSize CToolBar::ButtonSize() const {
  return {WrappingSum(picture_size_.cx, 2 * kButtonMargin),
          WrappingSum(picture_size_.cy, 2 * kButtonMargin)};
}

/// Along the bar.
LONG CToolBar::ExtentOf(int position) const {
  if (!IsButton(position)) return kSeparatorWidth;
  return IsVertical() ? ButtonSize().cy : ButtonSize().cx;
}

CSize CToolBar::CalcFixedLayout(const CSize&, bool) {
  const CSize button = ButtonSize();
  return {WrappingSum(button.cx, 2 * kBarMargin), WrappingSum(button.cy, 2 * kBarMargin)};
}

CSize CToolBar::CalcFloatingLayout() {
  LONG width = 2 * kBarMargin;
  for (const ToolBarButton& button : buttons_) {
    width = WrappingSum(width, button.command == 0 ? kSeparatorWidth : ButtonSize().cx);
  }
  return {width, CalcFixedLayout({}, true).cy};
}

}  // namespace dq
