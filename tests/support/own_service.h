// The services in force, of which one is the test's.
//
//   ManualClock clock;
//   const platform::ScopedPlatform scope(With(&platform::Platform::clock, &clock));

#pragma once

#include <type_traits>

#include "dqlib/platform/platform.h"

namespace dq::test {

template <typename Service>
platform::Platform With(Service* platform::Platform::*member,
                        std::type_identity_t<Service>* service) {
  platform::Platform services = platform::Current();
  services.*member = service;
  return services;
}

}  // namespace dq::test
