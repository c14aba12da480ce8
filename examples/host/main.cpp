// The least a host does: it has an identity and strings of its own, and uses the library's.

#include <cstdio>

#include "dqlib/frame/resources.h"
#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/base/resource_module.h"
#include "dqlib/framework/windows/win_app.h"
#include "dqlib/resources/string_ids.h"

namespace {

constexpr dq::UINT kGreeting = 1000;

}  // namespace

int main() {
  dq::CWinApp app("host_example");
  app.SetRegistryKey("Velmora");

  dq::ResourceModule strings;
  strings.AddString(kGreeting, "%1 is ready.");
  const dq::CDynLinkLibrary link(&strings);

  // The host's own string by the chain, then one of the library's.
  dq::CString text;
  dq::DQFormatString1(text, kGreeting, app.GetAppName(), nullptr);
  std::printf("%s\n", static_cast<const char*>(text));
  if (!dq::DQLoadString(text, dq::IDS_UNDER_CONSTRUCTION, nullptr)) return 1;
  std::printf("%s\n", static_cast<const char*>(text));
  return 0;
}
