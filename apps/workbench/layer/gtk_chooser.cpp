#include "apps/workbench/layer/gtk_chooser.h"

#include <gtk/gtk.h>
#include <memory>
#include <utility>
#include <wx/toplevel.h>

#include "apps/workbench/layer/text.h"
#include "dqlib/platform/ascii.h"
#include "dqlib/platform/paths.h"

namespace workbench {
namespace {

using dq::platform::FileKind;

struct Free {
  void operator()(char* text) const { g_free(text); }
};
using Owned = std::unique_ptr<char, Free>;

std::string Utf8(std::string_view text) { return ToNative(text).utf8_string(); }

/// A pattern as the toolkit has them: letters count in either case, and names needn't have a dot
/// for all of them to be meant.
std::string NativePattern(std::string_view pattern) {
  if (pattern == "*.*") return "*";
  std::string native;
  for (const char each : pattern) {
    const char lower = dq::platform::AsciiLower(each);
    const char upper = dq::platform::AsciiUpper(each);
    native += lower == upper ? std::string(1, each) : std::string{'[', lower, upper, ']'};
  }
  return native;
}

GtkFileFilter* FilterOf(const FileKind& kind) {
  GtkFileFilter* const filter = gtk_file_filter_new();
  gtk_file_filter_set_name(filter, Utf8(kind.name).c_str());
  for (std::string_view left = kind.patterns; !left.empty();) {
    const std::size_t end = std::min(left.find(';'), left.size());
    if (end > 0) {
      gtk_file_filter_add_pattern(filter, NativePattern(left.substr(0, end)).c_str());
    }
    left.remove_prefix(std::min(end + 1, left.size()));
  }
  return filter;
}

constexpr const char* kKind = "workbench-kind";

}  // namespace

FileWindow::FileWindow(wxTopLevelWindow* owner, std::string_view caption,
                       const dq::platform::FileQuestion& question, std::function<void(bool)> left)
    : left_(std::move(left)) {
  Make(owner, caption, question.open ? GTK_FILE_CHOOSER_ACTION_OPEN : GTK_FILE_CHOOSER_ACTION_SAVE,
       question.open ? "_Open" : "_Save");
  Propose(question);
  gtk_widget_show(window_);
}

FileWindow::FileWindow(wxTopLevelWindow* owner, std::string_view caption, const std::string& start,
                       std::function<void(bool)> left)
    : left_(std::move(left)) {
  Make(owner, caption, GTK_FILE_CHOOSER_ACTION_SELECT_FOLDER, "_Select");
  gtk_file_chooser_set_current_folder(GTK_FILE_CHOOSER(window_), start.c_str());
  gtk_widget_show(window_);
}

FileWindow::~FileWindow() { gtk_widget_destroy(window_); }

void FileWindow::Make(wxTopLevelWindow* owner, std::string_view caption, int action,
                      const char* verb) {
  GtkWindow* const over = owner == nullptr ? nullptr : GTK_WINDOW(owner->m_widget);
  window_ = gtk_file_chooser_dialog_new(Utf8(caption).c_str(), over,
                                        static_cast<GtkFileChooserAction>(action), "_Cancel",
                                        GTK_RESPONSE_CANCEL, verb, GTK_RESPONSE_ACCEPT, nullptr);
  gtk_dialog_set_default_response(GTK_DIALOG(window_), GTK_RESPONSE_ACCEPT);
  g_signal_connect(window_, "response", G_CALLBACK(OnResponse), this);
  // It stays until it is ended from here.
  g_signal_connect(window_, "delete-event", G_CALLBACK(gtk_true), nullptr);
}

void FileWindow::Propose(const dq::platform::FileQuestion& question) {
  GtkFileChooser* const chooser = GTK_FILE_CHOOSER(window_);
  gtk_file_chooser_set_select_multiple(chooser, question.open && question.multiple ? TRUE : FALSE);
  int number = 0;
  for (const FileKind& kind : question.kinds) {
    GtkFileFilter* const filter = FilterOf(kind);
    g_object_set_data(G_OBJECT(filter), kKind, GINT_TO_POINTER(++number));
    gtk_file_chooser_add_filter(chooser, filter);
    if (number == question.kind) gtk_file_chooser_set_filter(chooser, filter);
  }
  gtk_file_chooser_set_current_folder(chooser, question.folder.c_str());
  if (question.name.empty()) return;
  const std::string path = dq::platform::FullPath(question.name, question.folder);
  const auto parts = dq::platform::SplitPath(path);
  gtk_file_chooser_set_current_folder(chooser, (parts.drive + parts.directory).c_str());
  if (question.open) {
    gtk_file_chooser_set_filename(chooser, path.c_str());
  } else {
    gtk_file_chooser_set_current_name(chooser, Utf8(parts.name + parts.extension).c_str());
  }
}

void FileWindow::OnResponse(GtkWidget*, int response, void* self) {
  static_cast<FileWindow*>(self)->left_(response == GTK_RESPONSE_ACCEPT);
}

std::vector<std::string> FileWindow::Paths() const {
  std::vector<std::string> paths;
  GSList* const list = gtk_file_chooser_get_filenames(GTK_FILE_CHOOSER(window_));
  for (const GSList* each = list; each != nullptr; each = each->next) {
    const Owned path(static_cast<char*>(each->data));
    if (path != nullptr) paths.emplace_back(path.get());
  }
  g_slist_free(list);
  return paths;
}

int FileWindow::Kind() const {
  GtkFileFilter* const filter = gtk_file_chooser_get_filter(GTK_FILE_CHOOSER(window_));
  return filter == nullptr ? 1 : GPOINTER_TO_INT(g_object_get_data(G_OBJECT(filter), kKind));
}

void FileWindow::Enable(bool enable) {
  gtk_widget_set_sensitive(window_, enable ? TRUE : FALSE);
  if (enable) gtk_window_present(GTK_WINDOW(window_));
}

}  // namespace workbench
