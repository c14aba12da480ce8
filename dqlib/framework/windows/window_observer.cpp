#include "dqlib/framework/windows/window_observer.h"

#include <utility>

#include "dqlib/framework/base/trace.h"
#include "dqlib/framework/windows/menu_model.h"
#include "dqlib/framework/windows/message_queue.h"
#include "dqlib/framework/windows/ui_state.h"
#include "dqlib/framework/windows/wnd.h"

namespace dq {
namespace {

using detail::CurrentUi;
using detail::Guarded;
using detail::UiState;

void Tell(WindowObserver& observer, CWnd& window, WindowChange change, const ChangedRange& range) {
  Guarded([&] { observer.OnWindowChange(window, change, range); });
}

/// Takes the rows into those that the observer hasn't been told of, if they lie beside them.
bool Merge(UiState& ui, WindowChange change, const ChangedRange& range) {
  if (ui.rows_change != change) return false;
  const int end = ui.rows.first + ui.rows.count;
  if (change == WindowChange::kRowsInserted) {
    if (range.first < ui.rows.first || range.first > end) return false;
  } else {
    const bool behind = range.first == ui.rows.first;
    const bool before = range.first + range.count == ui.rows.first;
    if (!behind && !before) return false;
    ui.rows.first = range.first;
  }
  ui.rows.count += range.count;
  return true;
}

}  // namespace

NativeEvents::~NativeEvents() = default;
WindowObserver::~WindowObserver() = default;

WindowObserver* GetWindowObserver() { return CurrentUi().observer; }

WindowObserver* SetWindowObserver(WindowObserver* observer) {
  detail::TellRows();
  WindowObserver* const former = std::exchange(CurrentUi().observer, observer);
  if (MessageQueue* const queue = MessageQueue::Current()) {
    NativeEvents* events = nullptr;
    if (observer != nullptr) Guarded([&] { events = observer->GetEvents(); });
    queue->SetEvents(events);
  }
  return former;
}

namespace detail {

void TraceObserver() { AfxTrace("A window observer failed.\n"); }

void TellRows() {
  UiState& ui = CurrentUi();
  const HWND handle = std::exchange(ui.rows_of, nullptr);
  if (handle == nullptr || ui.observer == nullptr) return;
  if (CWnd* const window = MessageQueue::FindOwnWindow(handle)) {
    Tell(*ui.observer, *window, ui.rows_change, ui.rows);
  }
}

void TellChange(CWnd& window, WindowChange change, const ChangedRange& range) {
  UiState& ui = CurrentUi();
  if (ui.observer == nullptr) return;
  const bool is_rows =
      change == WindowChange::kRowsInserted || change == WindowChange::kRowsRemoved;
  const HWND handle = window.GetSafeHwnd();
  if (is_rows && handle == ui.rows_of && Merge(ui, change, range)) return;
  TellRows();
  if (is_rows) {
    ui.rows_of = handle;
    ui.rows_change = change;
    ui.rows = range;
  } else if (WindowObserver* const observer = ui.observer) {
    Tell(*observer, window, change, range);
  }
}

void TellMenuChange(HMENU menu, MenuChange change, const ChangedRange& range) {
  if (WindowObserver* const observer = CurrentUi().observer) {
    Guarded([&] { observer->OnMenuChange(menu, change, range); });
  }
}

}  // namespace detail
}  // namespace dq
