#include "apps/workbench/layer/gtk_formats.h"

#include <algorithm>

#include "apps/workbench/layer/text.h"

namespace workbench {
namespace {

/// What other programs call the files' format, and how those of the family's own begin.
constexpr const char* kFilesTarget = "text/uri-list";
constexpr std::string_view kOwnTarget = "application/x-velmora-format;name=";

/// Targets of a text, the best first.
constexpr const char* kTextTargets[] = {
    "UTF8_STRING", "text/plain;charset=utf-8", "COMPOUND_TEXT", "TEXT", "STRING", "text/plain"};

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

/// Takes over the addresses.
std::optional<std::string> FilesOf(gchar** uris) {
  std::vector<std::string> paths;
  for (gchar** uri = uris; uri != nullptr && *uri != nullptr; ++uri) {
    gchar* const path = g_filename_from_uri(*uri, nullptr, nullptr);
    if (path != nullptr) paths.emplace_back(path);
    g_free(path);
  }
  g_strfreev(uris);
  if (paths.empty()) return std::nullopt;
  return dq::platform::FileListData(paths);
}

/// Takes over the text.
std::optional<std::string> TextOf(gchar* text) {
  if (text == nullptr) return std::nullopt;
  std::string bytes = ToLibraryLines(wxString::FromUTF8(WithoutReturns(text)));
  g_free(text);
  return bytes;
}

}  // namespace

GdkAtom TargetOf(const std::string& name) {
  return gdk_atom_intern((std::string(kOwnTarget) + name).c_str(), FALSE);
}

TargetList TargetsOf(const std::vector<DataPiece>& pieces) {
  TargetList list(gtk_target_list_new(nullptr, 0));
  for (guint at = 0; at < pieces.size(); ++at) {
    const DataPiece& piece = pieces[at];
    if (piece.format == dq::CLIPBOARD_TEXT) {
      gtk_target_list_add_text_targets(list.get(), at);
    } else {
      GdkAtom const target = piece.format == dq::CLIPBOARD_FILES
                                 ? gdk_atom_intern(kFilesTarget, FALSE)
                                 : TargetOf(piece.name);
      gtk_target_list_add(list.get(), target, 0, at);
    }
  }
  return list;
}

void PutPiece(GtkSelectionData& selection, const DataPiece& piece) {
  if (piece.format == dq::CLIPBOARD_TEXT) {
    const wxString native = ToNative(WithoutReturns(piece.bytes));
    // It lies in the string.
    const wxScopedCharBuffer text = native.utf8_str();
    gtk_selection_data_set_text(&selection, text.data(), static_cast<gint>(text.length()));
    return;
  }
  const std::string bytes =
      piece.format == dq::CLIPBOARD_FILES ? UriList(piece.bytes) : piece.bytes;
  constexpr gint kBitsOfByte = 8;
  gtk_selection_data_set(&selection, gtk_selection_data_get_target(&selection), kBitsOfByte,
                         reinterpret_cast<const guchar*>(bytes.data()),
                         static_cast<gint>(bytes.size()));
}

std::vector<OfferedFormat> FormatsOf(
    const std::vector<GdkAtom>& targets,
    const std::function<dq::UINT(std::string_view name)>& number_of) {
  std::vector<OfferedFormat> formats;
  const auto add = [&formats](dq::UINT format, GdkAtom target) {
    const bool is_new = std::ranges::find(formats, format, &OfferedFormat::format) == formats.end();
    if (format != 0 && is_new) formats.push_back({format, target});
  };
  for (GdkAtom const target : targets) {
    gchar* const text = gdk_atom_name(target);
    const std::string_view name = text;
    if (name == kFilesTarget) add(dq::CLIPBOARD_FILES, target);
    if (name.starts_with(kOwnTarget)) add(number_of(name.substr(kOwnTarget.size())), target);
    g_free(text);
  }
  for (const char* name : kTextTargets) {
    GdkAtom const target = gdk_atom_intern(name, FALSE);
    if (std::ranges::find(targets, target) != targets.end()) add(dq::CLIPBOARD_TEXT, target);
  }
  return formats;
}

std::optional<std::string> BytesOf(const GtkSelectionData& selection, dq::UINT format) {
  gint size = 0;
  const guchar* const bytes = gtk_selection_data_get_data_with_length(&selection, &size);
  if (size < 0) return std::nullopt;
  if (format == dq::CLIPBOARD_FILES) return FilesOf(gtk_selection_data_get_uris(&selection));
  if (format == dq::CLIPBOARD_TEXT) {
    return TextOf(reinterpret_cast<gchar*>(gtk_selection_data_get_text(&selection)));
  }
  return std::string(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
}

}  // namespace workbench
