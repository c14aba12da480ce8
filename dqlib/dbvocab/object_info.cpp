#include "dqlib/dbvocab/object_info.h"

#include <algorithm>

#include "dqlib/dbvocab/object_info_dialog.h"
#include "dqlib/framework/base/archive.h"
#include "dqlib/resources/string_table.h"
#include "siblings/options/options_server.h"

namespace dq {
namespace {

/// Types whose objects have no owner; those without an enumerator among them.
constexpr int kWithoutOwner[] = {
    OT_DATABASE,
    8,
    10,
    13,
    OT_GROUP,
    OT_LOGIN,
    OT_PROFILE,
    OT_REMOTE_SERVER,
    OT_ROLE,
    OT_ROLLBACK_SEGMENT,
    29,
    OT_TABLESPACE,
    OT_USER,
    OT_BUFFER_POOL,
    OT_NODEGROUP,
    OT_DIRECTORY,
    53,
    OT_LINKED_SERVER,
    OT_REDO_LOG_GROUP,
};

}  // namespace

IMPLEMENT_SERIAL(CDBObjectInfo, CObject, VERSIONABLE_SCHEMA | 1)

CDBObjectInfo::CDBObjectInfo(OBJECTTYPES type, const char* owner, const char* name)
    : m_eType(type), m_strOwner(owner), m_strName(name) {}

CDBObjectInfo::CDBObjectInfo(const CDBObjectInfo& other)
    : CObject(), m_eType(other.m_eType), m_strOwner(other.m_strOwner), m_strName(other.m_strName) {}

CDBObjectInfo& CDBObjectInfo::operator=(const CDBObjectInfo& other) {
  m_eType = other.m_eType;
  m_strOwner = other.m_strOwner;
  m_strName = other.m_strName;
  return *this;
}

void CDBObjectInfo::Clear() { *this = CDBObjectInfo(); }

bool CDBObjectInfo::IsValid() const {
  if (m_eType == OT_NONE) return false;
  if (m_eType == OT_ANONYMOUS_BLOCK) return true;
  if (m_strOwner.IsEmpty() && std::ranges::find(kWithoutOwner, m_eType) == std::end(kWithoutOwner))
    return false;
  return !m_strName.IsEmpty();
}

CString CDBObjectInfo::GetObjectTypeString(bool upperCase) const {
  CString text(EnglishText(GetObjectTypeTextId(m_eType, DBMS_NONE)));
  if (upperCase) text.MakeUpper();
  return text;
}

void CDBObjectInfo::SetFullName(const char* fullName) {
  const CString name = fullName;
  const int dot = name.Find('.');
  m_strOwner = name.Left(dot);
  m_strName = name.Mid(dot + 1);
}

CString CDBObjectInfo::GetDefaultTitle() const {
  return GetObjectTypeText(m_eType, DBMS_NONE) + ' ' + m_strOwner + '.' + m_strName;
}

CString CDBObjectInfo::GetCreationTemplate(DBMS platform) const {
  if (!IsValid()) return {};
  // The path is resolved before the platform is set, so it is the former one's.
  const CString text = GetCreationTemplateText(platform, m_eType);
  CDQOptionsServer& server = *CDQOptionsServer::GetObject();
  server.SetPlatform(platform);
  server.SetVariable("$$object_type$$", GetObjectTypeString());
  server.SetVariable("$$object_owner$$", m_strOwner);
  server.SetVariable("$$object_name$$", m_strName);
  return server.ResolveVariableString(text);
}

bool CDBObjectInfo::SetPropertiesDlg(DBMS platform, double version, const char* defaultOwner,
                                     CWnd* parent, bool reducedList, const char* caption) {
  CDBObjectInfoDlg dialog(this, platform, version, defaultOwner, reducedList, caption, parent);
  return dialog.DoModal() == IDOK;
}

void CDBObjectInfo::Serialize(CArchive& archive) {
  if (archive.IsStoring()) {
    archive << static_cast<LONG>(m_eType) << m_strOwner << m_strName;
    return;
  }
  LONG type = OT_NONE;
  archive >> type >> m_strOwner >> m_strName;
  m_eType = static_cast<OBJECTTYPES>(type);
}

CDBAObjectInfo::CDBAObjectInfo(OBJECTTYPES type, const char* owner, const char* name)
    : CDBObjectInfo(type, owner, name) {}

CDBAObjectInfo::CDBAObjectInfo(OBJECTTYPES type, const char* owner, const char* name,
                               const char* datasource)
    : CDBObjectInfo(type, owner, name), m_strDatasource(datasource) {}

CDBAObjectInfo::CDBAObjectInfo(OBJECTTYPES type, const char* owner, const char* name,
                               const char* datasource, const char* database, const char* table)
    : CDBObjectInfo(type, owner, name),
      m_strDatasource(datasource),
      m_strDatabase(database),
      m_strTable(table) {}

CDBAObjectInfo::CDBAObjectInfo(const char* newName, OBJECTTYPES type, const char* owner,
                               const char* name, const char* datasource, const char* database,
                               const char* table)
    : CDBObjectInfo(type, owner, name),
      m_strDatasource(datasource),
      m_strDatabase(database),
      m_strNewName(newName),
      m_strTable(table) {}

}  // namespace dq
