// The toolkit's windows in which a person chooses files or a folder.

#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "dqlib/platform/choosers.h"

typedef struct _GtkWidget GtkWidget;
class wxTopLevelWindow;

namespace workbench {

class FileWindow {
 public:
  /// For files, by what the question proposes; paths are from the root. `left` is told from within
  /// the toolkit when the person accepts what is chosen, or leaves the window; it stays until it
  /// ends. Lies over `owner`, which may be null.
  FileWindow(wxTopLevelWindow* owner, std::string_view caption,
             const dq::platform::FileQuestion& question, std::function<void(bool accepts)> left);
  /// For a folder.
  FileWindow(wxTopLevelWindow* owner, std::string_view caption, const std::string& start,
             std::function<void(bool accepts)> left);
  FileWindow(const FileWindow&) = delete;
  FileWindow& operator=(const FileWindow&) = delete;
  ~FileWindow();

  /// What is chosen.
  std::vector<std::string> Paths() const;
  /// The kind of files, from 1.
  int Kind() const;
  /// Whether the person can use it, and then does; at first they can.
  void Enable(bool enable);

 private:
  static void OnResponse(GtkWidget* widget, int response, void* self);
  void Make(wxTopLevelWindow* owner, std::string_view caption, int action, const char* verb);
  void Propose(const dq::platform::FileQuestion& question);

  GtkWidget* window_ = nullptr;
  std::function<void(bool accepts)> left_;
};

}  // namespace workbench
