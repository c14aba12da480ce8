// What a window layer has been told about a window and hasn't shown yet.

#pragma once

#include <cstdint>

#include "dqlib/framework/windows/window_observer.h"

namespace workbench {

/// A set of `WindowChange` values.
class Changes {
 public:
  Changes() = default;
  /// Everything that there is to show.
  static Changes All() {
    Changes all;
    all.bits_ = ~std::uint32_t{0};
    return all;
  }

  bool empty() const { return bits_ == 0; }
  void Add(dq::WindowChange change) { bits_ |= Bit(change); }
  /// Whether one of them is in it.
  template <typename... More>
  bool Has(dq::WindowChange change, More... more) const {
    return (bits_ & (Bit(change) | ... | Bit(more))) != 0;
  }

 private:
  static constexpr std::uint32_t Bit(dq::WindowChange change) {
    return std::uint32_t{1} << static_cast<unsigned>(change);
  }

  std::uint32_t bits_ = 0;
};

}  // namespace workbench
