// List boxes, those with check marks, and tabs below one another.

#pragma once

#include "apps/workbench/layer/mirror.h"
#include "apps/workbench/layer/row_window.h"

namespace workbench {

/// A window with rows of which one or several are selected.
class RowMirror : public Mirror, protected RowSource {
 public:
  using Mirror::Mirror;

  bool TakeKey(const KeyStroke& stroke) override;
  void Trace(TraceLine& line) const override;

 protected:
  wxWindow* DoMake(wxWindow* parent) override;
  void ShowContent(const Changes& changes) override;

  RowWindow& rows() const { return static_cast<RowWindow&>(*native()); }
  /// The row that the caret stands on when the selection changes; -1 for none.
  virtual int CurrentRow() const = 0;
  /// As acts: the person has gone to a row, or hit it.
  virtual void GoTo(int row) = 0;
  virtual void Hit(int row) { GoTo(row); }
  virtual void HitMark(int /*row*/) {}
  virtual void HitTwice(int /*row*/) {}
  virtual void Scrolled(int /*first*/) {}
  /// The row that begins with a text behind another one; -1 if there is none.
  virtual int FindRow(int /*after*/, const std::string& /*begin*/) const { return -1; }
};

/// A list box, with check marks or without.
class ListMirror : public RowMirror {
 public:
  using RowMirror::RowMirror;
  bool TakeKey(const KeyStroke& stroke) override;

 protected:
  int Count() const override;
  wxString Text(int row) const override;
  bool IsSelected(int row) const override;
  bool IsEnabled(int row) const override;
  int Mark(int row) const override;
  void ShowContent(const Changes& changes) override;
  int CurrentRow() const override;
  void GoTo(int row) override;
  void Hit(int row) override;
  void HitMark(int row) override;
  void HitTwice(int row) override;
  void Scrolled(int first) override;
  int FindRow(int after, const std::string& begin) const override;
};

/// Tabs, where the library's row of tabs is higher than wide.
class TabListMirror : public RowMirror {
 public:
  using RowMirror::RowMirror;
  bool Serves(const dq::CWnd& window) const override;

 protected:
  int Count() const override;
  wxString Text(int row) const override;
  bool IsSelected(int row) const override;
  bool IsEnabled(int row) const override;
  int CurrentRow() const override;
  void GoTo(int row) override;
};

}  // namespace workbench
