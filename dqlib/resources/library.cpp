#include "dqlib/resources/library.h"

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/platform/platform.h"
#include "dqlib/platform/seam_texts.h"
#include "dqlib/resources/string_ids.h"
#include "dqlib/resources/string_table.h"

namespace dq {
namespace {

/// The library's extension module record. Built on first use, because the library is attached while
/// static objects are built, in an order that nobody controls.
AFX_EXTENSION_MODULE& ExtensionModule() {
  static AFX_EXTENSION_MODULE module;
  return module;
}

/// Asks where the module was loaded from. The answer isn't used; the module service sees every
/// attach and detach of the process by it.
void TouchFileName(HINSTANCE module) {
  static_cast<void>(platform::Current().modules->FileName(module));
}

}  // namespace

void DQLIB_InitializeExtensionDLL() {
  if (!ExtensionModule().bInitialized) return;
  // Owned by the chain until the process ends; there is no moment at which it could be taken out.
  new CDynLinkLibrary(ExtensionModule());
}

HINSTANCE DQLIB_GetInstanceHandle() { return ExtensionModule().hModule; }

int DQLIB_EntryPoint(HINSTANCE module, DWORD reason, void* /*reserved*/) {
  switch (reason) {
    case PROCESS_ATTACH:
      TouchFileName(module);
      if (!AfxInitExtensionModule(ExtensionModule(), module)) return 0;
      DQLIB_InitializeExtensionDLL();
      platform::SetTextSource(&AfxFindString);
      break;
    case PROCESS_DETACH:
      TouchFileName(module);
      break;
    default:
      break;
  }
  return 1;
}

}  // namespace dq

extern "C" {
const int dqlib_attach = dq::DQLIB_EntryPoint(&dq::LibraryResources(), dq::PROCESS_ATTACH, nullptr);
}
