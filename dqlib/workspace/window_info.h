// One open window of a saved workspace, and the array of all of them.

#pragma once

#include <memory>
#include <vector>

#include "dqlib/framework/base/archive.h"
#include "dqlib/framework/windows/window_messages.h"

namespace dq {

/// What a host needs to open a window again: of what kind it is, what it is called, two texts of
/// the host's own, its placement, and whether it was the active one.
///
/// In an archive: type and subtype (32 bits each), name, user data, user data 2 (texts), the
/// placement as 44 bytes (eleven numbers of 32 bits, little-endian whatever the machine: length,
/// flags, show command, minimised x and y, maximised x and y, normal left, top, right and bottom),
/// and one byte, not 0 if active.
class CDQWindowInfo : public CObject {
  DECLARE_SERIAL(CDQWindowInfo)
  CDQWindowInfo() = default;
  CDQWindowInfo(int type, int subtype, const char* name);

  /// -1 until they are set.
  int GetType() const { return m_nType; }
  int GetSubtype() const { return m_nSubtype; }
  const CString& GetName() const { return m_strName; }

  const CString& GetUserData() const { return m_strUserData; }
  void SetUserData(const char* data) { m_strUserData = data; }
  const CString& GetUserData2() const { return m_strUserData2; }
  void SetUserData2(const char* data) { m_strUserData2 = data; }

  const WINDOWPLACEMENT& GetWndPlacement() const { return m_placement; }
  /// Its length becomes 44, whatever it was.
  void SetWndPlacement(const WINDOWPLACEMENT& placement);
  /// Whether the placement shows the window maximised, or minimised.
  bool Zoomed() const { return m_placement.showCmd == SW_SHOWMAXIMIZED; }
  bool Iconized() const { return m_placement.showCmd == SW_SHOWMINIMIZED; }

  bool GetActive() const { return m_bActive; }
  void SetActive(bool active) { m_bActive = active; }

  /// Loading throws `CArchiveException` with `endOfFile` if the stream ends inside; the length of
  /// the placement is 44 afterwards, whatever was stored.
  void Serialize(CArchive& archive) override;

 private:
  void Load(CArchive& archive);

  int m_nType = -1;
  int m_nSubtype = -1;
  CString m_strName;
  CString m_strUserData;
  CString m_strUserData2;
  WINDOWPLACEMENT m_placement;
  bool m_bActive = false;
};

/// An array of window records by index, which it owns.
class CDQWindowInfoArray {
 public:
  CDQWindowInfoArray() = default;
  CDQWindowInfoArray(const CDQWindowInfoArray&) = delete;
  CDQWindowInfoArray& operator=(const CDQWindowInfoArray&) = delete;

  int GetSize() const { return static_cast<int>(m_infos.size()); }
  /// The record at an index from 0 to below the size; it stays the array's.
  CDQWindowInfo* GetAt(int index) const { return m_infos[static_cast<std::size_t>(index)].get(); }
  CDQWindowInfo* operator[](int index) const { return GetAt(index); }
  /// Takes the record, which isn't null, over, and returns its index.
  int Add(std::unique_ptr<CDQWindowInfo> info);
  /// Deletes `count` records, all of which exist.
  void RemoveAt(int index, int count = 1);
  void RemoveAll() { m_infos.clear(); }

  /// A count and that many objects. Loading replaces the contents, and throws `CArchiveException`
  /// (leaving them as they were) if the stream isn't one of different window records.
  void Serialize(CArchive& archive);

 private:
  std::vector<std::unique_ptr<CDQWindowInfo>> m_infos;
};

}  // namespace dq
