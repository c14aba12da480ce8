#include "dqlib/dbvocab/object_type_list.h"

#include <iterator>

#include "dqlib/dbvocab/version_string.h"
#include "dqlib/resources/string_ids.h"

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
  OBJECTTYPES type;
  unsigned platforms;
  Condition condition = kAlways;
  /// Where lists have a text of their own, its number.
  UINT text_id = 0;
};

constexpr Row kRows[] = {
    {OT_INDEX, kAll, kFullList},
    {OT_TABLE, kAll, kFullList},
    {OT_VIEW, kAll, kFullList},
    {OT_PROCEDURE, kAll},
    {OT_TRIGGER, kAll},
    {OT_CHECK_CONSTRAINT, kAll},
    {OT_FOREIGN_KEY, kAll},
    {OT_PRIMARY_KEY, kAll},
    {OT_UNIQUE_KEY, kAll},

    {OT_ALIAS, kBothServers},
    {OT_DATABASE, kBothServers},
    {OT_DEFAULT, kBothServers},
    {OT_EXTENDED_PROCEDURE, kBothServers},
    {OT_FUNCTION, kSqlServer, kFromVersion8},
    {OT_GROUP, kBothServers},
    {OT_LINKED_SERVER, kSqlServer, kFromVersion7},
    {OT_LOGIN, kBothServers},
    {OT_REMOTE_SERVER, kBothServers},
    {OT_RULE, kBothServers},
    {OT_SEGMENT, kBothServers},
    {OT_USER, kBothServers},
    {OT_USER_DATATYPE, kBothServers},
    {OT_USER_MESSAGE, kBothServers, kAlways, IDS_USER_MESSAGE},
    {OT_ROLE, kSybase},

    {OT_ALIAS, kNone},
    {OT_DEFAULT, kNone},
    {OT_EXTENDED_PROCEDURE, kNone},
    {OT_GROUP, kNone},
    {OT_LOGIN, kNone},
    {OT_RULE, kNone},
    {OT_SEGMENT, kNone},
    {OT_USER_DATATYPE, kNone},
    {OT_USER_MESSAGE, kNone, kAlways, IDS_USER_MESSAGE},
    {OT_USER, kNone},

    {OT_ANONYMOUS_BLOCK, kOracle | kNone},
    {OT_CLUSTER, kOracle | kNone},
    {OT_DATABASE_LINK, kOracle | kNone},
    {OT_DIRECTORY, kOracle | kNone},
    {OT_FUNCTION, kOracle | kNone},
    {OT_LIBRARY, kOracle | kNone},
    {OT_MATERIALIZED_VIEW, kOracle, kFromVersion81},
    {OT_MATERIALIZED_VIEW_LOG, kOracle, kFromVersion81},
    {OT_OUTLINES, kOracle},
    {OT_PACKAGE, kOracle | kNone, kAlways, IDS_PACKAGE_HEADER},
    {OT_PACKAGE_BODY, kOracle | kNone},
    {OT_PROFILE, kOracle | kNone},
    {OT_REDO_LOG_GROUP, kOracle | kNone, kNotLumenSql},
    {OT_ROLE, kOracle | kNone},
    {OT_ROLLBACK_SEGMENT, kOracle | kNone},
    {OT_SNAPSHOT, kOracle, kBelowVersion81},
    {OT_SNAPSHOT_LOG, kOracle, kBelowVersion81},
    {OT_SNAPSHOT, kNone},
    {OT_SNAPSHOT_LOG, kNone},
    {OT_TABLESPACE, kOracle | kNone},
    {OT_TYPE, kOracle | kNone},
    {OT_TYPE_BODY, kOracle | kNone},
    {OT_USER, kOracle},
    {OT_PACKAGE, kNone},
    {OT_SEQUENCE, kOracle | kNone, kFullList},
    {OT_SYNONYM, kOracle | kNone, kFullList},

    {OT_FUNCTION, kBothDb2},
    {OT_USER_DATATYPE, kBothDb2},
    {OT_ALIAS, kBothDb2},
    {OT_PACKAGE, kDb2},
    {OT_USER, kDb2},
    {OT_GROUP, kDb2},
    {OT_BUFFER_POOL, kDb2},
    {OT_NODEGROUP, kDb2},
    {OT_TABLESPACE, kDb2},
    {OT_TYPE, kDb2},
    {OT_SEQUENCE, kDb2, kFullList},
    {OT_DATABASE, kDb2Os390},
    {OT_NODEGROUP, kDb2Os390},
    {OT_TABLESPACE, kDb2Os390},
    {OT_SYNONYM, kDb2Os390},
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
  entries.reserve(std::size(kRows));
  for (const Row& row : kRows) {
    // A number that is no platform has what all have.
    const bool is_for = row.platforms == kAll || (row.platforms & platform) != 0;
    if (!is_for || !Holds(row.condition, query)) continue;
    const UINT own = row.text_id;
    entries.push_back({row.type, own != 0 ? own : GetObjectTypeTextId(row.type, query.platform)});
  }
  return entries;
}

}  // namespace dq
