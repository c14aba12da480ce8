// The version resource of a file.

#pragma once

#include <memory>

#include "dqlib/framework/base/c_string.h"
#include "dqlib/framework/base/object.h"

namespace dq {

/// Reads the texts of one file's version resource. Nothing here reports a failure: what can't be
/// read is "", 0 or false.
class CDQVersionInfo : public CObject {
 public:
  /// Of the program itself.
  CDQVersionInfo();
  /// Of the given module; null is the program itself.
  explicit CDQVersionInfo(HINSTANCE module);
  explicit CDQVersionInfo(const char* file_name);
  ~CDQVersionInfo() override;

  /// Forgets translation and block without freeing the block. For derived classes that hand the
  /// block on.
  void InitMembers();

  void SetFileName(const char* file_name);

  /// Reads the resource of the file anew. Non-zero on success, which includes that the resource has
  /// a translation; without one the block stays all the same.
  BOOL GetVersionInfo();

  /// The translation as eight hexadecimal digits, language first: "040904b0".
  CString GetLanguageString() const;

  /// The text under the key in the first translation, or "".
  CString GetString(const char* key) const;

  CString GetVersionString() const { return GetString("FileVersion"); }
  CString GetComments() const { return GetString("Comments"); }
  CString GetCompanyName() const { return GetString("CompanyName"); }
  CString GetFileDescription() const { return GetString("FileDescription"); }
  CString GetInternalName() const { return GetString("InternalName"); }
  CString GetLegalCopyright() const { return GetString("LegalCopyright"); }
  CString GetLegalTrademarks() const { return GetString("LegalTrademarks"); }
  CString GetOriginalFileName() const { return GetString("OriginalFileName"); }
  virtual CString GetProductName();
  CString GetProductVersion() const { return GetString("ProductVersion"); }

 private:
  CString m_strFileName;
  /// Language in the low half, code page in the high half; 0 until read.
  DWORD m_dwTranslation = 0;
  /// Owned; null if there is none.
  char* m_pVersionBlock = nullptr;
  std::size_t m_nVersionBlockSize = 0;
};

}  // namespace dq
