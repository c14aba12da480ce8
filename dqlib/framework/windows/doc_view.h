// Documents and the views that show them.

#pragma once

#include <memory>
#include <vector>

#include "dqlib/framework/windows/dialog_template.h"
#include "dqlib/framework/windows/wnd.h"

namespace dq {

class CView;

/// What a person works on. It knows the views that show it, and owns none of them.
class CDocument : public CCmdTarget {
  DECLARE_DYNCREATE(CDocument)
  CDocument() = default;
  /// The views stay, without a document.
  ~CDocument() override;

  /// Adds a view, which leaves the document it had; one that is there already stays. Null does
  /// nothing.
  void AddView(CView* view);
  void RemoveView(CView* view);
  /// The views in the order in which they were added.
  const std::vector<CView*>& GetViews() const { return m_views; }

  /// Tells all views but the sender, which may be null, that the document has changed. What `hint`
  /// and `object` mean is between the document and its views. Views may come and go meanwhile: one
  /// that goes isn't told, one that comes neither. If the document goes, no more are told.
  void UpdateAllViews(CView* sender, LPARAM hint = 0, CObject* object = nullptr);

 private:
  struct Update;

  std::vector<CView*> m_views;
  /// Those that are under way, the innermost last.
  std::vector<Update*> m_updates;
};

/// A window that shows a document in a frame.
class CView : public CWnd {
  DECLARE_DYNAMIC(CView)
  CView() = default;
  ~CView() override;

  /// Makes the window and adds it to the document, which may be null. It becomes its frame's active
  /// view if that has none. Call `OnInitialUpdate` when the frame is complete.
  bool Create(CWnd* parent, const CRect& place, int id, CDocument* document);

  CDocument* GetDocument() const { return m_pDocument; }

  /// The first time that the view is brought up to date. The base calls `OnUpdate`.
  virtual void OnInitialUpdate();

  /// Commands go to the view and then to its document.
  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handler_info) override;

 protected:
  friend class CDocument;

  /// The document has changed; see `CDocument::UpdateAllViews`. The base draws the view anew.
  virtual void OnUpdate(CView* sender, LPARAM hint, CObject* object);

  /// A view that gets the focus becomes its frame's active one.
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;

  /// Adds the view to the document and to its frame.
  void Attach(CDocument* document);

 private:
  CDocument* m_pDocument = nullptr;
};

/// A view with controls, as a dialog has them.
class CFormView : public CView {
  DECLARE_DYNAMIC(CFormView)
  /// By the id of the template.
  explicit CFormView(UINT template_id);
  /// By a template that isn't in a resource module, copied.
  explicit CFormView(DialogTemplate form);
  ~CFormView() override;

  /// Makes the window with the template's size at the parent's top left corner, and its controls,
  /// which it owns. False, and no window, if there is no such template.
  bool Create(CWnd* parent, int id, CDocument* document);

  /// Moves the variables to the controls first.
  void OnInitialUpdate() override;

 private:
  UINT m_nTemplate = 0;
  std::unique_ptr<DialogTemplate> m_pTemplate;
  std::vector<std::unique_ptr<CWnd>> m_controls;
};

}  // namespace dq
