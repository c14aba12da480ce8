// Views: windows that show a document in a frame.

#pragma once

#include <memory>
#include <vector>

#include "dqlib/framework/windows/wnd.h"

namespace dq {

class CDocTemplate;
class CDocument;
class CView;
struct CPrintInfo;

/// What a frame or view is made for. Every member may be null.
struct CCreateContext {
  /// The class of the view that the frame makes.
  const CRuntimeClass* m_pNewViewClass = nullptr;
  CDocument* m_pCurrentDoc = nullptr;
  CDocTemplate* m_pNewDocTemplate = nullptr;
  /// The view and frame that the person worked in when they asked for another one.
  CView* m_pLastView = nullptr;
  CFrameWnd* m_pCurrentFrame = nullptr;
};

/// A window that shows a document in a frame. One that `MakeView` has made deletes itself when
/// its window ends; any other one is its maker's.
class CView : public CWnd {
  DECLARE_DYNAMIC(CView)
  CView() = default;
  ~CView() override;

  /// Makes the window and adds it to the context's document. It becomes its frame's active view if
  /// that has none. Call `OnInitialUpdate` when the frame is complete. False if the window can't be
  /// made.
  virtual bool Create(CWnd* parent, const CRect& place, int id, const CCreateContext* context);
  /// The same for a document, which may be null.
  bool Create(CWnd* parent, const CRect& place, int id, CDocument* document);

  /// Makes a view of the context's class, which deletes itself when its window ends. Null if the
  /// class is none of a view or the window can't be made.
  static CView* MakeView(CWnd* parent, const CRect& place, int id, const CCreateContext* context);

  CDocument* GetDocument() const { return m_pDocument; }

  /// The first time that the view is brought up to date: called when its frame is complete, by
  /// `WM_INITIALUPDATE`. The base calls `OnUpdate`.
  virtual void OnInitialUpdate();
  /// Calls it before the frame is complete, for a view that is made late and may be in time all the
  /// same: the next `WM_INITIALUPDATE` does nothing then.
  void InitialUpdateAhead();

  /// The frame's active view changes: `activate` is true for the one that becomes it, false for the
  /// one that was. Either may be null. Both are the same view where it stays the frame's: when the
  /// child frame becomes active or stops being it, when a frame is shown first, and when a person
  /// comes back to the top-level window. One that they leave for another window or program isn't
  /// told: its view stays the one they work in. The base gives a view that takes the place of
  /// another the focus, when its top-level window is active; where it stays, the focus was given
  /// back before.
  virtual void OnActivateView(bool activate, CView* activated, CView* deactivated);

  /// Draws the document on a window or a page.
  virtual void OnDraw(CDC* /*dc*/) {}

  /// The command Print: has the person choose, and then prints page for page: `OnPreparePrinting`,
  /// `OnBeginPrinting`, for each page `OnPrepareDC` and `OnPrint`, `OnEndPrinting`. What fails is
  /// told in a box, and nothing is printed then.
  virtual void OnFilePrint();
  /// Says how many pages there are, as far as that is known, and has the person choose. False ends
  /// it. The base calls `DoPreparePrinting`, which runs the job's dialog.
  virtual bool OnPreparePrinting(CPrintInfo* info);
  bool DoPreparePrinting(CPrintInfo* info);
  /// For what the job needs, and at its end, whether it succeeded or not. The bases do nothing.
  virtual void OnBeginPrinting(CDC* /*dc*/, CPrintInfo* /*info*/) {}
  virtual void OnEndPrinting(CDC* /*dc*/, CPrintInfo* /*info*/) {}
  /// Before a page is drawn. The base ends printing behind the first page, if their number isn't
  /// known.
  virtual void OnPrepareDC(CDC* dc, CPrintInfo* info = nullptr);
  /// Draws a page. The base calls `OnDraw`.
  virtual void OnPrint(CDC* dc, CPrintInfo* info);

  /// Commands go to the view and then to its document.
  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handler_info) override;

 protected:
  friend class CDocument;

  /// The document has changed; see `CDocument::UpdateAllViews`. The base draws the view anew.
  virtual void OnUpdate(CView* sender, LPARAM hint, CObject* object);

  /// It becomes its frame's active view, and takes the focus, unless that is below it, or another
  /// view lies between.
  void OnTurnTo(CWnd& window) override;
  LRESULT DefWindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnPaint(CDC& dc) override { OnDraw(&dc); }
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;
  /// Leaves the document, and deletes itself if `MakeView` has made it.
  void PostNcDestroy() override;

  /// `Create` with a window of that class.
  bool CreateAs(std::string_view window_class, CWnd* parent, const CRect& place, int id,
                const CCreateContext* context);
  /// Adds the view to the document and to its frame.
  void Attach(CDocument* document);

 private:
  bool PrintPages(CDC& dc, CPrintInfo& info);

  CDocument* m_pDocument = nullptr;
  bool m_bDeletesItself = false;
  bool m_bUpdatedAhead = false;
};

}  // namespace dq
