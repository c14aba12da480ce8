#include "dqlib/dbvocab/object_type_combo.h"

#include "dqlib/dbvocab/object_type_list.h"
#include "dqlib/frame/application_info.h"
#include "dqlib/framework/windows/data_exchange.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/resources/string_ids.h"

namespace dq {

IMPLEMENT_DYNAMIC(CDQObjectTypeCombo, CDQAutoDropWidthCombo)

bool CDQObjectTypeCombo::LoadObjectTypes(DBMS platform, double version, OBJECTTYPES selected,
                                         bool reducedList) {
  LoadDBMSSpecificTypes(platform, version, selected, reducedList);
  SetCurrentSelection(selected, platform);
  return true;
}

void CDQObjectTypeCombo::LoadDBMSSpecificTypes(DBMS platform, double version, OBJECTTYPES,
                                               bool reducedList) {
  const ObjectTypeQuery query{.platform = platform,
                              .version = version,
                              .reduced = reducedList,
                              .lumen_sql = CDQApplicationInfo::IsAppLumenSql()};
  for (const ObjectTypeEntry& entry : ListObjectTypes(query)) {
    AddObjectType(detail::LoadText(entry.text_id), entry.type);
  }
}

void CDQObjectTypeCombo::SetCurrentSelection(OBJECTTYPES type, DBMS platform) {
  if (type == OT_NONE) return;
  const CString text = GetObjectTypeText(type, platform);
  const int row = FindStringExact(-1, text);
  if (row >= 0) {
    SetCurSel(row);
    return;
  }
  CString message;
  message.Format(IDS_OBJECT_TYPE_NOT_VALID, static_cast<const char*>(text),
                 static_cast<const char*>(GetDBMSText(platform)));
  AfxMessageBox(message, BOX_INFORMATION);
}

int CDQObjectTypeCombo::AddObjectType(const char* text, OBJECTTYPES type) {
  return AddItem(text, static_cast<std::uintptr_t>(type));
}

void DDX_ObjectType(CDataExchange* exchange, int controlId, OBJECTTYPES& type) {
  auto* const combo = dynamic_cast<CComboBox*>(exchange->PrepareCtrl(controlId));
  if (combo == nullptr) throw CNotSupportedException();
  if (!exchange->m_bSaveAndValidate) {
    combo->SetCurSel(combo->FindStringExact(-1, GetObjectTypeText(type, DBMS_NONE)));
    return;
  }
  const int row = combo->GetCurSel();
  type = row < 0 ? OT_NONE : static_cast<OBJECTTYPES>(combo->GetItemData(row));
}

}  // namespace dq
