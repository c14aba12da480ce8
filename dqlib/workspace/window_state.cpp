#include "dqlib/workspace/window_state.h"

#include <algorithm>

#include "dqlib/framework/windows/screen.h"
#include "dqlib/framework/windows/win_app.h"

namespace dq {
namespace {

/// Edges are kept within this, so that no width or height leaves the range of coordinates.
constexpr LONG kFarthest = 0x3FFFFFFF;

int ReadInt(const char* section, const char* entry, int fallback) {
  return static_cast<int>(AfxGetApp()->GetProfileInt(section, entry, fallback));
}

void ReadEdges(const char* section, CRect& rect) {
  rect.left = ReadInt(section, "wp.left", rect.left);
  rect.right = ReadInt(section, "wp.right", rect.right);
  rect.top = ReadInt(section, "wp.top", rect.top);
  rect.bottom = ReadInt(section, "wp.bottom", rect.bottom);
}

/// Sums and differences as the platform has them: a create structure may hold the smallest number
/// as "choose a place".
int Plus(int a, int b) { return static_cast<int>(static_cast<UINT>(a) + static_cast<UINT>(b)); }
int Minus(int a, int b) { return static_cast<int>(static_cast<UINT>(a) - static_cast<UINT>(b)); }

void KeepInRange(CRect& rect) {
  for (LONG* const edge : {&rect.left, &rect.top, &rect.right, &rect.bottom}) {
    *edge = std::clamp(*edge, -kFarthest, kFarthest);
  }
}

bool CanBeStored(const char* section, const CWnd* window) {
  return section != nullptr && window != nullptr && window->GetSafeHwnd() != nullptr &&
         AfxGetApp() != nullptr;
}

}  // namespace

void DQLIB_SaveWindowPlacement(const char* section, CWnd* window) {
  WINDOWPLACEMENT wp;
  if (!CanBeStored(section, window) || !window->GetWindowPlacement(&wp)) return;
  const struct {
    const char* entry;
    int value;
  } values[] = {
      {"wp.showCmd", static_cast<int>(wp.showCmd)}, {"wp.flags", static_cast<int>(wp.flags)},
      {"wp.ptMinPosition.x", wp.ptMinPosition.x},   {"wp.ptMinPosition.y", wp.ptMinPosition.y},
      {"wp.ptMaxPosition.x", wp.ptMaxPosition.x},   {"wp.ptMaxPosition.y", wp.ptMaxPosition.y},
      {"wp.left", wp.rcNormalPosition.left},        {"wp.right", wp.rcNormalPosition.right},
      {"wp.top", wp.rcNormalPosition.top},          {"wp.bottom", wp.rcNormalPosition.bottom},
  };
  // A profile that refuses is no reason to bother somebody who closes a window.
  for (const auto& [entry, value] : values) AfxGetApp()->WriteProfileInt(section, entry, value);
}

void DQLIB_GetWindowPlacement(const char* section, WINDOWPLACEMENT* placement) {
  if (section == nullptr || placement == nullptr || AfxGetApp() == nullptr) return;
  WINDOWPLACEMENT& wp = *placement;
  const auto read = [section](const char* entry, auto& value) {
    value = static_cast<std::remove_reference_t<decltype(value)>>(
        ReadInt(section, entry, static_cast<int>(value)));
  };
  read("wp.showCmd", wp.showCmd);
  read("wp.flags", wp.flags);
  read("wp.ptMinPosition.x", wp.ptMinPosition.x);
  read("wp.ptMinPosition.y", wp.ptMinPosition.y);
  read("wp.ptMaxPosition.x", wp.ptMaxPosition.x);
  read("wp.ptMaxPosition.y", wp.ptMaxPosition.y);
  ReadEdges(section, wp.rcNormalPosition);
}

bool DQLIB_RestoreWindowPlacement(const char* section, CWnd* window) {
  WINDOWPLACEMENT wp;
  if (!CanBeStored(section, window) || !window->GetWindowPlacement(&wp)) return false;
  DQLIB_GetWindowPlacement(section, &wp);
  KeepInRange(wp.rcNormalPosition);
  const CSize screen = GetScreenSize();
  if (Intersect(wp.rcNormalPosition, {0, 0, screen.cx, screen.cy}).IsRectEmpty()) return false;
  return window->SetWindowPlacement(&wp);
}

void DQLIB_SetCreateStructPlacement(const char* section, CREATESTRUCT* create) {
  if (section == nullptr || create == nullptr || AfxGetApp() == nullptr) return;
  CRect rect{create->x, create->y, Plus(create->x, create->cx), Plus(create->y, create->cy)};
  ReadEdges(section, rect);
  create->x = rect.left;
  create->y = rect.top;
  create->cx = Minus(rect.right, rect.left);
  create->cy = Minus(rect.bottom, rect.top);
}

}  // namespace dq
