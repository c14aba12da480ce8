#include "dqlib/dbvocab/object_info_dialog.h"

#include "dqlib/framework/controls/dialog_exchange.h"

namespace dq {
namespace {

/// Characters that an owner or a name may have.
constexpr int kLongestName = 30;

}  // namespace

CDBObjectInfoDlg::CDBObjectInfoDlg(CDBObjectInfo* object, DBMS platform, double version,
                                   const char* defaultOwner, bool reducedList, const char* caption,
                                   CWnd* parent)
    : CDQDialog(kTemplateId, parent),
      m_pObject(object),
      m_ePlatform(platform),
      m_nVersion(version),
      m_strDefaultOwner(defaultOwner),
      m_bReducedList(reducedList) {
  SetCaption(caption);
}

void CDBObjectInfoDlg::CompleteOwner() {
  if (!m_pObject->GetOwner().IsEmpty() || m_pObject->GetObjectType() == OT_ANONYMOUS_BLOCK) return;
  m_pObject->SetOwner(m_strDefaultOwner);
}

void CDBObjectInfoDlg::TakeFields() {
  m_eType = m_pObject->GetObjectType();
  m_strOwner = m_pObject->GetOwner();
  m_strName = m_pObject->GetName();
  const bool has_specific_name =
      m_ePlatform == DBMS_DB2 && (m_eType == OT_PROCEDURE || m_eType == OT_FUNCTION);
  if (has_specific_name) m_strName = m_strName.SpanExcluding(".");
}

BOOL CDBObjectInfoDlg::OnInitDialog() {
  CompleteOwner();
  TakeFields();
  CDQDialog::OnInitDialog();
  m_types.LoadObjectTypes(m_ePlatform, m_nVersion, m_pObject->GetObjectType(), m_bReducedList);
  GetDlgItem(kDetach)->ShowWindow(m_pObject->IsValid() ? SW_SHOW : SW_HIDE);
  if (m_types.GetCurSel() < 0) return 1;
  GotoDlgCtrl(GetDlgItem(kName));
  return 0;
}

void CDBObjectInfoDlg::DoDataExchange(CDataExchange* exchange) {
  DDX_Control(exchange, kType, m_types);
  DDX_ObjectType(exchange, kType, m_eType);
  DDX_Text(exchange, kOwner, m_strOwner);
  DDV_MaxChars(exchange, m_strOwner, kLongestName);
  DDX_Text(exchange, kName, m_strName);
  DDV_MaxChars(exchange, m_strName, kLongestName);
  if (exchange->m_bSaveAndValidate) *m_pObject = CDBObjectInfo(m_eType, m_strOwner, m_strName);
}

bool CDBObjectInfoDlg::CallMapped(const HandlerKey& key, HandlerArguments& arguments) {
  static constexpr MessageMapEntry kEntries[] = {
      CommandEntry<&CDBObjectInfoDlg::OnDetach>(kDetach),
  };
  return CallEntry(kEntries, *this, key, arguments) || CDQDialog::CallMapped(key, arguments);
}

void CDBObjectInfoDlg::OnDetach() {
  CompleteOwner();
  m_pObject->Clear();
  TakeFields();
  UpdateData(0);
  GetDlgItem(kDetach)->ShowWindow(SW_HIDE);
}

}  // namespace dq
