// What kinds of objects databases have, and what they are called.

#pragma once

#include "dqlib/dbvocab/dbms.h"
#include "dqlib/framework/base/c_string.h"

namespace dq {

/// A kind of database object, by the number that files and settings keep. Numbers from 1 to 88
/// without an enumerator have no text and no creation template; 8, 10, 13, 29, 47 and 53 among them
/// still have pictures or a rule of their own.
enum OBJECTTYPES : int {
  OT_NONE = -1,
  OT_ALIAS = 1,
  OT_CHECK_CONSTRAINT = 2,
  OT_CLUSTER = 3,
  OT_DATABASE = 7,
  OT_DATABASE_LINK = 9,
  OT_USER_DATATYPE = 11,
  OT_DEFAULT = 12,
  OT_FUNCTION = 14,
  OT_GROUP = 15,
  OT_INDEX = 16,
  OT_LOGIN = 18,
  OT_PACKAGE = 19,
  OT_PACKAGE_BODY = 20,
  OT_PROCEDURE = 21,
  OT_PROFILE = 22,
  OT_REMOTE_SERVER = 25,
  OT_ROLE = 26,
  OT_ROLLBACK_SEGMENT = 27,
  OT_RULE = 28,
  OT_SEGMENT = 30,
  OT_SEQUENCE = 31,
  OT_SNAPSHOT = 32,
  OT_SNAPSHOT_LOG = 33,
  OT_SYNONYM = 34,
  OT_TABLE = 35,
  OT_TABLESPACE = 36,
  OT_TRIGGER = 37,
  OT_USER = 38,
  OT_USER_MESSAGE = 39,
  OT_VIEW = 40,
  OT_BUFFER_POOL = 41,
  OT_NODEGROUP = 42,
  OT_TYPE = 43,
  OT_TYPE_BODY = 44,
  OT_LIBRARY = 45,
  OT_DIRECTORY = 46,
  OT_EXTENDED_PROCEDURE = 48,
  OT_ANONYMOUS_BLOCK = 49,
  OT_FOREIGN_KEY = 50,
  OT_PRIMARY_KEY = 51,
  OT_UNIQUE_KEY = 52,
  OT_LINKED_SERVER = 79,
  OT_MATERIALIZED_VIEW = 80,
  OT_MATERIALIZED_VIEW_LOG = 81,
  OT_OUTLINES = 87,
  OT_REDO_LOG_GROUP = 88,
};

/// What the type is called on the platform, to be shown; "Unknown" for a number without a text, and
/// for user messages, which have one only in the lists of types. A translation of the library
/// changes it, so what is kept or compared is `EnglishText` of the string's number.
CString GetObjectTypeText(OBJECTTYPES type, DBMS platform);

/// The number of the string that `GetObjectTypeText` shows; `IDS_UNKNOWN` for "Unknown".
UINT GetObjectTypeTextId(OBJECTTYPES type, DBMS platform);

/// What the platform is called, to be shown; "Unknown" for a number that is none. Both DB2
/// platforms have one text. Files and settings have words of their own for platforms, or numbers.
CString GetDBMSText(DBMS platform);

/// The path of the type's creation template on the platform, below the variable
/// "$$template_root$$"; "" if there is none.
CString GetCreationTemplatePath(DBMS platform, OBJECTTYPES type);

/// The text of the type's creation template on the platform, variables in it kept, up to its first
/// zero byte. "" if there is no template; "" too if its file can't be read, which is shown.
CString GetCreationTemplateText(DBMS platform, OBJECTTYPES type);

}  // namespace dq
