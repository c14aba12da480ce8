// Dialogs within a dialog, and sets of them that share one place.

#pragma once

#include <vector>

#include "dqlib/toolkit/dialog.h"

namespace dq {

/// A modeless dialog that lies in another window, hidden at first. It isn't closed by itself: OK
/// and Cancel pressed in it are its parent's.
class CDQChildDialog : public CDQDialog {
  DECLARE_DYNAMIC(CDQChildDialog)
  explicit CDQChildDialog(UINT template_id = 0) : CDQDialog(template_id) {}

  /// Makes its window in `parent`, over the control with the id and next behind it; without such a
  /// control at the client area's corner, in its own size and last. True if it is there already;
  /// false if there is no template or the window isn't made.
  bool CreateIn(CWnd* parent, int site_id);

  /// For a change that others make: whether the person may use it at all.
  virtual void EnableChild(bool enable) { EnableWindow(enable); }

  /// The dialog that it lies in closes by OK or is cancelled, if that one says so. The base does
  /// nothing.
  void OnOK() override {}
  void OnCancel() override {}

 protected:
  /// The template to make it from; the base has the one with the id. No value if there is none.
  virtual std::optional<DialogTemplate> MakeTemplate();
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;

 private:
  void OnCloseParent(UINT id);
};

/// Child dialogs of which one is shown at a time. It doesn't own them; they must outlive it or be
/// left alone by it. An operation stops, and has failed, when a handler ends the window that it has
/// come to.
class CDQChildDialogCollection {
 public:
  CDQChildDialogCollection() = default;
  CDQChildDialogCollection(const CDQChildDialogCollection&) = delete;
  CDQChildDialogCollection& operator=(const CDQChildDialogCollection&) = delete;

  /// Adds one behind the others and returns its index, from 0.
  int Add(CDQChildDialog& child);
  int GetSize() const { return static_cast<int>(m_children.size()); }
  /// The one with the index, or null.
  CDQChildDialog* GetAt(int index) const;

  /// Makes all windows. False at the first that can't be made.
  bool CreateAll(CWnd* parent, int site_id);

  /// Shows the one with the index, and no other; -1 hides all. The second form takes the id of its
  /// template. False, and no change, if there is none, or its window isn't made.
  bool Show(int index);
  bool ShowById(UINT template_id);
  /// The index of the one shown, or -1.
  int GetShown() const { return m_nShown; }

  /// To the controls: of all that are made. From the controls: of the one shown, since what a
  /// person can't see they can't correct. False if that failed.
  bool UpdateData(bool save);
  /// Whether a person may use them.
  void Enable(bool enable);

 private:
  std::vector<CDQChildDialog*> m_children;
  int m_nShown = -1;
};

}  // namespace dq
