#include "apps/workbench/layer/desktop_services.h"

#include <algorithm>
#include <string>
#include <utility>

#include "apps/workbench/layer/gtk_clipboard.h"
#include "apps/workbench/layer/layer.h"
#include "apps/workbench/layer/message_box.h"
#include "dqlib/framework/base/trace.h"

namespace workbench {
namespace {

constexpr dq::UINT kAsk = dq::WM_APP;

}  // namespace

/// Asks in message boxes. What another thread asks, the user-interface thread shows, while the
/// other one waits for the answer.
class DesktopServices::DesktopPrompts : public dq::platform::Prompts {
 public:
  explicit DesktopPrompts(Layer& layer) : asker_(layer) {
    RegisterIconClass();
    asker_.CreateWnd(dq::WindowCreation{.class_name = "Asker", .visible = false});
  }

  int Show(std::string_view caption, std::string_view text, dq::UINT type, dq::UINT) override {
    const Question question{caption, text, type};
    const dq::LRESULT answer =
        dq::SendToWindow(asker_.GetSafeHwnd(), kAsk, 0, reinterpret_cast<dq::LPARAM>(&question));
    if (answer != 0) return static_cast<int>(answer);
    dq::AfxTrace(std::string(text));
    return dq::DefaultBoxButton(type);
  }

  /// The layer runs dialogs as long as there is a display; without one nobody answers.
  void RunDialog(dq::platform::DialogView&) override {}

 private:
  struct Question {
    std::string_view caption;
    std::string_view text;
    dq::UINT type;
  };

  /// A window of the user-interface thread's; it isn't drawn.
  class Asker : public dq::CWnd {
   public:
    explicit Asker(Layer& layer) : layer_(layer) {}

   protected:
    dq::LRESULT DefWindowProc(dq::UINT message, dq::WPARAM wparam, dq::LPARAM lparam) override {
      if (message != kAsk) return CWnd::DefWindowProc(message, wparam, lparam);
      if (!layer_.RunsDialogs()) return 0;
      const auto& question = *reinterpret_cast<const Question*>(lparam);
      return MessageBox(layer_, question.caption, question.text, question.type).Ask();
    }

   private:
    Layer& layer_;
  };

  Asker asker_;
};

/// The desktop's clipboard.
class DesktopServices::DesktopClipboard : public dq::platform::Clipboard {
 public:
  explicit DesktopClipboard(Layer& layer) : layer_(layer) {}

  dq::platform::Error SetAll(std::span<const dq::platform::ClipboardData> pieces) override {
    if (!layer_.RunsDialogs()) return {dq::platform::ErrorKind::kBusy, 0};
    std::vector<ClipboardPiece> copy;
    for (const auto& [format, bytes] : pieces) {
      const auto same = std::ranges::find(copy, format, &ClipboardPiece::format);
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
