// A window with a tree of the library's.

#pragma once

#include <string>

#include "dqlib/dbvocab/object_types.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/toolkit/tree.h"

namespace workbench {

/// The objects of a made-up database, with columns to sort by and cells to edit by a double click.
class TreeFrame : public dq::CFrameWnd {
 public:
  /// Makes and shows it, in front of an owner. False if it can't be made.
  bool Open(dq::CWnd& owner);

 protected:
  dq::LRESULT DefWindowProc(dq::UINT message, dq::WPARAM wparam, dq::LPARAM lparam) override;

 private:
  void Fill();
  void Add(const std::string& name, int level, dq::OBJECTTYPES type, int rows);

  dq::CDQTree tree_;
};

}  // namespace workbench
