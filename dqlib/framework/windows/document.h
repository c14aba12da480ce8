// Documents: what a person works on, shown by views.

#pragma once

#include <vector>

#include "dqlib/framework/base/c_string.h"
#include "dqlib/framework/windows/cmd_target.h"

namespace dq {

class CDocTemplate;
class CFrameWnd;
class CView;

/// What a person works on: a title, a path if it stands in a file, a mark that it has been changed.
/// It knows the views that show it, and owns none of them.
class CDocument : public CCmdTarget {
  DECLARE_DYNCREATE(CDocument)
  CDocument();
  /// The views stay, without a document. It leaves its template.
  ~CDocument() override;

  /// Adds a view, which leaves the document it had; one that is there already stays. Null does
  /// nothing.
  void AddView(CView* view);
  /// Takes a view out. If it was the last one, and `m_bAutoDelete` says so, the document closes and
  /// is gone afterwards.
  void RemoveView(CView* view);
  /// The views in the order in which they were added.
  const std::vector<CView*>& GetViews() const { return m_views; }
  /// The first view, or null.
  CView* GetFirstView() const { return m_views.empty() ? nullptr : m_views.front(); }
  /// Whether a view of it lies in another frame than this one.
  bool HasViewOutside(const CFrameWnd& frame) const;

  /// Tells all views but the sender, which may be null, that the document has changed. What `hint`
  /// and `object` mean is between the document and its views. Views may come and go meanwhile: one
  /// that goes isn't told, one that comes neither. If the document goes, no more are told.
  void UpdateAllViews(CView* sender, LPARAM hint = 0, CObject* object = nullptr);

  /// The title that its frames show. A change brings their titles up to date.
  const CString& GetTitle() const { return m_strTitle; }
  virtual void SetTitle(const char* title);
  /// The full path, "" for a document that has never been saved. Setting it makes the file's name
  /// the title, and with `add_to_recent` the first of the application's recent files.
  const CString& GetPathName() const { return m_strPathName; }
  virtual void SetPathName(const char* path, bool add_to_recent = true);
  /// Whether it has been changed since it was opened or saved.
  virtual BOOL IsModified() { return m_bModified ? 1 : 0; }
  virtual void SetModifiedFlag(BOOL modified = 1) { m_bModified = modified != 0; }
  /// The template that has made it, or null.
  CDocTemplate* GetDocTemplate() const { return m_pDocTemplate; }

  /// Ends its frames and views and deletes the contents, and the document itself if
  /// `m_bAutoDelete`.
  virtual void OnCloseDocument();
  /// Empties the document, before it is closed or used for another file. The base does nothing.
  virtual void DeleteContents() {}
  /// Asks the person whether to save a document that is modified, and saves it if they say so.
  /// False if they cancel, or it can't be saved: then what was to end it must not go on.
  virtual BOOL SaveModified() { return 1; }
  /// Whether the frame may close: true if another frame shows the document too, else what
  /// `SaveModified` says.
  virtual bool CanCloseFrame(CFrameWnd* frame);
  /// A frame with views of the document is about to end. The base does nothing.
  virtual void PreCloseFrame(CFrameWnd* /*frame*/) {}
  /// The application is idle. The base does nothing.
  virtual void OnIdle() {}

  /// Whether the document goes with its last view and when it is closed. False at first; a document
  /// template sets it for those that it makes. Switch it off for a moment to move a view.
  bool m_bAutoDelete = false;

 protected:
  friend class CDocTemplate;

  /// A view has come or gone. The base closes a document without views, if `m_bAutoDelete`, and
  /// numbers the frames.
  virtual void OnChangedViewList();
  /// Numbers the frames that show it, from 1, where there are several, and brings their titles up
  /// to date.
  virtual void UpdateFrameCounts();

  bool m_bModified = false;
  CString m_strTitle;
  CString m_strPathName;

 private:
  struct Update;

  std::vector<CFrameWnd*> Frames() const;

  CDocTemplate* m_pDocTemplate = nullptr;
  std::vector<CView*> m_views;
  /// Those that are under way, the innermost last.
  std::vector<Update*> m_updates;
};

}  // namespace dq
