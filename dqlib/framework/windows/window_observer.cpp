#include "dqlib/framework/windows/window_observer.h"

#include <algorithm>
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
using detail::PendingRows;
using detail::UiState;

void Tell(WindowObserver& observer, CWnd& window, WindowChange change, const ChangedRange& range) {
  Guarded([&] { observer.OnWindowChange(window, change, range); });
}

/// Puts a range before the one at `place`.
void Put(PendingRows& rows, std::size_t place, const ChangedRange& range) {
  if (rows.count == rows.ranges.size()) {
    rows.change = WindowChange::kRowsChanged;
    return;
  }
  ChangedRange* const at = rows.ranges.data() + place;
  ChangedRange* const end = rows.ranges.data() + rows.count++;
  std::move_backward(at, end, end + 1);
  *at = range;
}

void Insert(PendingRows& rows, const ChangedRange& range) {
  std::size_t at = 0;
  const auto end_of = [](const ChangedRange& each) { return each.first + each.count; };
  while (at < rows.count && end_of(rows.ranges[at]) < range.first) ++at;
  const bool beside = at < rows.count && rows.ranges[at].first <= range.first;
  for (std::size_t behind = beside ? at + 1 : at; behind < rows.count; ++behind) {
    rows.ranges[behind].first += range.count;
  }
  if (beside) {
    rows.ranges[at].count += range.count;
  } else {
    Put(rows, at, range);
  }
}

void Remove(PendingRows& rows, const ChangedRange& range) {
  std::size_t at = 0;
  while (at < rows.count && rows.ranges[at].first < range.first) ++at;
  // What went beside these rows before is one place with them now.
  ChangedRange merged = range;
  std::size_t behind = at;
  for (; behind < rows.count && rows.ranges[behind].first <= range.first + range.count; ++behind) {
    merged.count += rows.ranges[behind].count;
  }
  ChangedRange* const ranges = rows.ranges.data();
  std::move(ranges + behind, ranges + rows.count, ranges + at);
  rows.count -= behind - at;
  for (std::size_t each = at; each < rows.count; ++each) ranges[each].first -= range.count;
  Put(rows, at, merged);
}

/// Takes a change of rows into those that the observer hasn't been told of. False if it isn't of
/// their kind.
bool Merge(PendingRows& rows, WindowChange change, const ChangedRange& range) {
  // All of them are read anew.
  if (rows.change == WindowChange::kRowsChanged) return true;
  if (rows.change != change || change == WindowChange::kRowsChanged) return false;
  change == WindowChange::kRowsInserted ? Insert(rows, range) : Remove(rows, range);
  return true;
}

}  // namespace

NativeEvents::~NativeEvents() = default;
WindowObserver::~WindowObserver() = default;

WindowObserver* GetWindowObserver() { return CurrentUi().observer; }

WindowObserver* SetWindowObserver(WindowObserver* observer) {
  detail::TellRows();
  UiState& ui = CurrentUi();
  NativeEvents* events = nullptr;
  if (observer != nullptr) Guarded([&] { events = observer->GetEvents(); });
  WindowObserver* const former = std::exchange(ui.observer, observer);
  if (MessageQueue* const queue = MessageQueue::Current()) queue->SetEvents(events);
  if (ui.wait_cursors == 0 || former == observer) return former;
  if (former != nullptr) Guarded([&] { former->ShowWaitPointer(false); });
  if (observer != nullptr) Guarded([&] { observer->ShowWaitPointer(true); });
  return former;
}

namespace detail {

void TraceObserver() { AfxTrace("A window observer failed.\n"); }

void TellRows() {
  UiState& ui = CurrentUi();
  if (ui.rows.window == nullptr) return;
  const PendingRows rows = std::exchange(ui.rows, {});
  CWnd* const window = MessageQueue::FindOwnWindow(rows.window);
  if (window == nullptr || ui.observer == nullptr) return;
  if (rows.change == WindowChange::kRowsChanged)
    return Tell(*ui.observer, *window, rows.change, {});
  for (std::size_t each = 0; each < rows.count; ++each) {
    Tell(*ui.observer, *window, rows.change, rows.ranges[each]);
  }
}

void TellNewRows() {
  if (CurrentUi().rows.change == WindowChange::kRowsInserted) TellRows();
}

void TellChange(CWnd& window, WindowChange change, const ChangedRange& range) {
  UiState& ui = CurrentUi();
  if (ui.observer == nullptr) return;
  const bool comes_or_goes =
      change == WindowChange::kRowsInserted || change == WindowChange::kRowsRemoved;
  const HWND handle = window.GetSafeHwnd();
  if ((comes_or_goes || change == WindowChange::kRowsChanged) && handle == ui.rows.window &&
      Merge(ui.rows, change, range)) {
    return;
  }
  TellRows();
  if (comes_or_goes) {
    ui.rows.window = handle;
    ui.rows.change = change;
    static_cast<void>(Merge(ui.rows, change, range));
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
