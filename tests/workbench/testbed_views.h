// For the testbed: a splitter with views behind tabs, of which a column can be hidden, and a
// workbook.

#pragma once

#include "apps/common/console.h"
#include "apps/workbench/layer/trace.h"
#include "dqlib/framework/base/device_context.h"
#include "dqlib/framework/windows/frame_wnd.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/toolkit/sft_tab_view.h"
#include "dqlib/toolkit/splitter_wnd.h"
#include "dqlib/toolkit/workbook.h"

namespace workbench {

using dq::CDQSftTabView;
using dq::CView;
using dq::CWnd;

/// A view of one colour, whose window class is the colour's name.
template <int number>
struct ColorView : dq::CView {
  static constexpr const char* kNames[] = {"Red", "Green", "Blue"};
  static constexpr dq::COLORREF kColors[] = {dq::RGB(0xC0, 0x60, 0x60), dq::RGB(0x60, 0xC0, 0x60),
                                             dq::RGB(0x60, 0x60, 0xC0)};
  bool Create(CWnd* parent, const dq::CRect& place, int id,
              const dq::CCreateContext* context) override {
    return CreateAs(kNames[number], parent, place, id, context);
  }
  void OnDraw(dq::CDC* dc) override {
    dc->FillSolidRect(GetClientRect(), kColors[number]);
    dc->SetBkMode(dq::TRANSPARENT);
    dc->TextOut(10, 10, kNames[number]);
  }
};

struct RedView : ColorView<0> {
  DECLARE_DYNCREATE(RedView)
};
struct GreenView : ColorView<1> {
  DECLARE_DYNCREATE(GreenView)
};
struct BlueView : ColorView<2> {
  DECLARE_DYNCREATE(BlueView)
};
IMPLEMENT_DYNCREATE(RedView, CView)
IMPLEMENT_DYNCREATE(GreenView, CView)
IMPLEMENT_DYNCREATE(BlueView, CView)

/// Traces each switch to another view as "switched" with the tab.
struct PagesView : dq::CDQSftTabView {
  DECLARE_DYNCREATE(PagesView)
  bool Create(CWnd* parent, const dq::CRect& place, int id,
              const dq::CCreateContext* context) override {
    if (!CreateAs("Pages", parent, place, id, context)) return false;
    SetColors(dq::RGB(0x80, 0x80, 0x80), dq::RGB(0xE0, 0xE0, 0xC0), dq::RGB(0x60, 0x60, 0),
              dq::RGB(0xFF, 0xFF, 0xE0), dq::RGB(0, 0, 0x80));
    addTabView(RUNTIME_CLASS(RedView), nullptr, "&Red", false, true, 0);
    addTabView(RUNTIME_CLASS(GreenView), nullptr, "&Green", true, false, 0);
    addTabView(nullptr, nullptr, "&None", false, false, 0);
    enableView(addTabView(RUNTIME_CLASS(RedView), nullptr, "&Off", false, false, 0), false);
    return true;
  }
  dq::LRESULT WindowProc(dq::UINT message, dq::WPARAM wparam, dq::LPARAM lparam) override {
    if (message == kViewChanged) {
      TraceLine line("switched");
      line.Add("number", static_cast<long long>(GetCurrentTab()));
      dqapps::PrintLine(line.Finish());
    }
    return CDQSftTabView::WindowProc(message, wparam, lparam);
  }
};
IMPLEMENT_DYNCREATE(PagesView, CDQSftTabView)

/// Becomes the program's main window. Two columns: a tab view, and a blue view.
class ViewsFrame : public dq::CFrameWnd {
 public:
  void Open() {
    Create("ViewsFrame", "Views", {200, 120, 700, 420}, 0, nullptr, false);
    menu_.LoadMenuIndirect(
        "popup \"&Column\"\nitem 32801 \"&Hide\"\nitem 32802 \"&Show\"\nitem 32803 \"&Dynamic\"\n"
        "item 32804 \"&Replace\"\nend\n");
    SetMenu(&menu_);
    splitter_.CreateStatic(this, 1, 2);
    splitter_.CreateView(0, 0, RUNTIME_CLASS(PagesView), {240, 0});
    splitter_.CreateView(0, 1, RUNTIME_CLASS(BlueView), {0, 0});
    splitter_.SetColumnInfo(0, 240, 40);
    RecalcLayout();
    dq::AfxGetApp()->m_pMainWnd = this;
    ShowWindow(dq::SW_SHOW);
    splitter_.SetActivePane(0, 0);
  }

 protected:
  bool CallMapped(const dq::HandlerKey& key, dq::HandlerArguments& arguments) override {
    static constexpr dq::MessageMapEntry kEntries[] = {
        dq::CommandRangeEntry<&ViewsFrame::OnColumn>(32801, 32804),
    };
    return dq::CallEntry(kEntries, *this, key, arguments) || CFrameWnd::CallMapped(key, arguments);
  }

 private:
  void OnColumn(dq::UINT id) {
    switch (id) {
      case 32801:
        return splitter_.HideColumn(0);
      case 32802:
        return splitter_.ShowColumn();
      case 32803:
        return splitter_.SetDynamic(true);
      default:
        splitter_.ReplaceView(0, splitter_.GetColumnCount() - 1, RUNTIME_CLASS(GreenView), {0, 0});
    }
  }

  dq::CMenu menu_;
  dq::CDQSplitterWnd splitter_;
};

/// Becomes the program's main window. A workbook of three sheets.
class BookFrame : public dq::CDQWorkbook {
 public:
  void Open() {
    Create("BookFrame", "Book", {200, 120, 700, 420}, 0, nullptr, false);
    const dq::CRuntimeClass* const views[] = {RUNTIME_CLASS(RedView), RUNTIME_CLASS(GreenView),
                                              RUNTIME_CLASS(BlueView)};
    for (int at = 0; at < 3; ++at) {
      const dq::CCreateContext context{.m_pNewViewClass = views[at]};
      sheets_[at].Create("Sheet", at == 1 ? "A sheet & its long name" : "Sheet",
                         {at * 40, at * 30, at * 40 + 300, at * 30 + 180}, this, &context);
    }
    AllowWorkbookMode(true);
    dq::AfxGetApp()->m_pMainWnd = this;
    ShowWindow(dq::SW_SHOW);
  }

 private:
  dq::CDQWorksheet sheets_[3];
};

}  // namespace workbench
