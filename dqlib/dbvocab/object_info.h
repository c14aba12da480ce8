// The name of one object in a database.
//
//   CDBObjectInfo object(OT_TABLE, "SCOTT", "EMP");
//   CString script = object.GetCreationTemplate(DBMS_ORACLE);

#pragma once

#include "dqlib/dbvocab/object_types.h"
#include "dqlib/framework/base/object.h"

namespace dq {

class CWnd;

/// Type, owner and name of an object. A value, which archives store and load.
class CDBObjectInfo : public CObject {
  DECLARE_SERIAL(CDBObjectInfo)
  CDBObjectInfo() = default;
  CDBObjectInfo(OBJECTTYPES type, const char* owner, const char* name);
  CDBObjectInfo(const CDBObjectInfo& other);
  CDBObjectInfo& operator=(const CDBObjectInfo& other);

  OBJECTTYPES GetObjectType() const { return m_eType; }
  void SetObjectType(OBJECTTYPES type) { m_eType = type; }
  const CString& GetOwner() const { return m_strOwner; }
  void SetOwner(const char* owner) { m_strOwner = owner; }
  const CString& GetName() const { return m_strName; }
  void SetName(const char* name) { m_strName = name; }

  /// No type, owner or name.
  void Clear();

  /// Whether it names an object: it has a type, a name and, where objects of the type have owners,
  /// an owner. An anonymous block needs neither of both.
  bool IsValid() const;

  /// What the type is called where there is no platform, so a node group on every one; in upper
  /// case if asked. In English whatever is shown, because scripts are written with it.
  CString GetObjectTypeString(bool upperCase = false) const;

  /// Takes owner and name from "owner.name": what stands before and behind the first dot. Without
  /// one there is no owner. Quotes have no meaning here, as callers strip them before.
  void SetFullName(const char* fullName);

  /// "Table SCOTT.EMP", for a window.
  CString GetDefaultTitle() const;

  /// The script that creates such an object on the platform, from its template with the variables
  /// "$$object_type$$", "$$object_owner$$" and "$$object_name$$" set. They stay set, and the
  /// options server keeps the platform. "" if the object isn't valid or there is no template.
  CString GetCreationTemplate(DBMS platform) const;

  /// Has the person edit it: see `CDBObjectInfoDlg`. A caption that is null or "" leaves the
  /// dialog's. True if the dialog was left by OK.
  bool SetPropertiesDlg(DBMS platform, double version, const char* defaultOwner,
                        CWnd* parent = nullptr, bool reducedList = false,
                        const char* caption = nullptr);

  void Serialize(CArchive& archive) override;

 private:
  OBJECTTYPES m_eType = OT_NONE;
  CString m_strOwner;
  CString m_strName;
};

/// An object with more of where it is. Archives store the fields of the base alone, as an object of
/// the base's class, since files have never had more.
class CDBAObjectInfo : public CDBObjectInfo {
 public:
  CDBAObjectInfo() = default;
  CDBAObjectInfo(OBJECTTYPES type, const char* owner, const char* name);
  CDBAObjectInfo(OBJECTTYPES type, const char* owner, const char* name, const char* datasource);
  CDBAObjectInfo(OBJECTTYPES type, const char* owner, const char* name, const char* datasource,
                 const char* database, const char* table);
  CDBAObjectInfo(const char* newName, OBJECTTYPES type, const char* owner, const char* name,
                 const char* datasource, const char* database, const char* table);
  CDBAObjectInfo(const CDBAObjectInfo&) = default;
  CDBAObjectInfo& operator=(const CDBAObjectInfo&) = default;

  const CString& GetDatasourceName() const { return m_strDatasource; }
  void SetDatasourceName(const char* name) { m_strDatasource = name; }
  const CString& GetDatabaseName() const { return m_strDatabase; }
  void SetDatabaseName(const char* name) { m_strDatabase = name; }
  const CString& GetObjectNewName() const { return m_strNewName; }
  void SetObjectNewName(const char* name) { m_strNewName = name; }
  const CString& GetTableName() const { return m_strTable; }
  void SetTableName(const char* name) { m_strTable = name; }

 private:
  CString m_strDatasource;
  CString m_strDatabase;
  CString m_strNewName;
  CString m_strTable;
};

}  // namespace dq
