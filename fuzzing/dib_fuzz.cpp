// Reads a picture resource; what can be read must come back the same from its own written form.

#include <cstdint>
#include <cstdlib>

#include "dqlib/framework/base/drawing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto picture = dq::ReadDib({reinterpret_cast<const char*>(data), size});
  if (picture == nullptr) return 0;
  const auto again = dq::ReadDib(dq::WriteDib(*picture));
  if (again == nullptr || again->size != picture->size || again->pixels != picture->pixels) {
    std::abort();
  }
  return 0;
}
