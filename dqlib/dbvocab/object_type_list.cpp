#include "dqlib/dbvocab/object_type_list.h"

#include "dqlib/dbvocab/version_string.h"

namespace dq {
namespace {

/// Sets of platforms.
enum Platforms : unsigned {
  kNone = 1,
  kSybase = 2,
  kSqlServer = 4,
  kDb2 = 8,
  kOracle = 16,
  kDb2Os390 = 32,
  kBothServers = kSybase | kSqlServer,
  kBothDb2 = kDb2 | kDb2Os390,
  kAll = kNone | kBothServers | kBothDb2 | kOracle,
};

/// What else must hold. Versions count where there is a platform.
enum Condition {
  kAlways,
  kFullList,
  kNotLumenSql,
  kFromVersion7,
  kFromVersion8,
  kFromVersion81,
  kBelowVersion81,
};

struct Row {
  ObjectTypeEntry entry;
  unsigned platforms;
  Condition condition = kAlways;
};

constexpr Row kRows[] = {
    {{"Index", OT_INDEX}, kAll, kFullList},
    {{"Table", OT_TABLE}, kAll, kFullList},
    {{"View", OT_VIEW}, kAll, kFullList},
    {{"Procedure", OT_PROCEDURE}, kAll},
    {{"Trigger", OT_TRIGGER}, kAll},
    {{"Check Constraint", OT_CHECK_CONSTRAINT}, kAll},
    {{"Foreign Key", OT_FOREIGN_KEY}, kAll},
    {{"Primary Key", OT_PRIMARY_KEY}, kAll},
    {{"Unique Key", OT_UNIQUE_KEY}, kAll},

    {{"Alias", OT_ALIAS}, kBothServers},
    {{"Database", OT_DATABASE}, kBothServers},
    {{"Default", OT_DEFAULT}, kBothServers},
    {{"Extended Procedure", OT_EXTENDED_PROCEDURE}, kBothServers},
    {{"Function", OT_FUNCTION}, kSqlServer, kFromVersion8},
    {{"Group", OT_GROUP}, kBothServers},
    {{"Linked Server", OT_LINKED_SERVER}, kSqlServer, kFromVersion7},
    {{"Login", OT_LOGIN}, kBothServers},
    {{"Remote Server", OT_REMOTE_SERVER}, kBothServers},
    {{"Rule", OT_RULE}, kBothServers},
    {{"Segment", OT_SEGMENT}, kBothServers},
    {{"User", OT_USER}, kBothServers},
    {{"User Datatype", OT_USER_DATATYPE}, kBothServers},
    {{"User Message", OT_USER_MESSAGE}, kBothServers},
    {{"Role", OT_ROLE}, kSybase},

    {{"Alias", OT_ALIAS}, kNone},
    {{"Default", OT_DEFAULT}, kNone},
    {{"Extended Procedure", OT_EXTENDED_PROCEDURE}, kNone},
    {{"Group", OT_GROUP}, kNone},
    {{"Login", OT_LOGIN}, kNone},
    {{"Rule", OT_RULE}, kNone},
    {{"Segment", OT_SEGMENT}, kNone},
    {{"User Datatype", OT_USER_DATATYPE}, kNone},
    {{"User Message", OT_USER_MESSAGE}, kNone},
    {{"User", OT_USER}, kNone},

    {{"Anonymous Block", OT_ANONYMOUS_BLOCK}, kOracle | kNone},
    {{"Cluster", OT_CLUSTER}, kOracle | kNone},
    {{"Database Link", OT_DATABASE_LINK}, kOracle | kNone},
    {{"Directory", OT_DIRECTORY}, kOracle | kNone},
    {{"Function", OT_FUNCTION}, kOracle | kNone},
    {{"Library", OT_LIBRARY}, kOracle | kNone},
    {{"Materialized View", OT_MATERIALIZED_VIEW}, kOracle, kFromVersion81},
    {{"Materialized View Log", OT_MATERIALIZED_VIEW_LOG}, kOracle, kFromVersion81},
    {{"Outlines", OT_OUTLINES}, kOracle},
    {{"Package Header", OT_PACKAGE}, kOracle | kNone},
    {{"Package Body", OT_PACKAGE_BODY}, kOracle | kNone},
    {{"Profile", OT_PROFILE}, kOracle | kNone},
    {{"Redo Log Group", OT_REDO_LOG_GROUP}, kOracle | kNone, kNotLumenSql},
    {{"Role", OT_ROLE}, kOracle | kNone},
    {{"Rollback Segment", OT_ROLLBACK_SEGMENT}, kOracle | kNone},
    {{"Snapshot", OT_SNAPSHOT}, kOracle, kBelowVersion81},
    {{"Snapshot Log", OT_SNAPSHOT_LOG}, kOracle, kBelowVersion81},
    {{"Snapshot", OT_SNAPSHOT}, kNone},
    {{"Snapshot Log", OT_SNAPSHOT_LOG}, kNone},
    {{"Tablespace", OT_TABLESPACE}, kOracle | kNone},
    {{"Type", OT_TYPE}, kOracle | kNone},
    {{"Type Body", OT_TYPE_BODY}, kOracle | kNone},
    {{"User", OT_USER}, kOracle},
    {{"Package", OT_PACKAGE}, kNone},
    {{"Sequence", OT_SEQUENCE}, kOracle | kNone, kFullList},
    {{"Synonym", OT_SYNONYM}, kOracle | kNone, kFullList},

    {{"Function", OT_FUNCTION}, kBothDb2},
    {{"User Datatype", OT_USER_DATATYPE}, kBothDb2},
    {{"Alias", OT_ALIAS}, kBothDb2},
    {{"Package", OT_PACKAGE}, kDb2},
    {{"User", OT_USER}, kDb2},
    {{"Group", OT_GROUP}, kDb2},
    {{"Buffer Pool", OT_BUFFER_POOL}, kDb2},
    {{"Nodegroup", OT_NODEGROUP}, kDb2},
    {{"Tablespace", OT_TABLESPACE}, kDb2},
    {{"Structured Type", OT_TYPE}, kDb2},
    {{"Sequence", OT_SEQUENCE}, kDb2, kFullList},
    {{"Database", OT_DATABASE}, kDb2Os390},
    {{"Stogroup", OT_NODEGROUP}, kDb2Os390},
    {{"Tablespace", OT_TABLESPACE}, kDb2Os390},
    {{"Synonym", OT_SYNONYM}, kDb2Os390},
};

unsigned SetOf(DBMS platform) {
  switch (platform) {
    case DBMS_NONE:
      return kNone;
    case DBMS_SYBASE:
      return kSybase;
    case DBMS_SQLSERVER:
      return kSqlServer;
    case DBMS_DB2:
      return kDb2;
    case DBMS_ORACLE:
      return kOracle;
    case DBMS_DB2OS390:
      return kDb2Os390;
  }
  return 0;
}

bool Holds(Condition condition, const ObjectTypeQuery& query) {
  const auto from = [&query](double version) {
    return CDQDBVersionString(query.version, query.platform) >=
           CDQDBVersionString(version, query.platform);
  };
  switch (condition) {
    case kAlways:
      break;
    case kFullList:
      return !query.reduced;
    case kNotLumenSql:
      return !query.lumen_sql;
    case kFromVersion7:
      return from(7.0);
    case kFromVersion8:
      return from(8.0);
    case kFromVersion81:
      return from(8.1);
    case kBelowVersion81:
      return !from(8.1);
  }
  return true;
}

}  // namespace

std::vector<ObjectTypeEntry> ListObjectTypes(const ObjectTypeQuery& query) {
  const unsigned platform = SetOf(query.platform);
  std::vector<ObjectTypeEntry> entries;
  for (const Row& row : kRows) {
    // A number that is no platform has what all have.
    const bool is_for = row.platforms == kAll || (row.platforms & platform) != 0;
    if (is_for && Holds(row.condition, query)) entries.push_back(row.entry);
  }
  return entries;
}

}  // namespace dq
