#include "apps/workbench/layer/desktop_services.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

#include "apps/workbench/layer/gtk_chooser.h"
#include "apps/workbench/layer/gtk_clipboard.h"
#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/message_box.h"
#include "apps/workbench/layer/top_level_mirror.h"
#include "apps/workbench/layer/view_dialog.h"
#include "dqlib/framework/base/trace.h"
#include "dqlib/framework/windows/win_thread.h"
#include "dqlib/platform/paths.h"

namespace workbench {
namespace {

using dq::platform::ChosenFiles;
using dq::platform::DialogView;
using dq::platform::FileQuestion;

constexpr dq::UINT kAsk = dq::WM_APP;

/// Keeps the person from the active window, and from those that own it, for its lifetime, as a
/// dialog over them does.
class OwnerPause {
 public:
  OwnerPause() {
    for (dq::CWnd* each = dq::CWnd::GetActiveWindow(); each != nullptr; each = each->GetOwner()) {
      if (!each->IsWindowEnabled()) continue;
      paused_.push_back(each->GetSafeHwnd());
      each->EnableWindow(false);
    }
  }
  OwnerPause(const OwnerPause&) = delete;
  OwnerPause& operator=(const OwnerPause&) = delete;
  ~OwnerPause() {
    for (const dq::HWND each : paused_) {
      if (dq::CWnd* const window = dq::CWnd::FromHandle(each)) window->EnableWindow(true);
    }
    dq::CWnd* const first = paused_.empty() ? nullptr : dq::CWnd::FromHandle(paused_.front());
    if (first != nullptr) first->SetActiveWindow();
  }

  dq::CWnd* first() const {
    return paused_.empty() ? nullptr : dq::CWnd::FromHandle(paused_.front());
  }

 private:
  std::vector<dq::HWND> paused_;
};

/// Runs the library's choosers of files and of a folder, which know what can be chosen, in the
/// toolkit's window for that.
class FilePrompts : public dq::platform::Prompts {
 public:
  using Opener = std::function<std::unique_ptr<FileWindow>(
      wxTopLevelWindow* owner, std::string_view caption, std::function<void(bool)> left)>;

  FilePrompts(Layer& layer, dq::platform::Prompts& prompts, Opener open)
      : layer_(layer), prompts_(prompts), open_(std::move(open)) {}

  int Show(std::string_view caption, std::string_view text, dq::UINT type,
           dq::UINT help_id) override {
    window_->Enable(false);
    const int answer = prompts_.Show(caption, text, type, help_id);
    if (layer_.RunsDialogs()) window_->Enable(true);
    return answer;
  }

  void RunDialog(DialogView& view) override {
    const OwnerPause pause;
    const auto* const over = dynamic_cast<TopLevelMirror*>(layer_.Find(pause.first()));
    std::optional<bool> accepts;
    window_ = open_(over == nullptr ? nullptr : over->top_level(), view.Caption(),
                    [&accepts](bool accepted) { accepts = accepted; });
    while (view.IsOpen()) {
      accepts.reset();
      dq::PumpUntil([&] { return accepts.has_value() || !layer_.RunsDialogs(); });
      // The toolkit can't end its window any more.
      if (!layer_.RunsDialogs()) return static_cast<void>(window_.release());
      if (!accepts.value_or(false)) break;
      Take(view);
    }
    window_.reset();
  }

 private:
  void Take(DialogView& view) {
    std::string names;
    for (const std::string& path : window_->Paths()) names += (names.empty() ? "" : "\n") + path;
    view.Enter(dq::platform::CHOOSER_NAME, names);
    view.Enter(dq::platform::CHOOSER_FILE_KIND, std::to_string(window_->Kind()));
    view.Press(dq::BUTTON_OK);
  }

  Layer& layer_;
  dq::platform::Prompts& prompts_;
  Opener open_;
  std::unique_ptr<FileWindow> window_;
};

}  // namespace

/// Asks in windows. What another thread asks, the user-interface thread shows, while the other one
/// waits for the answer.
class DesktopServices::DesktopPrompts : public dq::platform::Prompts {
 public:
  explicit DesktopPrompts(Layer& layer) : layer_(layer) {
    RegisterIconClass();
    asker_.CreateWnd(dq::WindowCreation{.class_name = "Asker", .visible = false});
  }

