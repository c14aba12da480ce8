// Documents: what a person works on, shown by views.

#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "dqlib/framework/base/c_string.h"
#include "dqlib/framework/windows/cmd_target.h"

namespace dq {

class AcceleratorTable;
class CDocTemplate;
class CException;
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
  /// Whether a view of it outlives the frame: it lies neither in that one or its child frames nor
  /// in a window that it owns.
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
  /// The template that it belongs to, or null.
  CDocTemplate* GetDocTemplate() const { return m_pDocTemplate; }
  /// The menu and the key combinations that frames have while it is their active document; null for
  /// those of the frames themselves. The base has its template's.
  virtual CMenu* GetDefaultMenu();
  virtual const AcceleratorTable* GetDefaultAccelerators();

  /// Makes it a new, empty document: the base deletes the contents and takes the path and the mark
  /// away. False refuses.
  virtual BOOL OnNewDocument();
  /// Fills it from a file: the base deletes the contents and has `Serialize` load them from an
  /// archive over the file, unless that is empty. A failure is told the person by
  /// `ReportSaveLoadException`; false then. One to open the file leaves the document as it was, a
  /// later one leaves it empty.
  virtual BOOL OnOpenDocument(const char* path);
  /// Writes it to a file: the base has `Serialize` store the contents to an archive over a new file
  /// that replaces the former one when it is complete. A failure is told the person, and leaves the
  /// former file as it was; false then.
  virtual BOOL OnSaveDocument(const char* path);
  /// Ends its frames and views and deletes the contents, and the document itself if
  /// `m_bAutoDelete`.
  virtual void OnCloseDocument();
  /// Empties the document, before it is closed or used for another file. The base does nothing.
  virtual void DeleteContents() {}
  /// Asks the person whether to save a document that is modified, and saves it if they say so.
  /// False if they cancel, or it can't be saved: then what was to end it must not go on.
  virtual BOOL SaveModified();
  /// Whether the frame may close: true if a frame that stays shows the document too, else what
  /// `SaveModified` says.
  virtual bool CanCloseFrame(CFrameWnd* frame);
  /// A frame with views of the document is about to end. The base does nothing.
  virtual void PreCloseFrame(CFrameWnd* /*frame*/) {}
  /// Tells the person, in a box, what has gone wrong with a file: see `DescribeFileFailure`. What a
  /// `CUserException` stands for they know.
  virtual void ReportSaveLoadException(const char* path, CException* exception, bool saving,
                                       UINT default_id);
  /// The application is idle. The base does nothing.
  virtual void OnIdle() {}

  /// Saves it: under its path, or under one that the person chooses if it has none or its file is
  /// read-only. Saving is cancelled if they choose none. The path becomes the document's own.
  virtual BOOL DoFileSave();
  /// Saves it under the path, or with null or "" under one that the person chooses. `replace`: it
  /// becomes the document's own. False if that failed or was cancelled; a file that this has begun
  /// is gone then.
  virtual BOOL DoSave(const char* path, BOOL replace = 1);
  /// Mails the document's file. The base hands it to the person's mail program, saved to a
  /// temporary file if it is modified or has none; what fails is told the person.
  virtual void OnFileSendMail();
  /// Expires when the document goes, for who calls handlers that may close it.
  std::weak_ptr<const void> GetLife() const { return m_life; }

  /// Commands go to the document and then to its template.
  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handler_info) override;

  /// Whether the document goes with its last view and when it is closed. False at first; a document
  /// template sets it for those that it makes. Switch it off for a moment to move a view.
  bool m_bAutoDelete = false;

 protected:
  friend class CDocTemplate;

  /// The commands Save, Save As, Close and Send Mail.
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;
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
  struct Closed;

  void OnFileSave() { DoFileSave(); }
  void OnFileSaveAs() { DoSave(nullptr); }
  void OnFileClose();
  CString ProposedName() const;
  std::vector<HWND> Frames() const;

  CDocTemplate* m_pDocTemplate = nullptr;
  std::vector<CView*> m_views;
  /// Those that are under way, the innermost last.
  std::vector<Update*> m_updates;
  /// The `Closing` in which the person has last given up the changes.
  std::uint64_t m_nGivenUpIn = 0;
  /// How often the frames were numbered.
  std::uint64_t m_nFrameCounts = 0;
  std::shared_ptr<const void> m_life = std::make_shared<char>();
};

}  // namespace dq
