// What shows where something would come to lie while a person drags it.

#pragma once

#include <array>
#include <wx/gdicmn.h>

typedef struct _GtkWidget GtkWidget;

namespace workbench {

/// The edges of a rectangle of the screen, over all windows. The mouse doesn't notice them.
class Outline {
 public:
  Outline();
  Outline(const Outline&) = delete;
  Outline& operator=(const Outline&) = delete;
  ~Outline();

  void Show(const wxRect& place);

 private:
  std::array<GtkWidget*, 4> edges_;
};

}  // namespace workbench
