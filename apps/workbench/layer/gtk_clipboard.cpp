#include "apps/workbench/layer/gtk_clipboard.h"

#include <algorithm>
#include <gtk/gtk.h>
#include <memory>
#include <utility>

#include "apps/workbench/layer/text.h"

namespace workbench {
namespace {

/// What other programs call the files' format, and how those of the family's own begin.
constexpr const char* kFilesTarget = "text/uri-list";
constexpr std::string_view kOwnTarget = "application/x-velmora-format;name=";

/// What this program offers. It lives as long as the process: others may ask at its very end.
std::vector<ClipboardPiece>& Offered() {
  static auto& offered = *new std::vector<ClipboardPiece>;
  return offered;
}

bool g_is_owner = false;

GtkClipboard* TheClipboard() { return gtk_clipboard_get(GDK_SELECTION_CLIPBOARD); }

std::string WithoutReturns(std::string_view text) {
  std::string lines;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (!text.substr(at).starts_with("\r\n")) lines += text[at];
  }
  return lines;
}

std::string UriList(const std::string& files) {
  std::string list;
  for (const std::string& path : dq::platform::ReadFileList(files)) {
    gchar* const uri = g_filename_to_uri(path.c_str(), nullptr, nullptr);
    if (uri != nullptr) list.append(uri).append("\r\n");
    g_free(uri);
  }
  return list;
}

std::string FilesOf(const gchar* const* uris) {
  std::vector<std::string> paths;
  for (; uris != nullptr && *uris != nullptr; ++uris) {
    gchar* const path = g_filename_from_uri(*uris, nullptr, nullptr);
    if (path != nullptr) paths.emplace_back(path);
    g_free(path);
  }
  return paths.empty() ? std::string() : dq::platform::FileListData(paths);
}

/// The target of a format that has a name.
std::string TargetOf(const std::string& name) { return std::string(kOwnTarget) + name; }

void Put(GtkSelectionData& selection, const std::string& bytes) {
  constexpr gint kBitsOfByte = 8;
  gtk_selection_data_set(&selection, gtk_selection_data_get_target(&selection), kBitsOfByte,
                         reinterpret_cast<const guchar*>(bytes.data()),
                         static_cast<gint>(bytes.size()));
}

void OnAsked(GtkClipboard*, GtkSelectionData* selection, guint index, gpointer) {
  if (index >= Offered().size()) return;
  const ClipboardPiece& piece = Offered()[index];
  if (piece.format == dq::CLIPBOARD_TEXT) {
    const wxScopedCharBuffer text = ToNative(WithoutReturns(piece.bytes)).utf8_str();
    gtk_selection_data_set_text(selection, text.data(), static_cast<gint>(text.length()));
  } else {
    Put(*selection, piece.format == dq::CLIPBOARD_FILES ? UriList(piece.bytes) : piece.bytes);
  }
}

void OnOvertaken(GtkClipboard*, gpointer) {
  g_is_owner = false;
  Offered().clear();
}

struct TargetsDeleter {
  void operator()(GtkTargetList* list) const { gtk_target_list_unref(list); }
};

/// Selection data that somebody else has given; null if there are none.
std::optional<std::string> Ask(const char* target) {
  GtkSelectionData* const data =
      gtk_clipboard_wait_for_contents(TheClipboard(), gdk_atom_intern(target, FALSE));
  if (data == nullptr) return std::nullopt;
  gint size = 0;
  const guchar* const bytes = gtk_selection_data_get_data_with_length(data, &size);
  std::optional<std::string> taken;
  if (size >= 0)
    taken = std::string(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
  gtk_selection_data_free(data);
  return taken;
}

}  // namespace

void OfferOnClipboard(std::vector<ClipboardPiece> pieces) {
  const std::unique_ptr<GtkTargetList, TargetsDeleter> list(gtk_target_list_new(nullptr, 0));
  for (guint at = 0; at < pieces.size(); ++at) {
    const ClipboardPiece& piece = pieces[at];
    if (piece.format == dq::CLIPBOARD_TEXT) {
      gtk_target_list_add_text_targets(list.get(), at);
    } else {
      const std::string target =
          piece.format == dq::CLIPBOARD_FILES ? kFilesTarget : TargetOf(piece.name);
      gtk_target_list_add(list.get(), gdk_atom_intern(target.c_str(), FALSE), 0, at);
    }
  }
  gint count = 0;
  GtkTargetEntry* const targets = gtk_target_table_new_from_list(list.get(), &count);
  // The former offer ends first.
  gtk_clipboard_clear(TheClipboard());
  if (count > 0 && gtk_clipboard_set_with_data(TheClipboard(), targets, static_cast<guint>(count),
                                               OnAsked, OnOvertaken, nullptr) != 0) {
    Offered() = std::move(pieces);
    g_is_owner = true;
    // For those who ask when the process is gone.
    gtk_clipboard_set_can_store(TheClipboard(), nullptr, 0);
  }
  if (targets != nullptr) gtk_target_table_free(targets, count);
}

std::optional<std::string> TakeFromClipboard(dq::UINT format, const std::string& name) {
  if (g_is_owner) {
    const auto own = std::ranges::find(Offered(), format, &ClipboardPiece::format);
    return own == Offered().end() ? std::nullopt : std::optional(own->bytes);
  }
  if (format == dq::CLIPBOARD_TEXT) {
    gchar* const text = gtk_clipboard_wait_for_text(TheClipboard());
    if (text == nullptr) return std::nullopt;
    std::string bytes = ToLibraryLines(wxString::FromUTF8(WithoutReturns(text)));
    g_free(text);
    return bytes;
  }
  if (format == dq::CLIPBOARD_FILES) {
    gchar** const uris = gtk_clipboard_wait_for_uris(TheClipboard());
    std::string files = FilesOf(uris);
    g_strfreev(uris);
    return files.empty() ? std::nullopt : std::optional(std::move(files));
  }
  return name.empty() ? std::nullopt : Ask(TargetOf(name).c_str());
}

std::vector<dq::UINT> ClipboardFormats(
    const std::function<dq::UINT(std::string_view name)>& number_of) {
  std::vector<dq::UINT> formats;
  if (g_is_owner) {
    for (const ClipboardPiece& piece : Offered()) formats.push_back(piece.format);
    return formats;
  }
  const auto add = [&formats](dq::UINT format) {
    if (std::ranges::find(formats, format) == formats.end()) formats.push_back(format);
  };
  GdkAtom* targets = nullptr;
  gint count = 0;
  if (gtk_clipboard_wait_for_targets(TheClipboard(), &targets, &count) == 0) return formats;
  for (gint at = 0; at < count; ++at) {
    gchar* const target = gdk_atom_name(targets[at]);
    const std::string_view name = target;
    if (name == kFilesTarget) add(dq::CLIPBOARD_FILES);
    if (name.starts_with(kOwnTarget)) add(number_of(name.substr(kOwnTarget.size())));
    g_free(target);
  }
  if (gtk_targets_include_text(targets, count) != 0) add(dq::CLIPBOARD_TEXT);
  g_free(targets);
  return formats;
}

}  // namespace workbench
