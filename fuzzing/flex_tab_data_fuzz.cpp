// Any bytes as a tab that is dropped: those of a real one, changed by the input, or the input
// alone. Only a tab that is there is taken, and none is lost.

#include "fuzzing/fuzzing.h"

namespace dq::fuzz {
namespace {

struct Page : CWnd {
  DECLARE_DYNCREATE(Page)
};
IMPLEMENT_DYNCREATE(Page, CWnd)

constexpr int kTabs = 3;

struct Frame : CDQFlexTabFrame {
  explicit Frame(CMDIFrameWnd& main) {
    Create("Frame", "", {0, 0, 300, 200}, &main);
    for (int tab = 0; tab < kTabs; ++tab) {
      GetTabWnd()->AddFlexTab(RUNTIME_CLASS(Page), "tab", nullptr, 0, true);
    }
    GetTabWnd()->SetTabClosable(0, false);
  }
};

}  // namespace

void Try(std::string_view input) {
  CMDIFrameWnd main;
  main.Create("Main", "", {0, 0, 400, 300});
  Frame from(main);
  Frame to(main);
  const int kind = TakeByte(input);
  const int tab = TakeByte(input) - 1;
  std::string bytes =
      CDQFlexTabData(kind % 4 == 1 ? to.GetTabWnd() : from.GetTabWnd(), tab).GetBytes();
  if (kind % 4 == 2) from.DestroyWindow();
  if (kind % 4 == 3) bytes.clear();
  bytes.resize(std::max(bytes.size(), input.size()));
  for (std::size_t at = 0; at < input.size(); ++at) {
    bytes[at] = static_cast<char>(bytes[at] ^ input[at]);
  }
  COleDataObject data;
  data.SetData(CDQFlexTabDropTarget::GetClipboardFormat(), bytes);
  const bool accepted = to.GetDropTarget()->AcceptData(&data, &to);
  const bool unchanged = std::ranges::all_of(input, [](char each) { return each == 0; }) &&
                         input.size() <= CDQFlexTabData().GetBytes().size();
  if (kind % 4 != 3 && unchanged) Require(accepted == (kind % 4 == 0 && tab >= 0 && tab < kTabs));
  Require(DragInput(data, DROPEFFECT_MOVE).Drop(&to, 0, {}) ==
          (accepted ? UINT{DROPEFFECT_MOVE} : UINT{DROPEFFECT_NONE}));
  Require(to.GetTabCount() == kTabs + (accepted ? 1 : 0));
  if (kind % 4 != 2) Require(from.GetTabCount() == kTabs - (accepted ? 1 : 0));
}

}  // namespace dq::fuzz
