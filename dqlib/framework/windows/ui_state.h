// What a thread with windows knows beside them. For the framework's own sources.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <utility>

#include "dqlib/framework/windows/window_observer.h"

namespace dq {

class CCmdTarget;
class CDocument;
class CWnd;

namespace detail {

/// Rows of one window that came in or went, of which the observer hasn't been told: more may
/// follow.
struct PendingRows {
  HWND window = nullptr;
  /// `kRowsChanged` if there are too many places.
  WindowChange change = WindowChange::kRowsInserted;
  /// The first `count` are in use: in order, with other rows between, and counted as if what came
  /// before in the order had been told already.
  std::size_t count = 0;
  std::array<ChangedRange, kMostRowRanges> ranges{};
};

/// A key that is offered to a window before its native control gets it.
struct KeyOffer {
  HWND window = nullptr;
  /// Nobody wanted it.
  bool passed_on = false;
};

/// All of one thread. Windows are named by handle, so that a dead one is found out.
struct UiState {
  WindowObserver* observer = nullptr;
  HWND focus = nullptr;
  HWND capture = nullptr;
  HWND active = nullptr;
  /// How many wait cursors there are.
  int wait_cursors = 0;
  /// The innermost one that is under way, or null.
  KeyOffer* key_offer = nullptr;
  /// How many windows of the thread have ended: whoever finds it unchanged after calling a handler
  /// knows that the window is still there.
  std::size_t ended = 0;
  PendingRows rows;
  /// See `Closing`: how many there were, and the number of the one that is under way, 0 without
  /// one.
  std::uint64_t closings = 0;
  std::uint64_t closing = 0;
};

UiState& CurrentUi();

/// Tells the observer, if there is one, of a change; see `WindowObserver`.
void TellChange(CWnd& window, WindowChange change, const ChangedRange& range);
/// Tells it of the rows that it hasn't been told of.
void TellRows();
/// Of those that came, while they can still be read: called before rows go, or before one is told
/// of as changed after others have moved.
void TellNewRows();
void TellMenuChange(MenuHandle* menu, MenuChange change, const ChangedRange& range);

/// Gives back the hot keys of a window that has ended.
void EndHotKeys(HWND window);

/// Runs a call of the observer. What it throws is traced: it must not leave a change half made.
void TraceObserver();
template <typename Call>
void Guarded(Call call) {
  try {
    call();
  } catch (...) {
    TraceObserver();
  }
}

/// Steps that are all taken, whatever the handlers among them throw. The first exception goes on
/// when `Rethrow` is called behind the last step.
class AllSteps {
 public:
  template <typename Step>
  void Take(Step step) {
    try {
      step();
    } catch (...) {
      if (!thrown_) thrown_ = std::current_exception();
    }
  }
  void Rethrow() const {
    if (thrown_) std::rethrow_exception(thrown_);
  }

 private:
  std::exception_ptr thrown_;
};

/// Whether a key is being offered to the window, which must leave it to its native control. The
/// second one does so, and says that it did.
bool IsKeyOffered(const CWnd& window);
bool PassKeyOn(const CWnd& window);

/// A window that is at work while handlers, which may end it, are called. Once it isn't there,
/// nothing of it may be touched. A target of commands that is no window can't be watched, nor can a
/// window that isn't made: both count as there.
class Watched {
 public:
  explicit Watched(const CWnd& window);
  explicit Watched(const CCmdTarget& target);

  bool IsThere() const;

 private:
  const CWnd* window_;
  HWND handle_;
  std::size_t ended_;
};

/// A mark of a window that is set for the lifetime of this object, however that ends.
class SetWhile {
 public:
  SetWhile(const CWnd& window, bool& mark) : window_(window), mark_(mark) { mark = true; }
  SetWhile(const SetWhile&) = delete;
  SetWhile& operator=(const SetWhile&) = delete;
  ~SetWhile() {
    if (window_.IsThere()) mark_ = false;
  }

 private:
  Watched window_;
  bool& mark_;
};

/// An object that is no window and tells by its `GetLife` when it goes, as documents do.
template <typename Object>
class WatchedObject {
 public:
  /// Null counts as an object that is gone.
  explicit WatchedObject(Object* object) : object_(object) {
    if (object != nullptr) life_ = object->GetLife();
  }

  /// Null once it is gone.
  Object* get() const { return life_.expired() ? nullptr : object_; }
  Object* operator->() const { return object_; }
  explicit operator bool() const { return get() != nullptr; }

 private:
  Object* object_;
  std::weak_ptr<const void> life_;
};

/// While a frame closes with all that goes along, a person who has given up the changes of a
/// document isn't asked about them again. One within another is part of that.
class Closing {
 public:
  Closing() : former_(CurrentUi().closing) {
    if (former_ == 0) CurrentUi().closing = ++CurrentUi().closings;
  }
  Closing(const Closing&) = delete;
  Closing& operator=(const Closing&) = delete;
  ~Closing() { CurrentUi().closing = former_; }

 private:
  std::uint64_t former_;
};

/// Keeps a document for its lifetime from going with its last view. It may end meanwhile.
class KeptDocument {
 public:
  /// Null keeps none.
  explicit KeptDocument(CDocument* document);
  KeptDocument(const KeptDocument&) = delete;
  KeptDocument& operator=(const KeptDocument&) = delete;
  ~KeptDocument();
  /// Null once it has ended.
  CDocument* get() const { return document_.get(); }

 private:
  WatchedObject<CDocument> document_;
  bool deletes_itself_ = false;
};

}  // namespace detail
}  // namespace dq
