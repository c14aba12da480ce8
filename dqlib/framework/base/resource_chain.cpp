#include "dqlib/framework/base/resource_chain.h"

#include <utility>

namespace dq {
namespace {

HINSTANCE g_current = nullptr;
CDynLinkLibrary* g_head = nullptr;
/// The program's class list while a module's static objects enter theirs.
std::optional<ClassList> g_set_aside;

/// The first module of the search order that `has` accepts, or null.
template <typename Predicate>
HINSTANCE Search(Predicate has) {
  if (g_current != nullptr && has(*g_current)) return g_current;
  for (const CDynLinkLibrary* link = g_head; link != nullptr; link = link->next()) {
    if (has(*link->resources())) return link->resources();
  }
  return has(FrameworkModule()) ? &FrameworkModule() : nullptr;
}

}  // namespace

HINSTANCE AfxGetResourceHandle() { return g_current; }

void AfxSetResourceHandle(HINSTANCE module) { g_current = module; }

HINSTANCE AfxFindResourceHandle(UINT name, WORD type) {
  const HINSTANCE found = Search([=](const platform::Module& module) {
    return module.Find(type, static_cast<WORD>(name)) != nullptr;
  });
  return found == nullptr ? g_current : found;
}

std::optional<std::string_view> AfxFindString(UINT id) {
  std::optional<std::string_view> text;
  Search([&](const platform::Module& module) {
    text = module.String(id);
    return text && !text->empty();
  });
  return text && text->empty() ? std::nullopt : text;
}

void AfxRawAttachExtensionModule() { g_set_aside = std::exchange(ProgramClassList(), {}); }

bool AfxInitExtensionModule(AFX_EXTENSION_MODULE& state, HINSTANCE module) {
  if (module == nullptr) return false;
  state.bInitialized = true;
  state.hModule = module;
  state.hResource = module;
  if (g_set_aside) {
    state.classes = std::exchange(ProgramClassList(), *g_set_aside);
    g_set_aside.reset();
  }
  return true;
}

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE& state)
    : resources_(state.hResource), classes_(state.classes) {
  Link();
}

CDynLinkLibrary::CDynLinkLibrary(HINSTANCE resources) : resources_(resources) { Link(); }

void CDynLinkLibrary::Link() { next_ = std::exchange(g_head, this); }

CDynLinkLibrary::~CDynLinkLibrary() {
  CDynLinkLibrary** link = &g_head;
  while (*link != this) link = &(*link)->next_;
  *link = next_;
}

CDynLinkLibrary* CDynLinkLibrary::head() { return g_head; }

}  // namespace dq
