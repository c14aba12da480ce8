#include "dqlib/dbvocab/object_types.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "dqlib/framework/base/file.h"
#include "dqlib/framework/base/text_cache.h"
#include "dqlib/framework/windows/message_box.h"
#include "dqlib/resources/string_ids.h"
#include "siblings/options/options_server.h"

namespace dq {
namespace {

/// The platforms with creation templates, in the order of the columns below.
enum Column { kSybase, kSqlServer, kDb2, kOracle, kDb2Os390, kColumns };

struct PlatformRow {
  DBMS platform;
  UINT text_id;
  std::string_view directory;
  int column;
};

constexpr PlatformRow kPlatforms[] = {
    {DBMS_NONE, IDS_PLATFORM_NONE, "", -1},
    {DBMS_SYBASE, IDS_PLATFORM_SYBASE, "Sybase", kSybase},
    {DBMS_SQLSERVER, IDS_PLATFORM_SQLSERVER, "SQLServr", kSqlServer},
    {DBMS_DB2, IDS_PLATFORM_DB2, "DB2", kDb2},
    {DBMS_ORACLE, IDS_PLATFORM_ORACLE, "Oracle", kOracle},
    {DBMS_DB2OS390, IDS_PLATFORM_DB2, "DB2OS390", kDb2Os390},
};

/// A kind of objects that has a text or a template.
struct TypeRow {
  OBJECTTYPES type;
  /// File names without extension; "" where the platform has no template.
  std::array<std::string_view, kColumns> templates;
};

constexpr TypeRow kTypes[] = {
    {OT_ALIAS, {"CRAlias", "CRAlias", "CRAlias", "", "CRAlias"}},
    {OT_CHECK_CONSTRAINT, {"CRCCnstr", "CRCCnstr", "CRCCnstr", "CRCCnstr", "CRCCnstr"}},
    {OT_CLUSTER, {"", "", "", "CRClust", ""}},
    {OT_DATABASE, {"CRDBase", "CRDBase", "", "", "CRDatabase"}},
    {OT_DATABASE_LINK, {"", "", "", "CRDBLink", ""}},
    {OT_USER_DATATYPE, {"CRDType", "CRDType", "CRDType", "", "CRDType"}},
    {OT_DEFAULT, {"CRDef", "CRDef", "", "", ""}},
    {OT_FUNCTION, {"", "CRFunc", "CRFunc", "CRFunc", "CRFunc"}},
    {OT_GROUP, {"CRGroup", "CRGroup", "", "", ""}},
    {OT_INDEX, {"CRIndex", "CRIndex", "CRIndex", "CRIndex", "CRIndex"}},
    {OT_LOGIN, {"CRLogin", "CRLogin", "", "", ""}},
    {OT_PACKAGE, {"", "", "CRPckage", "CRPkgHdr", "CRPckage"}},
    {OT_PACKAGE_BODY, {"", "", "", "CRPkgBdy", ""}},
    {OT_PROCEDURE, {"CRProc", "CRProc", "CRProc", "CRProc", "CRProc"}},
    {OT_PROFILE, {"", "", "", "CRProf", ""}},
    {OT_REMOTE_SERVER, {"", "", "", "", ""}},
    {OT_ROLE, {"CRRole", "", "", "CRRole", ""}},
    {OT_ROLLBACK_SEGMENT, {"", "", "", "CRRollS", ""}},
    {OT_RULE, {"CRRule", "CRRule", "", "", ""}},
    {OT_SEGMENT, {"CRSgmnt", "CRSgmnt", "", "", ""}},
    {OT_SEQUENCE, {"", "", "CRSeq", "CRSeq", ""}},
    {OT_SNAPSHOT, {"", "", "", "CRSnap", ""}},
    {OT_SNAPSHOT_LOG, {"", "", "", "CRSnapL", ""}},
    {OT_SYNONYM, {"", "", "", "CRSyn", "CRSyn"}},
    {OT_TABLE, {"CRTable", "CRTable", "CRTable", "CRTable", "CRTable"}},
    {OT_TABLESPACE, {"", "", "", "CRTableS", ""}},
    {OT_TRIGGER, {"CRTrig", "CRTrig", "CRTrig", "CRTrig", "CRTrig"}},
    {OT_USER, {"CRUser", "CRUser", "", "CRUser", ""}},
    {OT_USER_MESSAGE, {"CRUsrMsg", "CRUsrMsg", "", "", ""}},
    {OT_VIEW, {"CRView", "CRView", "CRView", "CRView", "CRView"}},
    {OT_BUFFER_POOL, {"", "", "", "", ""}},
    {OT_NODEGROUP, {"", "", "", "", ""}},
    {OT_TYPE, {"", "", "CRStrTp", "CRType", ""}},
    {OT_TYPE_BODY, {"", "", "", "CRTypeB", ""}},
    {OT_LIBRARY, {"", "", "", "CRLib", ""}},
    {OT_DIRECTORY, {"", "", "", "CRDir", ""}},
    {OT_EXTENDED_PROCEDURE, {"CRExProc", "CRExProc", "", "", ""}},
    {OT_ANONYMOUS_BLOCK, {"", "", "", "", ""}},
    {OT_FOREIGN_KEY, {"CRFKey", "CRFKey", "CRFKey", "CRFKey", "CRFKey"}},
    {OT_PRIMARY_KEY, {"CRPKey", "CRPKey", "CRPKey", "CRPKey", "CRPKey"}},
    {OT_UNIQUE_KEY, {"CRUKey", "CRUKey", "CRUKey", "CRUKey", "CRUKey"}},
    {OT_LINKED_SERVER, {"", "", "", "", ""}},
    {OT_MATERIALIZED_VIEW, {"", "", "", "CRMView", ""}},
    {OT_MATERIALIZED_VIEW_LOG, {"", "", "", "CRMViewL", ""}},
    {OT_OUTLINES, {"", "", "", "", ""}},
    {OT_REDO_LOG_GROUP, {"", "", "", "CRRedoL", ""}},
};

/// The rows of a table by number, for numbers below `size`.
template <std::size_t size, typename Row, std::size_t count, typename Number>
class Index {
 public:
  constexpr Index(const Row (&rows)[count], Number Row::*number) : rows_(rows) {
    for (unsigned char place = 0; const Row& row : rows) places_.at(row.*number) = ++place;
  }
  /// Null if no row has the number.
  const Row* Find(Number number) const {
    const auto at = static_cast<std::size_t>(number);
    return at < size && places_[at] != 0 ? &rows_[places_[at] - 1] : nullptr;
  }

