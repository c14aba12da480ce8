// Progress bars, and fields whose text the library makes: hot keys, dates and times.

#pragma once

#include <memory>

#include "apps/workbench/layer/gtk_popup.h"
#include "apps/workbench/layer/mirror.h"

class wxDC;

namespace dq {
class CDateTimeCtrl;
}

namespace workbench {

class ProgressMirror : public Mirror {
 public:
  using Mirror::Mirror;
  wxWindow* Focusable() override { return nullptr; }

 protected:
  wxWindow* DoMake(wxWindow* parent) override;
  void ShowContent(const Changes& changes) override;
};

/// A field that shows the window's text. Its keys are the window's.
class FieldMirror : public Mirror {
 public:
  using Mirror::Mirror;
  bool IsControl() const override { return false; }
  void Apply(const Changes& changes) override;

 protected:
  wxWindow* DoMake(wxWindow* parent) override;
  /// Where the text lies within the frame.
  virtual wxRect TextRect() const;
  /// What of the text is chosen, in bytes.
  virtual dq::ChangedRange Chosen() const { return {}; }
  virtual void DrawParts(wxDC& /*context*/, bool /*enabled*/) {}
  /// The person presses the mouse there.
  virtual void OnPress(const wxPoint& /*at*/) {}
  /// The byte of the text at a place.
  int ByteAt(int x) const;

 private:
  void OnPaint();
};

class HotKeyMirror : public FieldMirror {
 public:
  using FieldMirror::FieldMirror;
};

/// A date or a time: a check box before it where there may be none, and behind it the button for a
/// calendar, or two arrows.
class DateTimeMirror : public FieldMirror {
 public:
  using FieldMirror::FieldMirror;
  ~DateTimeMirror() override;
  void Trace(TraceLine& line) const override;

 protected:
  wxRect TextRect() const override;
  dq::ChangedRange Chosen() const override;
  void DrawParts(wxDC& context, bool enabled) override;
  void OnPress(const wxPoint& at) override;

 private:
  dq::CDateTimeCtrl* field() const;
  wxRect MarkRect() const;
  wxRect ButtonRect() const;
  void Drop();
  void Close();

  std::unique_ptr<PopupWindow> popup_;
  wxWindow* calendar_ = nullptr;
};

}  // namespace workbench
