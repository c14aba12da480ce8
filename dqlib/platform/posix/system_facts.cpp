#include "dqlib/platform/system_facts.h"

#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

/// Without a window system there is no screen to ask; this is the resolution and the scheme that
/// desktops start from. A host with a screen puts its own service in place.
class ScreenlessFacts : public SystemFacts {
 public:
  int VerticalPixelsPerInch() override { return 96; }

  COLORREF Color(int index) override {
    switch (index) {
      case SYSTEM_COLOR_FACE:
        return 0xF0F0F0;
      case SYSTEM_COLOR_SHADOW:
        return 0xA0A0A0;
      case SYSTEM_COLOR_LIGHT:
        return 0xE3E3E3;
      default:
        return 0;
    }
  }
};

}  // namespace

SystemFacts& SystemFactsService() {
  static ScreenlessFacts& facts = *new ScreenlessFacts;
  return facts;
}

}  // namespace dq::platform::posix
