#include "apps/workbench/layer/tab_mirror.h"

#include <algorithm>
#include <wx/notebook.h>
#include <wx/stattext.h>

#include "apps/workbench/layer/gtk_window.h"
#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/text.h"
#include "apps/workbench/layer/trace.h"
#include "dqlib/framework/controls/sft_tabs.h"
#include "dqlib/platform/dialog_view.h"

namespace workbench {

using dq::CWnd;
using dq::WindowChange;

namespace {

/// Adds where the tabs lie, which `rect_of` tells by their index.
template <typename RectOf>
void AddTabs(TraceLine& line, int count, RectOf rect_of) {
  std::string tabs = "[";
  for (int at = 0; at < count; ++at) {
    const wxRect rect = rect_of(at);
    if (at > 0) tabs += ',';
    tabs += '[' + std::to_string(rect.x) + ',' + std::to_string(rect.y) + ',' +
            std::to_string(rect.width) + ',' + std::to_string(rect.height) + ']';
  }
  line.AddRaw("tabs", tabs + ']');
}

}  // namespace

wxNotebook& TabMirror::book() const { return static_cast<wxNotebook&>(*native()); }

bool TabMirror::Serves(const CWnd& window) const {
  const auto* const strip = dynamic_cast<const dq::CSftTabs*>(&window);
  if (strip == nullptr) return true;
  return !strip->HasOwnLook() && window.GetPlace().Height() <= window.GetPlace().Width();
}

wxWindow* TabMirror::DoMake(wxWindow* parent) {
  auto* const native = new wxNotebook(parent, wxID_ANY);
  // Which page comes up, the library decides.
  native->Bind(wxEVT_NOTEBOOK_PAGE_CHANGING, [this](wxBookCtrlEvent& event) {
    if (layer().IsShowing()) return;
    event.Veto();
    Post([this, wanted = event.GetSelection()](CWnd&) { Choose(wanted); });
  });
  return native;
}

std::vector<wxString> TabMirror::Labels() const {
  dq::platform::DialogControl control;
  window().Describe(control);
  std::vector<wxString> labels;
  for (const std::string& item : control.items) labels.push_back(ToNative(item));
  return labels;
}

int TabMirror::Current() const {
  if (const auto* const strip = As<dq::CSftTabs>()) return strip->GetCurSel();
  dq::platform::DialogControl control;
  window().Describe(control);
  const auto found = std::ranges::find(control.items, control.value);
  return found == control.items.end() ? -1 : static_cast<int>(found - control.items.begin());
}

void TabMirror::ShowContent(const Changes&) {
  const std::vector<wxString> labels = Labels();
  while (book().GetPageCount() > labels.size()) book().DeletePage(book().GetPageCount() - 1);
  for (std::size_t at = 0; at < labels.size(); ++at) {
    if (at == book().GetPageCount()) {
      // A label, for it has no window of its own that could come to lie over the real page.
      book().AddPage(new wxStaticText(&book(), wxID_ANY, wxString()), labels[at]);
    } else if (book().GetPageText(at) != labels[at]) {
      book().SetPageText(at, labels[at]);
    }
    if (const auto* const strip = As<dq::CSftTabs>()) {
      EnableTab(book(), static_cast<int>(at), strip->IsTabEnabled(static_cast<int>(at)));
    }
  }
  const int current = Current();
  if (current >= 0 && current != book().GetSelection()) {
    book().ChangeSelection(static_cast<std::size_t>(current));
  }
}

void TabMirror::Choose(int index) {
  layer().Mark(window(), WindowChange::kSelection);
  if (auto* const strip = As<dq::CSftTabs>()) {
    strip->Choose(index);
  } else {
    // By its number from 1, for labels may be alike.
    window().Enter(std::to_string(index + 1));
  }
}

bool TabMirror::TakeKey(const KeyStroke& stroke) {
  const bool is_left = stroke.key == dq::VK_LEFT || stroke.key == dq::VK_UP;
  const bool is_right = stroke.key == dq::VK_RIGHT || stroke.key == dq::VK_DOWN;
  if (!is_left && !is_right) return false;
  const int wanted = Current() + (is_right ? 1 : -1);
  if (wanted >= 0 && wanted < static_cast<int>(book().GetPageCount())) Choose(wanted);
  return true;
}

void TabMirror::Trace(TraceLine& line) const {
  AddTabs(line, static_cast<int>(book().GetPageCount()),
          [this](int at) { return TabRect(book(), at); });
}

bool DrawsItsTabs(const CWnd& window) {
  const auto* const strip = dynamic_cast<const dq::CSftTabs*>(&window);
  return strip != nullptr && strip->HasOwnLook();
}

void DrawnTabsMirror::Trace(TraceLine& line) const {
  PlainMirror::Trace(line);
  const auto* const strip = As<dq::CSftTabs>();
  if (strip == nullptr) return;
  AddTabs(line, strip->GetTabCount(),
          [&](int at) { return scale().ToNative(strip->GetTabRect(at)); });
}

}  // namespace workbench
