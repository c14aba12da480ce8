// Which kinds of objects a platform's servers have, as lists offer them.

#pragma once

#include <vector>

#include "dqlib/dbvocab/object_types.h"

namespace dq {

/// One entry of a list.
struct ObjectTypeEntry {
  OBJECTTYPES type;
  /// The number of the string that the list shows: that of `GetObjectTypeTextId` on the platform
  /// but for packages where their bodies stand beside them, and for user messages.
  UINT text_id;
};

/// What a list is for.
struct ObjectTypeQuery {
  DBMS platform = DBMS_NONE;
  /// The server's, as a number: 8.17 for an 8.1.7.
  double version = 0;
  /// Without those that a tool handles by other means: indexes, tables, views, sequences, synonyms.
  bool reduced = false;
  /// For the application that has no part for redo log groups.
  bool lumen_sql = false;
};

/// The types in the order in which lists show them.
std::vector<ObjectTypeEntry> ListObjectTypes(const ObjectTypeQuery& query);

}  // namespace dq
