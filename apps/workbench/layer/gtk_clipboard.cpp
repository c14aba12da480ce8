#include "apps/workbench/layer/gtk_clipboard.h"

#include <algorithm>
#include <gtk/gtk.h>
#include <memory>
#include <utility>

namespace workbench {
namespace {

/// What this program offers. It lives as long as the process: others may ask at its very end.
std::vector<DataPiece>& Offered() {
  static auto& offered = *new std::vector<DataPiece>;
  return offered;
}

bool g_is_owner = false;

GtkClipboard* TheClipboard() { return gtk_clipboard_get(GDK_SELECTION_CLIPBOARD); }

void OnAsked(GtkClipboard*, GtkSelectionData* selection, guint index, gpointer) {
  if (index < Offered().size()) PutPiece(*selection, Offered()[index]);
}

void OnOvertaken(GtkClipboard*, gpointer) {
  g_is_owner = false;
  Offered().clear();
}

std::vector<GdkAtom> OfferedTargets() {
  GdkAtom* targets = nullptr;
  gint count = 0;
  if (gtk_clipboard_wait_for_targets(TheClipboard(), &targets, &count) == 0) return {};
  std::vector<GdkAtom> offered(targets, targets + count);
  g_free(targets);
  return offered;
}

/// The target to ask for a format; null if it isn't offered.
GdkAtom TargetFor(dq::UINT format, const std::string& name) {
  if (!name.empty()) return TargetOf(name);
  for (const OfferedFormat& offered :
       FormatsOf(OfferedTargets(), [](std::string_view) { return 0u; })) {
    if (offered.format == format) return offered.target;
  }
  return nullptr;
}

}  // namespace

void OfferOnClipboard(std::vector<DataPiece> pieces) {
  const TargetTable targets(pieces);
  // The former offer ends first.
  gtk_clipboard_clear(TheClipboard());
  if (targets.count() == 0 ||
      gtk_clipboard_set_with_data(TheClipboard(), targets.entries(), targets.count(), OnAsked,
                                  OnOvertaken, nullptr) == 0) {
    return;
  }
  Offered() = std::move(pieces);
  g_is_owner = true;
  // For those who ask when the process is gone.
  gtk_clipboard_set_can_store(TheClipboard(), nullptr, 0);
}

std::optional<std::string> TakeFromClipboard(dq::UINT format, const std::string& name) {
  if (g_is_owner) {
    const auto own = std::ranges::find(Offered(), format, &DataPiece::format);
    return own == Offered().end() ? std::nullopt : std::optional(own->bytes);
  }
  GdkAtom const target = TargetFor(format, name);
  GtkSelectionData* const data =
      target == nullptr ? nullptr : gtk_clipboard_wait_for_contents(TheClipboard(), target);
  if (data == nullptr) return std::nullopt;
  std::optional<std::string> taken = BytesOf(*data, format);
  gtk_selection_data_free(data);
  return taken;
}

std::vector<dq::UINT> ClipboardFormats(
    const std::function<dq::UINT(std::string_view name)>& number_of) {
  std::vector<dq::UINT> formats;
  if (g_is_owner) {
    for (const DataPiece& piece : Offered()) formats.push_back(piece.format);
    return formats;
  }
  for (const OfferedFormat& offered : FormatsOf(OfferedTargets(), number_of)) {
    formats.push_back(offered.format);
  }
  return formats;
}

}  // namespace workbench
