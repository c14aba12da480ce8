// A window that draws rows: a list, the list of a combo box, or tabs below one another.

#pragma once

#include <functional>
#include <optional>
#include <wx/window.h>

#include "apps/workbench/layer/keys.h"

namespace workbench {

/// What the rows are. Asked while they are drawn, for those in sight alone; nothing is kept.
class RowSource {
 public:
  RowSource() = default;
  RowSource(const RowSource&) = delete;
  RowSource& operator=(const RowSource&) = delete;
  virtual ~RowSource();

  /// That of a row without a check mark.
  static constexpr int kNoMark = -1;

  virtual int Count() const = 0;
  virtual wxString Text(int row) const = 0;
  virtual bool IsSelected(int row) const = 0;
  virtual bool IsEnabled(int /*row*/) const { return true; }
  /// Its check mark: 0 none, 1 set, 2 undetermined.
  virtual int Mark(int /*row*/) const { return kNoMark; }
  virtual wxString Tip(int /*row*/) const { return {}; }
};

/// The window. It keeps which row is the first in sight, and the caret: the row that keys start
/// from.
class RowWindow : public wxWindow {
 public:
  /// What a person does with the mouse, told from within the toolkit.
  struct Events {
    std::function<void(int row)> hit;
    /// The check mark is hit instead.
    std::function<void(int row)> mark = [](int) {};
    std::function<void(int row)> double_hit = [](int) {};
    std::function<void(int first)> scrolled = [](int) {};
  };

  RowWindow(wxWindow* parent, const RowSource& source, Events events);

  /// There are other rows, or another number of them.
  void ShowRows();
  /// Brings a row into sight.
  void ShowRow(int row);
  int first() const { return first_; }
  void SetFirst(int row);
  /// -1 for none.
  int caret() const { return caret_; }
  void SetCaret(int row);
  /// The caret follows the pointer and is drawn as what is selected.
  void FollowPointer() { follows_ = true; }

  int row_height() const { return row_height_; }
  /// How many rows are in sight as a whole, at least one.
  int Page() const;

  /// The row that a key goes to from another one; no value for a key that is none of those.
  std::optional<int> RowOfKey(const KeyStroke& stroke, int from) const;

 private:
  void OnPaint();
  void OnLeftDown(const wxPoint& at);
  void OnPointer(const wxPoint& at);
  void OnScroll(wxScrollWinEvent& event);
  int RowAt(const wxPoint& at) const;
  wxRect RowRect(int row) const;
  wxRect MarkRect(const wxRect& row) const;
  void DrawRow(class wxDC& context, int row);
  void UpdateScrollBar();

  const RowSource& source_;
  Events events_;
  int row_height_ = 1;
  int first_ = 0;
  int caret_ = -1;
  bool follows_ = false;
  int tip_row_ = -1;
};

}  // namespace workbench
