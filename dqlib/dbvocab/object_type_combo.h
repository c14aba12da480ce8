// A combo box of the kinds of objects that a platform has.

#pragma once

#include "dqlib/dbvocab/object_types.h"
#include "dqlib/toolkit/combo_box.h"

namespace dq {

class CDataExchange;

/// A combo box whose rows have the types as their item data.
class CDQObjectTypeCombo : public CDQAutoDropWidthCombo {
  DECLARE_DYNAMIC(CDQObjectTypeCombo)
  CDQObjectTypeCombo() : CDQAutoDropWidthCombo(ComboStyle{.list_only = true}) {}

  /// Adds the platform's types and chooses one, by the operations below. True.
  bool LoadObjectTypes(DBMS platform, double version, OBJECTTYPES selected, bool reducedList);

  /// Adds the types that `ListObjectTypes` gives for the application, behind the rows that are
  /// there: callers that want their own first put them there.
  virtual void LoadDBMSSpecificTypes(DBMS platform, double version, OBJECTTYPES selected,
                                     bool reducedList);
  /// Chooses the row with the type's text on the platform; `OT_NONE` chooses nothing. If there is
  /// no such row the person is told, and nothing changes. As rows are found by their texts, that
  /// happens to packages of Oracle and to user messages too, which lists call by other ones. The
  /// texts are those that are shown, so no two kinds of a platform may be translated alike.
  virtual void SetCurrentSelection(OBJECTTYPES type, DBMS platform);
  /// The row's index, or -1.
  virtual int AddObjectType(const char* text, OBJECTTYPES type);
};

/// Exchanges the type of a combo box's chosen row: `OT_NONE` when there is none. To the control,
/// the row that has the type's text without a platform is chosen, whole and case ignored, or none.
void DDX_ObjectType(CDataExchange* exchange, int controlId, OBJECTTYPES& type);

}  // namespace dq
