// The library's pictures; their form is told in `framework/base/vector_picture.h`. What is seen
// through has the colour `kPictureMask` in their bitmaps.

#pragma once

#include <span>
#include <string_view>

#include "dqlib/platform/types.h"

namespace dq {

/// Ids of the library's bitmaps.
enum PictureId : WORD {
  /// Two check marks side by side, the second one for a selected item.
  IDB_CHECK_MARKS = 2700,
  /// The tree of the network: all of it, a domain or group, a machine.
  IDB_NETWORK = 2704,
  IDB_NETWORK_GROUP = 2705,
  IDB_MACHINE = 2706,
  /// Check boxes of trees.
  IDB_CHECK_CLEAR = 2707,
  IDB_CHECK_MIXED = 2708,
  IDB_CHECK_SET = 2709,
  /// Rows of trees: what has no rows below it, and folders.
  IDB_LEAF = 2710,
  IDB_FOLDER_CLOSED = 2711,
  IDB_FOLDER_OPEN = 2712,
  /// Messages: the number of each is its `OutputMessageType` behind the first one's.
  IDB_PROGRAM_INFO = 2720,
  IDB_PROGRAM_WARNING = 2721,
  IDB_PROGRAM_ERROR = 2722,
  IDB_DBMS_INFO = 2723,
  IDB_DBMS_WARNING = 2724,
  IDB_DBMS_ERROR = 2725,
  IDB_TASK_START = 2726,
  IDB_TASK_END = 2727,
};

/// A picture as data of a resource.
struct PictureRow {
  WORD id;
  std::string_view shapes;
};

/// The library's pictures, sorted by id.
std::span<const PictureRow> PictureTable();

}  // namespace dq
