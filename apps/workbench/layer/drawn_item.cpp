#include "apps/workbench/layer/drawn_item.h"

#include <algorithm>
#include <gtk/gtk.h>
#include <utility>

#include "apps/workbench/layer/native_dc.h"
#include "dqlib/framework/base/drawing.h"
#include "dqlib/framework/windows/owner_draw.h"
#include "dqlib/framework/windows/wnd.h"

namespace workbench {
namespace {

/// Rows have the height that their owner says.
void DropPadding(GtkWidget* item) {
  static GtkCssProvider* const style = [] {
    GtkCssProvider* const made = gtk_css_provider_new();
    gtk_css_provider_load_from_data(
        made,
        "menuitem, separator { padding: 1px 2px; margin: 0; min-height: 0; }"
        "separator { background: none; }",
        -1, nullptr);
    return made;
  }();
  gtk_style_context_add_provider(gtk_widget_get_style_context(item), GTK_STYLE_PROVIDER(style),
                                 GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

wxColour Ground() {
  const dq::COLORREF color = dq::GetSysColor(dq::COLOR_MENU);
  return wxColour(static_cast<unsigned long>(color));
}

}  // namespace

DrawnItem::DrawnItem(GtkWidget* native, const Scale& scale, std::function<void()> wants_picture)
    : native_(native),
      area_(gtk_drawing_area_new()),
      scale_(scale),
      wants_picture_(std::move(wants_picture)) {
  g_object_ref(native_);
  g_object_ref_sink(area_);
  // Presses are the item's.
  gtk_widget_set_has_window(area_, FALSE);
  if (GtkWidget* const former = gtk_bin_get_child(GTK_BIN(native_))) {
    gtk_container_remove(GTK_CONTAINER(native_), former);
  }
  gtk_container_add(GTK_CONTAINER(native_), area_);
  DropPadding(native_);
  g_signal_connect(area_, "draw", G_CALLBACK(OnDraw), this);
  gtk_widget_show(area_);
}

DrawnItem::~DrawnItem() {
  g_signal_handlers_disconnect_by_data(area_, this);
  g_object_unref(area_);
  g_object_unref(native_);
}

void DrawnItem::SetFacts(const DrawnItemFacts& facts) {
  facts_ = facts;
  Outdate();
}

void DrawnItem::Outdate() {
  for (Picture& picture : pictures_) picture.is_current = false;
}

bool DrawnItem::IsThere() const {
  const dq::CMenu* const menu = dq::CMenu::FromHandlePermanent(facts_.menu);
  const auto at = static_cast<dq::UINT>(facts_.position);
  return menu != nullptr && menu->GetItemData(at, dq::MF_BYPOSITION) == facts_.data;
}

void DrawnItem::Measure(dq::CWnd& owner) {
  if (!IsThere()) return;
  dq::MEASUREITEMSTRUCT item;
  item.itemID = facts_.id;
  item.itemData = reinterpret_cast<std::uintptr_t>(facts_.data);
  item.hMenu = facts_.menu;
  owner.SendMessage(dq::WM_MEASUREITEM, 0, reinterpret_cast<dq::LPARAM>(&item));
  // More than any screen has can't be wanted.
  constexpr dq::UINT kMost = 10'000;
  // Owners count on the room for a mark that menus add to what they say.
  constexpr dq::UINT kBehind = 13;
  const dq::CSize size{static_cast<dq::LONG>(std::min(item.itemWidth, kMost) + kBehind),
                       static_cast<dq::LONG>(std::min(item.itemHeight, kMost))};
  size_ = scale_.ToNative(size);
  gtk_widget_set_size_request(area_, size_.x, size_.y);
}

/// What there is to draw on: the row of the menu once the toolkit has laid it out.
wxSize DrawnItem::Room() const {
  const wxSize shown(gtk_widget_get_allocated_width(area_), gtk_widget_get_allocated_height(area_));
  return {std::max(size_.x, shown.x), std::max(size_.y, shown.y)};
}

void DrawnItem::Paint(dq::CWnd& owner) {
  const dq::HWND window = owner.GetSafeHwnd();
  for (const bool is_selected : {false, true}) {
    Picture& picture = pictures_[is_selected ? 1 : 0];
    if (picture.is_current || (is_selected && !picture.is_wanted)) continue;
    if (!IsThere() || dq::CWnd::FromHandle(window) != &owner) return;
    PaintOne(owner, picture, facts_.state | (is_selected ? dq::UINT{dq::ODS_SELECTED} : 0));
  }
  gtk_widget_queue_draw(area_);
}

void DrawnItem::PaintOne(dq::CWnd& owner, Picture& picture, dq::UINT state) {
  wxBitmap drawn;
  picture.room = Room();
  picture.is_current = true;
  picture.is_wanted = false;
  const dq::CSize area = scale_.ToLogical(picture.room);
  {
    NativeDC context(area, scale_, drawn, Ground());
    dq::DRAWITEMSTRUCT item;
    item.itemID = facts_.id;
    item.itemState = state;
    item.hMenu = facts_.menu;
    item.pDC = &context;
    item.rcItem = {0, 0, area.cx, area.cy};
    item.itemData = reinterpret_cast<std::uintptr_t>(facts_.data);
    owner.SendMessage(dq::WM_DRAWITEM, 0, reinterpret_cast<dq::LPARAM>(&item));
  }
  picture.bitmap = drawn;
}

int DrawnItem::OnDraw(GtkWidget*, cairo_t* paper, void* self) {
  static_cast<DrawnItem*>(self)->Draw(paper);
  return FALSE;
}

void DrawnItem::Draw(cairo_t* paper) {
  const bool is_selected = (gtk_widget_get_state_flags(native_) & GTK_STATE_FLAG_PRELIGHT) != 0;
  Picture& wanted = pictures_[is_selected ? 1 : 0];
  if (wanted.room != Room()) wanted.is_current = false;
  if (!wanted.is_current && !std::exchange(wanted.is_wanted, true)) wants_picture_();
  const Picture& shown = wanted.bitmap.IsOk() ? wanted : pictures_[is_selected ? 0 : 1];
  if (!shown.bitmap.IsOk()) return;
  gdk_cairo_set_source_pixbuf(paper, shown.bitmap.GetPixbuf(), 0, 0);
  cairo_paint(paper);
}

}  // namespace workbench