 private:
  const Row (&rows_)[count];
  /// Counted from 1; 0 is none.
  std::array<unsigned char, size> places_{};
};

constexpr Index<DBMS_DB2OS390 + 1, PlatformRow, std::size(kPlatforms), DBMS> kByPlatform(
    kPlatforms, &PlatformRow::platform);
constexpr Index<OT_REDO_LOG_GROUP + 1, TypeRow, std::size(kTypes), OBJECTTYPES> kByType(
    kTypes, &TypeRow::type);

/// The texts of kinds and platforms, which stand in one block.
CString ShownText(UINT id) {
  constexpr std::size_t kSize = IDS_PLATFORM_ORACLE - IDS_UNKNOWN + 1;
  thread_local constinit detail::TextCache<IDS_UNKNOWN, kSize> texts;
  return CString(texts.Find(id));
}

}  // namespace

UINT GetObjectTypeTextId(OBJECTTYPES type, DBMS platform) {
  const bool db2_os390 = platform == DBMS_DB2OS390;
  if (type == OT_NODEGROUP && db2_os390) return IDS_STOGROUP;
  if (type == OT_TYPE && (db2_os390 || platform == DBMS_DB2)) return IDS_STRUCTURED_TYPE;
  if (type == OT_USER_MESSAGE || kByType.Find(type) == nullptr) return IDS_UNKNOWN;
  return IDS_UNKNOWN + static_cast<UINT>(type);
}

CString GetObjectTypeText(OBJECTTYPES type, DBMS platform) {
  return ShownText(GetObjectTypeTextId(type, platform));
}

CString GetDBMSText(DBMS platform) {
  const PlatformRow* const row = kByPlatform.Find(platform);
  return ShownText(row == nullptr ? IDS_UNKNOWN : row->text_id);
}

CString GetCreationTemplatePath(DBMS platform, OBJECTTYPES type) {
  const PlatformRow* const where = kByPlatform.Find(platform);
  const TypeRow* const row = kByType.Find(type);
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
