#include "dqlib/framework/base/resource_chain.h"

#include <atomic>
#include <utility>

namespace dq {
namespace {

// Atomic, because workers load strings while the user-interface thread switches modules.
std::atomic<HINSTANCE> g_current = nullptr;
std::atomic<CDynLinkLibrary*> g_head = nullptr;
/// Links that translate a module. There are mostly none, and then searches needn't look for them.
std::atomic<int> g_translations = 0;
/// The program's class list while a module's static objects enter theirs.
std::optional<ClassList> g_set_aside;

/// The newest translation of the module that `has` accepts, or null.
template <typename Predicate>
HINSTANCE FindTranslation(HINSTANCE module, const Predicate& has) {
  for (const CDynLinkLibrary* link = g_head; link != nullptr; link = link->next()) {
    if (link->translated() == module && has(*link->resources())) return link->resources();
  }
  return nullptr;
}

/// The first module of the search order that `has` accepts, or null.
template <typename Predicate>
HINSTANCE Search(const Predicate& has) {
  const bool any_translation = g_translations != 0;
  const auto find_in = [&](HINSTANCE module) {
    const HINSTANCE translation = any_translation ? FindTranslation(module, has) : nullptr;
    return translation != nullptr || !has(*module) ? translation : module;
  };
  const HINSTANCE current = g_current;
  HINSTANCE found = current == nullptr ? nullptr : find_in(current);
  for (const CDynLinkLibrary* link = g_head; found == nullptr && link != nullptr;
       link = link->next()) {
    if (link->resources() != nullptr) found = find_in(link->resources());
  }
  return found != nullptr ? found : find_in(&FrameworkModule());
}

}  // namespace

HINSTANCE AfxGetResourceHandle() { return g_current; }

void AfxSetResourceHandle(HINSTANCE module) {
  if (g_current.exchange(module) != module) ++detail::resource_generation;
}

HINSTANCE AfxFindResourceHandle(UINT name, WORD type) {
  const HINSTANCE found = Search([=](const platform::Module& module) {
    return module.Find(type, static_cast<WORD>(name)) != nullptr;
  });
  return found == nullptr ? AfxGetResourceHandle() : found;
}

std::optional<std::string_view> AfxFindString(UINT id) {
  std::optional<std::string_view> text;
  Search([&](const platform::Module& module) {
    text = module.String(id);
    return text && !text->empty();
  });
  return text && text->empty() ? std::nullopt : text;
}

void AfxRawAttachExtensionModule() {
  if (!g_set_aside) g_set_aside = std::exchange(ProgramClassList(), {});
}

bool AfxInitExtensionModule(AFX_EXTENSION_MODULE& state, HINSTANCE module) {
  std::optional<ClassList> entered;
  if (g_set_aside) entered = std::exchange(ProgramClassList(), *std::exchange(g_set_aside, {}));
  if (module == nullptr) return false;
  state.bInitialized = true;
  state.hModule = module;
  state.hResource = module;
  if (entered) state.classes = *entered;
  return true;
}

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE& state)
    : resources_(state.hResource), classes_(state.classes) {
  Link();
}

CDynLinkLibrary::CDynLinkLibrary(HINSTANCE resources, HINSTANCE translated)
    : resources_(resources), translated_(resources == nullptr ? nullptr : translated) {
  Link();
}

void CDynLinkLibrary::Link() {
  next_ = g_head;
  g_head = this;
  if (translated_ != nullptr) ++g_translations;
  ++detail::resource_generation;
}

CDynLinkLibrary::~CDynLinkLibrary() {
  if (g_head == this) {
    g_head = next_;
  } else {
    CDynLinkLibrary* newer = g_head;
    while (newer->next_ != this) newer = newer->next_;
    newer->next_ = next_;
  }
  if (translated_ != nullptr) --g_translations;
  ++detail::resource_generation;
}

CDynLinkLibrary* CDynLinkLibrary::head() { return g_head; }

}  // namespace dq
