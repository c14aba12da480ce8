#include "dqlib/framework/windows/screen.h"

#include <algorithm>
#include <iterator>

#include "dqlib/framework/base/drawing.h"
#include "dqlib/framework/base/drawn_character.h"
#include "dqlib/framework/base/multi_byte.h"
#include "dqlib/framework/windows/message_queue.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/wnd.h"

namespace dq {
namespace {

using detail::CurrentUi;

CSize g_screen{1920, 1080};

struct Metric {
  SystemMetric number;
  int pixels;
};

constexpr Metric kMetrics[] = {
    {SM_CXVSCROLL, 17}, {SM_CYHSCROLL, 17}, {SM_CYCAPTION, 20}, {SM_CXICON, 32}, {SM_CYICON, 32},
    {SM_CYMENU, 20},    {SM_CXSMICON, 16},  {SM_CYSMICON, 16},  {SM_CXDRAG, 4},  {SM_CYDRAG, 4},
};

/// What the window layer answers, or `otherwise` without one and if it throws.
template <typename Result, typename Question>
Result Ask(Result otherwise, Question question) {
  if (WindowObserver* const observer = CurrentUi().observer) {
    detail::Guarded([&] { otherwise = question(*observer); });
  }
  return otherwise;
}

void ShowWaitPointer(bool show) {
  if (WindowObserver* const observer = CurrentUi().observer) {
    detail::Guarded([&] { observer->ShowWaitPointer(show); });
  }
}

}  // namespace

CSize GetScreenSize() { return g_screen; }

void SetScreenSize(const CSize& size) { g_screen = size; }

int GetSystemMetrics(int metric) {
  if (metric == SM_CXSCREEN) return g_screen.cx;
  if (metric == SM_CYSCREEN) return g_screen.cy;
  const auto* const known = std::ranges::find(
      kMetrics, metric, [](const Metric& each) { return static_cast<int>(each.number); });
  if (known == std::end(kMetrics)) return 0;
  return Ask(known->pixels, [known](WindowObserver& observer) {
    return observer.GetMetric(known->number, known->pixels);
  });
}

int GetKeyState(int key) {
  return Ask(0, [key](WindowObserver& observer) { return observer.GetKeyState(key); });
}

bool IsKeyDown(int key) { return (GetKeyState(key) & kKeyDown) != 0; }

CPoint GetPointerPos() {
  return Ask(CPoint{}, [](WindowObserver& observer) { return observer.GetPointer(); });
}

CSize GetTextExtent(const LOGFONT* font, std::string_view text) {
  constexpr LONG kCharacterWidth = 7;
  constexpr LONG kLineHeight = 13;
  const platform::CodePage& page = multi_byte::CurrentCodePage();
  CSize usual{0, kLineHeight};
  for (std::string_view rest = text; !rest.empty();) {
    rest.remove_prefix(detail::FirstCharacter(rest, page).size);
    usual.cx = detail::WrappingSum(usual.cx, kCharacterWidth);
  }
  return Ask(usual,
             [&](WindowObserver& observer) { return observer.MeasureText(font, text, usual); });
}

CSize GetTextExtent(const CWnd& window, std::string_view text) {
  const CFont* const font = window.GetFont();
  const bool is_own = font == nullptr || !font->IsCreated();
  return GetTextExtent(is_own ? nullptr : &font->GetLogFont(), text);
}

void SystemColorsChanged() {
  for (const HWND window : MessageQueue::OwnWindows()) {
    SendToWindow(window, WM_SYSCOLORCHANGE, 0, 0);
    if (CWnd* const live = MessageQueue::FindOwnWindow(window)) live->Invalidate();
  }
}

void MessageBeep(UINT type) {
  if (WindowObserver* const observer = CurrentUi().observer) {
    detail::Guarded([&] { observer->Beep(type); });
  }
}

void SetPointerShape(PointerShape shape) {
  if (WindowObserver* const observer = CurrentUi().observer) {
    detail::Guarded([&] { observer->SetPointer(shape); });
  }
}

CWaitCursor::CWaitCursor() {
  if (CurrentUi().wait_cursors++ == 0) ShowWaitPointer(true);
}

CWaitCursor::~CWaitCursor() {
  if (--CurrentUi().wait_cursors == 0) ShowWaitPointer(false);
}

}  // namespace dq
