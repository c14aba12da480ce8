// Scoped switches of the current resource module.

#pragma once

#include "dqlib/framework/base/object.h"

namespace dq {

/// Makes `module` the current resource module for its lifetime; null changes nothing. The module
/// that was current comes back in every case.
class CDQSwitchResourceHandle {
 public:
  explicit CDQSwitchResourceHandle(HINSTANCE module);
  CDQSwitchResourceHandle(const CDQSwitchResourceHandle&) = delete;
  CDQSwitchResourceHandle& operator=(const CDQSwitchResourceHandle&) = delete;
  ~CDQSwitchResourceHandle();

 private:
  HINSTANCE m_hOldResource;
};

/// The same, but a null module becomes the current one too, so callers must give a real one. Those
/// who use it want exactly the module they name, and no other in its place.
class CSwitchRCHandle : public CObject {
 public:
  explicit CSwitchRCHandle(HINSTANCE module);
  ~CSwitchRCHandle() override;

 private:
  HINSTANCE m_hOldResource;
  HINSTANCE m_hNewResource;
};

}  // namespace dq
