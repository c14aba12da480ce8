// Choosing files and folders.
//
//   CFileDialog dialog(false, "SQL", nullptr, OFN_OVERWRITEPROMPT,
//                      "SQL File (*.SQL)|*.SQL|All Files (*.*)|*.*||");
//   if (dialog.DoModal() == IDOK) Save(dialog.GetPathName());

#pragma once

#include <optional>

#include "dqlib/framework/base/string_collections.h"
#include "dqlib/framework/windows/dialog.h"
#include "dqlib/platform/choosers.h"

namespace dq {

/// What a file dialog sees to before it closes.
enum FileDialogFlag : DWORD {
  OFN_OVERWRITEPROMPT = 0x0002,  ///< Asks before a file that exists is chosen to be written.
  OFN_HIDEREADONLY = 0x0004,     ///< Has no effect: there is no box for reading only.
  OFN_ALLOWMULTISELECT = 0x0200,
  OFN_PATHMUSTEXIST = 0x0800,  ///< The folder is there ...
  OFN_FILEMUSTEXIST = 0x1000,  ///< ... and so is the file, if it is to be opened.
};

/// A dialog for files to open or a file to save, put to the person by the platform's prompts.
class CFileDialog : public CDialog {
  DECLARE_DYNAMIC(CFileDialog)
  /// `open`, or else save. `extension`, without a dot, is added to names that have none. `file` is
  /// a name or a path that is proposed. `filter` has pairs of a name and its patterns, with "|"
  /// behind each, and may end in one more. All texts may be null, and are copied.
  explicit CFileDialog(bool open, const char* extension = nullptr, const char* file = nullptr,
                       DWORD flags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT,
                       const char* filter = nullptr, CWnd* parent = nullptr);

  /// To be set before the dialog runs: its title, "" for the usual one; the folder to begin in, ""
  /// for the current directory; and the pair of the filter that is chosen at first, from 1.
  void SetTitle(const char* title);
  void SetInitialFolder(const char* folder);
  void SetFilterIndex(int index) { question_.kind = index; }

  /// `IDOK` with files chosen, or `IDCANCEL`. What was chosen before stays then.
  int DoModal() override;

  /// The first file that was chosen, or before that the one proposed: its path from the root, its
  /// name, its extension without the dot, and its name without extension and dot.
  CString GetPathName() const;
  CString GetFileName() const;
  CString GetFileExt() const;
  CString GetFileTitle() const;
  /// All that were chosen, in the place of what `paths` holds.
  void GetPathNames(CStringArray& paths) const;
  /// The pair of the filter that is chosen, from 1.
  int GetFilterIndex() const { return question_.kind; }

 private:
  platform::FileQuestion question_;
  std::vector<std::string> paths_;
};

/// Has the person choose a folder that exists, beginning with `start`, or the current directory for
/// "". Its path from the root; no value if the person leaves it. Null texts count as "".
std::optional<CString> ChooseFolder(const char* title, const char* start);

}  // namespace dq