  int Show(std::string_view caption, std::string_view text, dq::UINT type, dq::UINT) override {
    int answer = 0;
    Ask([&] { answer = MessageBox(layer_, caption, text, type).Ask(); });
    if (answer != 0) return answer;
    dq::AfxTrace(std::string(text));
    return dq::DefaultBoxButton(type);
  }

  void RunDialog(DialogView& view) override {
    Ask([&] { ViewDialog(view).DoModal(); });
  }

  std::optional<ChosenFiles> ChooseFile(const FileQuestion& question) override {
    std::optional<ChosenFiles> chosen;
    Ask([&] {
      FileQuestion from_root = question;
      from_root.folder = FromRoot(question.folder);
      const auto open = [&](auto* owner, auto caption, auto left) {
        return std::make_unique<FileWindow>(owner, caption, from_root, std::move(left));
      };
      FilePrompts prompts(layer_, *this, open);
      chosen = ChooseFileByDialog(prompts, from_root);
    });
    return chosen;
  }

  std::optional<std::string> ChooseFolder(std::string_view title, std::string_view start) override {
    std::optional<std::string> chosen;
    Ask([&] {
      const std::string from_root = FromRoot(start);
      const auto open = [&](auto* owner, auto caption, auto left) {
        return std::make_unique<FileWindow>(owner, caption, from_root, std::move(left));
      };
      FilePrompts prompts(layer_, *this, open);
      chosen = ChooseFolderByDialog(prompts, title, from_root);
    });
    return chosen;
  }

 private:
  /// A window of the user-interface thread's; it isn't drawn.
  struct Asker : dq::CWnd {
    dq::LRESULT DefWindowProc(dq::UINT message, dq::WPARAM wparam, dq::LPARAM lparam) override {
      if (message != kAsk) return CWnd::DefWindowProc(message, wparam, lparam);
      (*reinterpret_cast<const std::function<void()>*>(lparam))();
      return 0;
    }
  };

  static std::string FromRoot(std::string_view path) {
    return dq::platform::FullPath(path, dq::platform::Current().files->CurrentDirectory());
  }

  /// Runs it on the user-interface thread, unless there is nobody who could answer.
  void Ask(const std::function<void()>& ask) {
    const std::function<void()> guarded = [&] {
      if (layer_.RunsDialogs()) ask();
    };
    dq::SendToWindow(asker_.GetSafeHwnd(), kAsk, 0, reinterpret_cast<dq::LPARAM>(&guarded));
  }

  Layer& layer_;
  Asker asker_;
};

/// The desktop's clipboard.
class DesktopServices::DesktopClipboard : public dq::platform::Clipboard {
 public:
  explicit DesktopClipboard(Layer& layer) : layer_(layer) {}

  dq::platform::Error SetAll(std::span<const dq::platform::ClipboardData> pieces) override {
    if (!layer_.RunsDialogs()) return {dq::platform::ErrorKind::kBusy, 0};
    std::vector<DataPiece> copy;
    for (const auto& [format, bytes] : pieces) {
      const auto same = std::ranges::find(copy, format, &DataPiece::format);
      if (same == copy.end()) {
        copy.push_back({format, FormatName(format), std::string(bytes)});
      } else {
        same->bytes = bytes;
      }
    }
    OfferOnClipboard(std::move(copy));
    return {};
  }

  std::optional<std::string> Get(dq::UINT format) override {
    if (!layer_.RunsDialogs()) return std::nullopt;
    return TakeFromClipboard(format, FormatName(format));
  }

  std::vector<dq::UINT> Formats() override {
    if (!layer_.RunsDialogs()) return {};
    return ClipboardFormats([this](std::string_view name) { return RegisterFormat(name); });
  }

 private:
  Layer& layer_;
};

DesktopServices::DesktopServices(Layer& layer)
    : prompts_(std::make_unique<DesktopPrompts>(layer)),
      clipboard_(std::make_unique<DesktopClipboard>(layer)),
      colors_(layer) {
  dq::platform::Platform services = dq::platform::Current();
  services.prompts = prompts_.get();
  services.clipboard = clipboard_.get();
  services.color_scheme = &colors_;
  scope_ = std::make_unique<dq::platform::ScopedPlatform>(services);
}

DesktopServices::~DesktopServices() = default;

}  // namespace workbench
