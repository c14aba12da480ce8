#include "dqlib/frame/switch_resource_handle.h"

#include "dqlib/framework/base/resource_chain.h"

namespace dq {

CDQSwitchResourceHandle::CDQSwitchResourceHandle(HINSTANCE module)
    : m_hOldResource(AfxGetResourceHandle()) {
  if (module != nullptr) AfxSetResourceHandle(module);
}

CDQSwitchResourceHandle::~CDQSwitchResourceHandle() { AfxSetResourceHandle(m_hOldResource); }

CSwitchRCHandle::CSwitchRCHandle(HINSTANCE module)
    : m_hOldResource(AfxGetResourceHandle()), m_hNewResource(module) {
  AfxSetResourceHandle(m_hNewResource);
}

CSwitchRCHandle::~CSwitchRCHandle() { AfxSetResourceHandle(m_hOldResource); }

}  // namespace dq
