// Views with controls, as dialogs have them.

#pragma once

#include "dqlib/framework/windows/dialog_template.h"
#include "dqlib/framework/windows/view.h"

namespace dq {

/// A view with controls, which it makes from a template and owns.
class CFormView : public CView {
  DECLARE_DYNAMIC(CFormView)
  /// By the id of the template.
  explicit CFormView(UINT template_id);
  /// By a template that isn't in a resource module, copied.
  explicit CFormView(DialogTemplate form);
  ~CFormView() override;

  /// Makes the window at the place's top left corner with the template's size, and its controls.
  /// False, and no window, if there is no such template.
  bool Create(CWnd* parent, const CRect& place, int id, const CCreateContext* context) override;
  /// The same at the parent's corner, for a document, which may be null.
  bool Create(CWnd* parent, int id, CDocument* document);

  /// The template's size, of the client area. 0, 0 until the view is made.
  const CSize& GetFormSize() const { return m_sizeForm; }
  /// Gives the frame around it the size in which the view has just the form's size; `shrink_only`
  /// makes it no larger. A frame that is maximised or minimised, and a view in a frame that has
  /// other panes, which has its size from them, stay as they are.
  void ResizeParentToFit(bool shrink_only = true);

  /// Moves the variables to the controls first.
  void OnInitialUpdate() override;
  /// Handles the keys of dialogs.
  BOOL PreTranslateMessage(MSG* message) override;

 protected:
  /// When the thread is idle the controls are brought up to date. The focus goes on to the control
  /// that had it last, or the first that takes it.
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnTurnTo(CWnd& window) override;

 private:
  UINT m_nTemplate = 0;
  std::unique_ptr<DialogTemplate> m_pTemplate;
  CSize m_sizeForm;
  std::vector<std::unique_ptr<CWnd>> m_controls;
  /// The control that had the focus last.
  HWND m_hFocus = nullptr;
};

}  // namespace dq
