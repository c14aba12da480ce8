// The dialog in which a person says which object is meant.

#pragma once

#include "dqlib/dbvocab/object_info.h"
#include "dqlib/dbvocab/object_type_combo.h"
#include "dqlib/toolkit/dialog.h"

namespace dq {

/// Edits an object, which isn't owned and outlives the dialog. An object without an owner, unless
/// it is an anonymous block, gets the default one when the dialog opens, and keeps it even if the
/// person cancels. Owner and name take 30 characters.
///
/// On DB2 the name of a procedure or function is shown up to its first dot: what stands behind is
/// its specific name, which is dropped when the dialog is left by OK.
class CDBObjectInfoDlg : public CDQDialog {
 public:
  static constexpr UINT kTemplateId = 2712;
  enum ControlId : int { kType = 2754, kOwner = 2756, kName = 2757, kDetach = 3019 };

  /// A caption that is null or "" leaves the template's.
  CDBObjectInfoDlg(CDBObjectInfo* object, DBMS platform, double version, const char* defaultOwner,
                   bool reducedList, const char* caption, CWnd* parent = nullptr);

 protected:
  BOOL OnInitDialog() override;
  void DoDataExchange(CDataExchange* exchange) override;
  bool CallMapped(const HandlerKey& key, HandlerArguments& arguments) override;

 private:
  /// Clears the object; the dialog stays open and shows what is left.
  void OnDetach();
  /// Gives an object that needs an owner the default one.
  void CompleteOwner();
  /// Takes the fields from the object.
  void TakeFields();

  CDBObjectInfo* m_pObject;
  DBMS m_ePlatform;
  double m_nVersion;
  CString m_strDefaultOwner;
  bool m_bReducedList;

  CDQObjectTypeCombo m_types;
  OBJECTTYPES m_eType = OT_NONE;
  CString m_strOwner;
  CString m_strName;
};

}  // namespace dq
