// What a tree shows, apart from how it is shown: nodes with a text and pictures.

#pragma once

#include "dqlib/framework/base/c_string.h"
#include "dqlib/framework/base/object.h"
#include "dqlib/toolkit/composite.h"

namespace dq {

/// A node of the data behind a tree. Hosts derive from it; a display item (`CDQTreeItemBase`) takes
/// what it shows from it.
class CDQTreeItemModel : public CObject, public CDQComposite_T<CDQTreeItemModel*> {
  DECLARE_DYNAMIC(CDQTreeItemModel)

  /// The base has no text, and the pictures 0 of the tree's image list.
  virtual CString GetItemText() const { return {}; }
  virtual int GetImage() const { return 0; }
  virtual int GetSelectedImage() const { return 0; }

  /// Writes a line for the node, with as many tabs before it as `level` says, and then for all
  /// below it, each a level deeper, as remarks for debugging. Linear, at any depth.
  virtual void TraceDump(long level);

 protected:
  /// The node's line in a dump, without indentation and line end: its text.
  virtual CString GetTraceText() const { return GetItemText(); }

 private:
  /// The level of the dump under way.
  long m_nTraceLevel = 0;
};

}  // namespace dq
