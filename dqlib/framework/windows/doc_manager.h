// The document manager: which document template opens a file or makes a new document.

#pragma once

#include <memory>
#include <vector>

#include "dqlib/framework/windows/doc_template.h"
#include "dqlib/framework/windows/file_dialog.h"

namespace dq {

/// The document templates of an application, in the order in which they were added.
class CDocManager : public CObject {
  DECLARE_DYNAMIC(CDocManager)
  CDocManager();
  ~CDocManager() override;

  /// Takes over a template. One that is there already, or null, does nothing.
  virtual void AddDocTemplate(CDocTemplate* document_template);
  const std::vector<std::unique_ptr<CDocTemplate>>& GetTemplates() const { return m_templates; }

  /// Opens a file, whose name may stand in quotes, by the template that is surest of it, of several
  /// the first. One that is open already isn't read again: its frame becomes the active one, and
  /// minimised windows are restored. Null if it could not be opened, which the person has been
  /// told.
  virtual CDocument* OpenDocumentFile(const char* name);
  /// Makes a new document of the only template, or of the one that the person chooses.
  virtual void OnFileNew();
  /// Opens a file that the person chooses.
  virtual void OnFileOpen();
  /// Has the person choose a file, to be opened or to be written: `path` is proposed, and becomes
  /// what they choose. The kinds of files are those of the template, or with null of all. The title
  /// is the string of the id; `flags` are those of `CFileDialog`. False if they choose none.
  virtual bool DoPromptFileName(CString& path, UINT title_id, DWORD flags, bool open,
                                CDocTemplate* document_template);

  /// Those of all templates; see `CDocTemplate`.
  virtual BOOL SaveAllModified();
  virtual void CloseAllDocuments(bool end_session);
  virtual void OnIdle();
  virtual int GetOpenDocumentCount();

  /// Enters the templates that have a file type for the desktop: the type's name, its icon by the
  /// template's number, the command that opens a file of it in this program, and the type for each
  /// extension that no other type has. With `compatibility` also the commands that print and the
  /// one for a new, empty file. What the registry refuses is left out.
  virtual void RegisterShellFileTypes(int compatibility);

  /// A path as documents have it: from the root. One that the system can't complete stays as it is;
  /// null counts as "".
  static CString CanonicalPath(const char* path);

 protected:
  /// Activates the frame of the first view, and the main window if that is another frame.
  void ActivateDocument(CDocument& document);

  std::vector<std::unique_ptr<CDocTemplate>> m_templates;

 private:
  CDocTemplate* ChooseForNew();
};

}  // namespace dq
