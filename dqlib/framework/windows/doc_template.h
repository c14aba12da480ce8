// Document templates: which classes of document, frame and view a kind of file has.
//
//   app.AddDocTemplate(new CMultiDocTemplate(IDR_SQL, RUNTIME_CLASS(CSqlDoc),
//                                            RUNTIME_CLASS(CMDIChildWnd),
//                                            RUNTIME_CLASS(CSqlView)));
//
// with the string IDR_SQL
// "\nSQL\nSQL Script\nSQL Files (*.sql)\n.sql\nTool.SQL\nSQL Script".

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "dqlib/framework/windows/document.h"
#include "dqlib/framework/windows/frame_wnd.h"

namespace dq {

/// A kind of documents. It knows the open ones and owns none of them: a document goes when it is
/// closed, and a frame or view that a template has made with its window. The strings are parts of
/// that of its resource id, with "\n" between them.
class CDocTemplate : public CCmdTarget {
  DECLARE_DYNAMIC(CDocTemplate)

  enum DocStringIndex {
    windowTitle,    ///< Title of a frame.
    docName,        ///< What new documents are called, with a number behind it.
    fileNewName,    ///< What the person chooses for a new document; "" keeps it from the choice.
    filterName,     ///< In the choice of files: "SQL Files (*.sql)".
    filterExt,      ///< Extensions with their dots, and semicolons between them: ".sql;.txt".
    regFileTypeId,  ///< The type of its files in the registry.
    regFileTypeName,
  };

  /// How sure it is that a file is one of its own.
  enum Confidence {
    noAttempt,
    maybeAttemptForeign,
    maybeAttemptNative,
    yesAttemptForeign,
    yesAttemptNative,
    yesAlreadyOpen,
  };

  /// Takes the strings from the chain of resource modules now. Classes may be null: without a view
  /// class frames are left to fill themselves, without one of the others nothing can be made.
  CDocTemplate(UINT resource_id, const CRuntimeClass* document_class,
               const CRuntimeClass* frame_class, const CRuntimeClass* view_class);
  /// The documents stay, without a template.
  ~CDocTemplate() override;

  UINT GetResourceId() const { return m_nIDResource; }
  /// False, and "", if the resource has no such part.
  virtual bool GetDocString(CString& text, DocStringIndex index) const;
  /// The parts of `filterExt`, each with its dot.
  std::vector<std::string> GetExtensions() const;

  /// Whether it would open the file, given by its full path; `yesAlreadyOpen` sets the document
  /// that has it open. The base knows native files by their extensions, without regard to case, and
  /// takes any other for a foreign one that it could open.
  virtual Confidence MatchDocType(const char* path, CDocument*& open_document);

  /// Makes a document that goes when it is closed, or with its last view. Null if there is no class
  /// for it.
  virtual CDocument* CreateNewDocument();
  /// Makes a frame, hidden, with a view of the document, which deletes itself with its window.
  /// `other` is the frame that the person has worked in, or null. Null, and nothing left of it, if
  /// it can't be made.
  virtual CFrameWnd* CreateNewFrame(CDocument* document, CFrameWnd* other);
  /// Brings the views of a frame up to date the first time and shows it, if `visible`.
  virtual void InitialUpdateFrame(CFrameWnd* frame, CDocument* document, bool visible = true);

  /// Opens the file in a document of the template with a frame; a null path makes a new document.
  /// Null, and nothing left of it, if that fails, which the person has been told, or if it has been
  /// closed meanwhile; nor is anything left where a handler throws.
  virtual CDocument* OpenDocumentFile(const char* path, bool make_visible = true) = 0;
  /// Gives a new document its title.
  virtual void SetDefaultTitle(CDocument* document) = 0;

  /// Has each document that has been changed ask the person and save itself. False as soon as one
  /// couldn't, or the person cancels.
  virtual BOOL SaveAllModified();
  /// Closes all documents without questions. `end_session` says that the person's session ends; the
  /// base does the same then.
  virtual void CloseAllDocuments(bool end_session);
  /// Tells each document that the application is idle.
  virtual void OnIdle();

  /// The open documents in their order. A document that is added leaves the template it had.
  const std::vector<CDocument*>& GetDocuments() const { return m_documents; }
  virtual void AddDocument(CDocument* document);
  virtual void RemoveDocument(CDocument* document);

  /// What the frames of all its documents share: see `CDocument::GetDefaultMenu`. The base has
  /// none.
  virtual CMenu* GetSharedMenu() { return nullptr; }
  virtual const AcceleratorTable* GetAccelerators() const { return nullptr; }

  /// Expires when the template goes, for who calls handlers that may remove it.
  std::weak_ptr<const void> GetLife() const { return m_life; }

 protected:
  UINT m_nIDResource;
  const CRuntimeClass* m_pDocClass;
  const CRuntimeClass* m_pFrameClass;
  const CRuntimeClass* m_pViewClass;
  CString m_strDocStrings;

 private:
  std::vector<CDocument*> m_documents;
  std::shared_ptr<const void> m_life = std::make_shared<char>();
};

/// A kind of documents of which several can be open, each with frames of its own. They share a menu
/// and key combinations, those with the resource id, if there are such: the main frame shows the
/// menu while a child frame with one of its documents is active.
class CMultiDocTemplate : public CDocTemplate {
  DECLARE_DYNAMIC(CMultiDocTemplate)
  CMultiDocTemplate(UINT resource_id, const CRuntimeClass* document_class,
                    const CRuntimeClass* frame_class, const CRuntimeClass* view_class);
  ~CMultiDocTemplate() override;

  CDocument* OpenDocumentFile(const char* path, bool make_visible = true) override;
  /// The document name with the number of the new document behind it; without such a name that of
  /// all documents without one.
  void SetDefaultTitle(CDocument* document) override;
  CMenu* GetSharedMenu() override;
  const AcceleratorTable* GetAccelerators() const override;

 protected:
  CMenu m_menuShared;
  AcceleratorTable m_accelerators;
  /// How many new documents there have been.
  int m_nUntitledCount = 0;
};

}  // namespace dq
