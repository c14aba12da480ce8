// Items of menus that their owners draw.

#pragma once

#include <memory>
#include <vector>
#include <wx/bitmap.h>

#include "apps/workbench/layer/scale.h"
#include "dqlib/framework/windows/menu.h"

typedef struct _GtkWidget GtkWidget;
typedef struct _cairo cairo_t;

namespace dq {
class CWnd;
}

namespace workbench {

/// Which item of a menu is drawn, and how it stands.
struct DrawnItemFacts {
  dq::HMENU menu = nullptr;
  int position = 0;
  dq::UINT id = 0;
  /// A sum of `OwnerDrawState` bits.
  dq::UINT state = 0;
  /// The owner's.
  const void* data = nullptr;
};

/// One item, in which the toolkit shows pictures that the owner has drawn. They are drawn outside
/// of the toolkit: `wants_picture` is called from within it when one is needed that isn't there,
/// and is to see that `Paint` is called. Until then the one that was there before is shown.
class DrawnItem {
 public:
  /// `native` is the toolkit's item, of which all but its room is replaced.
  DrawnItem(GtkWidget* native, const Scale& scale, std::function<void()> wants_picture);
  DrawnItem(const DrawnItem&) = delete;
  DrawnItem& operator=(const DrawnItem&) = delete;
  ~DrawnItem();

  /// As it stands now; the pictures are out of date.
  void SetFacts(const DrawnItemFacts& facts);
  void Outdate();

  // As acts on the owner, which may end everything but this object: nothing is done for an item
  // that isn't there any more.

  /// Asks how large it is.
  void Measure(dq::CWnd& owner);
  /// Has drawn what is wanted, at least the item as it stands when nobody looks at it.
  void Paint(dq::CWnd& owner);

 private:
  /// At rest, and looked at.
  struct Picture {
    wxBitmap bitmap;
    /// For which it was drawn.
    wxSize room;
    bool is_wanted = false;
    bool is_current = false;
  };

  static int OnDraw(GtkWidget* area, cairo_t* paper, void* self);
  void Draw(cairo_t* paper);
  bool IsThere() const;
  void PaintOne(dq::CWnd& owner, Picture& picture, dq::UINT state);
  wxSize Room() const;

  GtkWidget* native_;
  GtkWidget* area_;
  const Scale& scale_;
  const std::function<void()> wants_picture_;
  DrawnItemFacts facts_;
  wxSize size_;
  Picture pictures_[2];
};

}  // namespace workbench
