// For the testbed: a window with two frames whose tabs a person closes, renames and drags.

#pragma once

#include "apps/common/console.h"
#include "apps/workbench/layer/trace.h"
#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/windows/doc_template.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/toolkit/flex_tab_frame.h"

namespace workbench {

using dq::CDocument;
using dq::CView;

struct TabDocument : CDocument {
  DECLARE_DYNCREATE(TabDocument)
};
IMPLEMENT_DYNCREATE(TabDocument, CDocument)

/// Shows the document's title. A click changes the document.
struct TabView : CView {
  DECLARE_DYNCREATE(TabView)
  dq::LRESULT WindowProc(dq::UINT message, dq::WPARAM wparam, dq::LPARAM lparam) override {
    if (message == dq::WM_LBUTTONDOWN) GetDocument()->SetModifiedFlag();
    return CView::WindowProc(message, wparam, lparam);
  }
  void OnDraw(dq::CDC* dc) override { dc->TextOut(10, 10, GetDocument()->GetTitle().View()); }
};
IMPLEMENT_DYNCREATE(TabView, CView)

/// Becomes the program's main window. Traces the tabs of each frame when they have changed, as
/// "tabs" with the frame's number: label, where the tab begins and ends, and "*" behind the active
/// one.
class TabsFrame : public dq::CMDIFrameWnd {
 public:
  void Open() {
    auto* const kind = new dq::CMultiDocTemplate(0, RUNTIME_CLASS(TabDocument), nullptr, nullptr);
    dq::AfxGetApp()->AddDocTemplate(kind);
    Create("TabsFrame", "Tabs", {200, 120, 800, 420}, 0, nullptr, false);
    for (int number = 0; number < 2; ++number) {
      auto frame = std::make_unique<dq::CDQFlexTabFrame>();
      frame->Create("Tabs", "", {number * 300, 0, number * 300 + 300, 280}, this);
      for (const char* title : number == 0 ? kTitles[0] : kTitles[1]) {
        CDocument* const document = kind->CreateNewDocument();
        document->SetTitle(title);
        dq::CCreateContext context{.m_pCurrentDoc = document};
        frame->GetTabWnd()->AddFlexTab(RUNTIME_CLASS(TabView), title, &context, 0, true);
      }
      frame->GetTabWnd()->SetTabClosable(0, false);
      frames_.push_back({frame->GetSafeHwnd(), std::move(frame), ""});
    }
    dq::AfxGetApp()->m_pMainWnd = this;
    ShowWindow(dq::SW_SHOW);
  }

 protected:
  dq::LRESULT DefWindowProc(dq::UINT message, dq::WPARAM wparam, dq::LPARAM lparam) override {
    if (message == dq::WM_IDLEUPDATECMDUI) TellTabs();
    return CMDIFrameWnd::DefWindowProc(message, wparam, lparam);
  }

 private:
  struct Shown {
    dq::HWND window;
    std::unique_ptr<dq::CDQFlexTabFrame> frame;
    std::string told;
  };
  static constexpr const char* kTitles[2][3] = {{"one", "two", "three"},
                                                {"uno", "a label that is long", "tres"}};

  static std::string TabsOf(dq::CDQFlexTabFrame& frame) {
    const dq::CDQFlexTab& tabs = *frame.GetTabWnd();
    std::string text;
    for (int tab = 0; tab < tabs.GetTabCount(); ++tab) {
      const dq::CRect rect = tabs.GetTabControl().GetTabRect(tab);
      text += std::string(tabs.GetLabel(tab).View()) + "," + std::to_string(rect.left) + "," +
              std::to_string(rect.right) + (tab == tabs.GetActiveTab() ? "*;" : ";");
    }
    return text;
  }
  void TellTabs() {
    for (Shown& shown : frames_) {
      const bool is_there = CWnd::FromHandle(shown.window) != nullptr;
      std::string text = is_there ? TabsOf(*shown.frame) : "gone";
      if (text == shown.told) continue;
      TraceLine line("tabs");
      line.Add("number", static_cast<long long>(&shown - frames_.data()));
      line.Add("text", text);
      dqapps::PrintLine(line.Finish());
      shown.told = std::move(text);
    }
  }

  std::vector<Shown> frames_;
};

}  // namespace workbench
