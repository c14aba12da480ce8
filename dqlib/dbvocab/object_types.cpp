#include "dqlib/dbvocab/object_types.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "dqlib/framework/base/file.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/resources/string_ids.h"
#include "siblings/options/options_server.h"

namespace dq {
namespace {

/// The platforms with creation templates, in the order of the columns below.
enum Column { kSybase, kSqlServer, kDb2, kOracle, kDb2Os390, kColumns };

struct PlatformRow {
  DBMS platform;
  std::string_view text;
  std::string_view directory;
  int column;
};

constexpr PlatformRow kPlatforms[] = {
    {DBMS_NONE, "None", "", -1},
    {DBMS_SYBASE, "Sybase", "Sybase", kSybase},
    {DBMS_SQLSERVER, "SQL Server", "SQLServr", kSqlServer},
    {DBMS_DB2, "DB/2", "DB2", kDb2},
    {DBMS_ORACLE, "Oracle", "Oracle", kOracle},
    {DBMS_DB2OS390, "DB/2", "DB2OS390", kDb2Os390},
};

struct TypeRow {
  OBJECTTYPES type;
  std::string_view text;
  /// File names without extension; "" where the platform has no template.
  std::array<std::string_view, kColumns> templates;
};

constexpr TypeRow kTypes[] = {
    {OT_ALIAS, "Alias", {"CRAlias", "CRAlias", "CRAlias", "", "CRAlias"}},
    {OT_CHECK_CONSTRAINT,
     "Check Constraint",
     {"CRCCnstr", "CRCCnstr", "CRCCnstr", "CRCCnstr", "CRCCnstr"}},
    {OT_CLUSTER, "Cluster", {"", "", "", "CRClust", ""}},
    {OT_DATABASE, "Database", {"CRDBase", "CRDBase", "", "", "CRDatabase"}},
    {OT_DATABASE_LINK, "Database Link", {"", "", "", "CRDBLink", ""}},
    {OT_USER_DATATYPE, "User Datatype", {"CRDType", "CRDType", "CRDType", "", "CRDType"}},
    {OT_DEFAULT, "Default", {"CRDef", "CRDef", "", "", ""}},
    {OT_FUNCTION, "Function", {"", "CRFunc", "CRFunc", "CRFunc", "CRFunc"}},
    {OT_GROUP, "Group", {"CRGroup", "CRGroup", "", "", ""}},
    {OT_INDEX, "Index", {"CRIndex", "CRIndex", "CRIndex", "CRIndex", "CRIndex"}},
    {OT_LOGIN, "Login", {"CRLogin", "CRLogin", "", "", ""}},
    {OT_PACKAGE, "Package", {"", "", "CRPckage", "CRPkgHdr", "CRPckage"}},
    {OT_PACKAGE_BODY, "Package Body", {"", "", "", "CRPkgBdy", ""}},
    {OT_PROCEDURE, "Procedure", {"CRProc", "CRProc", "CRProc", "CRProc", "CRProc"}},
    {OT_PROFILE, "Profile", {"", "", "", "CRProf", ""}},
    {OT_REMOTE_SERVER, "Remote Server", {"", "", "", "", ""}},
    {OT_ROLE, "Role", {"CRRole", "", "", "CRRole", ""}},
    {OT_ROLLBACK_SEGMENT, "Rollback Segment", {"", "", "", "CRRollS", ""}},
    {OT_RULE, "Rule", {"CRRule", "CRRule", "", "", ""}},
    {OT_SEGMENT, "Segment", {"CRSgmnt", "CRSgmnt", "", "", ""}},
    {OT_SEQUENCE, "Sequence", {"", "", "CRSeq", "CRSeq", ""}},
    {OT_SNAPSHOT, "Snapshot", {"", "", "", "CRSnap", ""}},
    {OT_SNAPSHOT_LOG, "Snapshot Log", {"", "", "", "CRSnapL", ""}},
    {OT_SYNONYM, "Synonym", {"", "", "", "CRSyn", "CRSyn"}},
    {OT_TABLE, "Table", {"CRTable", "CRTable", "CRTable", "CRTable", "CRTable"}},
    {OT_TABLESPACE, "Tablespace", {"", "", "", "CRTableS", ""}},
    {OT_TRIGGER, "Trigger", {"CRTrig", "CRTrig", "CRTrig", "CRTrig", "CRTrig"}},
    {OT_USER, "User", {"CRUser", "CRUser", "", "CRUser", ""}},
    {OT_USER_MESSAGE, "", {"CRUsrMsg", "CRUsrMsg", "", "", ""}},
    {OT_VIEW, "View", {"CRView", "CRView", "CRView", "CRView", "CRView"}},
    {OT_BUFFER_POOL, "Buffer Pool", {"", "", "", "", ""}},
    {OT_NODEGROUP, "Nodegroup", {"", "", "", "", ""}},
    {OT_TYPE, "Type", {"", "", "CRStrTp", "CRType", ""}},
    {OT_TYPE_BODY, "Type Body", {"", "", "", "CRTypeB", ""}},
    {OT_LIBRARY, "Library", {"", "", "", "CRLib", ""}},
    {OT_DIRECTORY, "Directory", {"", "", "", "CRDir", ""}},
    {OT_EXTENDED_PROCEDURE, "Extended Procedure", {"CRExProc", "CRExProc", "", "", ""}},
    {OT_ANONYMOUS_BLOCK, "Anonymous Block", {"", "", "", "", ""}},
    {OT_FOREIGN_KEY, "Foreign Key", {"CRFKey", "CRFKey", "CRFKey", "CRFKey", "CRFKey"}},
    {OT_PRIMARY_KEY, "Primary Key", {"CRPKey", "CRPKey", "CRPKey", "CRPKey", "CRPKey"}},
    {OT_UNIQUE_KEY, "Unique Key", {"CRUKey", "CRUKey", "CRUKey", "CRUKey", "CRUKey"}},
    {OT_LINKED_SERVER, "Linked Server", {"", "", "", "", ""}},
    {OT_MATERIALIZED_VIEW, "Materialized View", {"", "", "", "CRMView", ""}},
    {OT_MATERIALIZED_VIEW_LOG, "Materialized View Log", {"", "", "", "CRMViewL", ""}},
    {OT_OUTLINES, "Outlines", {"", "", "", "", ""}},
    {OT_REDO_LOG_GROUP, "Redo Log Group", {"", "", "", "CRRedoL", ""}},
};

const PlatformRow* FindPlatform(DBMS platform) {
  const auto* const row = std::ranges::find(kPlatforms, platform, &PlatformRow::platform);
  return row == std::end(kPlatforms) ? nullptr : row;
}

const TypeRow* FindType(OBJECTTYPES type) {
  const auto* const row = std::ranges::lower_bound(kTypes, type, {}, &TypeRow::type);
  return row == std::end(kTypes) || row->type != type ? nullptr : row;
}

constexpr std::string_view kUnknown = "Unknown";

}  // namespace

CString GetObjectTypeText(OBJECTTYPES type, DBMS platform) {
  const bool db2_os390 = platform == DBMS_DB2OS390;
  if (type == OT_NODEGROUP && db2_os390) return CString("Stogroup");
  if (type == OT_TYPE && (db2_os390 || platform == DBMS_DB2)) return CString("Structured Type");
  const TypeRow* const row = FindType(type);
  return CString(row == nullptr || row->text.empty() ? kUnknown : row->text);
}

CString GetDBMSText(DBMS platform) {
  const PlatformRow* const row = FindPlatform(platform);
  return CString(row == nullptr ? kUnknown : row->text);
}

CString GetCreationTemplatePath(DBMS platform, OBJECTTYPES type) {
  const PlatformRow* const where = FindPlatform(platform);
  const TypeRow* const row = FindType(type);
  if (where == nullptr || where->column < 0 || row == nullptr) return {};
  const std::string_view file = row->templates[static_cast<std::size_t>(where->column)];
  if (file.empty()) return {};
  std::string path = "$$template_root$$\\";
  path += where->directory;
  path += '\\';
  path += file;
  path += ".tpl";
  return CString(path);
}

CString GetCreationTemplateText(DBMS platform, OBJECTTYPES type) {
  const CString named = GetCreationTemplatePath(platform, type);
  if (named.IsEmpty()) return {};
  const CString path = CDQOptionsServer::GetObject()->ResolveVariableString(named);
  try {
    CFile file(path, CFile::modeRead | CFile::shareDenyNone);
    std::string text(static_cast<std::size_t>(file.GetLength()), '\0');
    text.resize(file.Read(text.data(), static_cast<UINT>(text.size())));
    return CString(text.c_str());
  } catch (const CFileException&) {
    CString message;
    message.Format(IDS_TEMPLATE_OPEN_FAILED, static_cast<const char*>(path));
    AfxMessageBox(message, BOX_STOP);
    return {};
  }
}

}  // namespace dq
