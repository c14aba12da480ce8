// The files that were opened last, in the application's profile and in a menu.

#pragma once

#include <vector>

#include "dqlib/framework/base/c_string.h"
#include "dqlib/framework/windows/cmd_target.h"

namespace dq {

/// A list of paths, the latest first. It stands in the application's profile, in the section, each
/// path under the entry that the format makes of its number: "File%d". Without a section or a `%d`
/// it is kept in memory only.
class CRecentFileList {
 public:
  /// Bytes of a path in a menu.
  static constexpr int kLongestShown = 30;

  /// Numbers in entries and in the menu begin behind `start`. `size` paths are kept, those of
  /// `longest_shown` bytes shown whole in the menu.
  CRecentFileList(UINT start, const char* section, const char* entry_format, int size,
                  int longest_shown = kLongestShown);
  CRecentFileList(const CRecentFileList&) = delete;
  CRecentFileList& operator=(const CRecentFileList&) = delete;
  virtual ~CRecentFileList();

  /// How many paths it may have, and how many it has.
  int GetSize() const { return m_nSize; }
  int GetCount() const { return static_cast<int>(m_arrNames.size()); }
  /// By an index from 0; "" if there is none.
  CString operator[](int index) const;
  /// Index of a path, or -1.
  int Find(const char* path) const;

  /// Puts a path at the front, from where it stood or in the place of the oldest. An empty one does
  /// nothing.
  virtual void Add(const char* path);
  virtual void Remove(int index);

  /// Reads the list from the profile, or writes it there; false if the profile refuses.
  virtual void ReadList();
  virtual bool WriteList();

  /// Shows the list in the place of the menu item that is brought up to date, which has the command
  /// id of the first path; the others have those that follow. Without paths the item is disabled
  /// and has its own text. What isn't a menu's item is enabled if there are paths.
  virtual void UpdateMenu(CCmdUI* ui);

 protected:
  /// The text of a path's menu item: its number, the mnemonic, and the path, cut in the middle if
  /// it is too long.
  virtual CString GetDisplayName(int index) const;
  /// Whether two entries are the same, of which one is kept. The base compares paths.
  virtual bool IsSame(const CString& left, const CString& right) const;
  /// What is kept of an entry. The base has its full path.
  virtual CString Canonical(const char* path) const;

  UINT m_nStart;
  CString m_strSectionName;
  CString m_strEntryFormat;
  int m_nSize;
  int m_nLongestShown;
  std::vector<CString> m_arrNames;

 private:
  bool IsStored() const;
  CString EntryName(int index) const;

  /// Text of the menu item while there are no paths.
  CString m_strOriginal;
};

}  // namespace dq
