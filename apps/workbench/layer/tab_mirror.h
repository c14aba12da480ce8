// Tabs beside one another.

#pragma once

#include <vector>

#include "apps/workbench/layer/plain_mirrors.h"

class wxNotebook;

namespace workbench {

/// The tabs of a property sheet, or a row of tabs that is wider than high. The pages are windows of
/// their own, which lie over the toolkit's empty ones.
class TabMirror : public Mirror {
 public:
  using Mirror::Mirror;
  bool Serves(const dq::CWnd& window) const override;
  bool TakeKey(const KeyStroke& stroke) override;
  void Trace(TraceLine& line) const override;

 protected:
  wxWindow* DoMake(wxWindow* parent) override;
  void ShowContent(const Changes& changes) override;

 private:
  wxNotebook& book() const;
  std::vector<wxString> Labels() const;
  int Current() const;
  /// As an act: the person wants the page.
  void Choose(int index);
};

/// Tabs with a look of their own, which they draw.
class DrawnTabsMirror : public PlainMirror {
 public:
  using PlainMirror::PlainMirror;
  void Trace(TraceLine& line) const override;
};

/// Whether the window is such a row of tabs.
bool DrawsItsTabs(const dq::CWnd& window);

}  // namespace workbench
