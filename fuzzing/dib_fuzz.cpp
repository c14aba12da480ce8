// Reads a picture resource; what can be read must come back the same from its own written form.

#include "dqlib/framework/base/drawing.h"
#include "fuzzing/fuzzing.h"

void dq::fuzz::Try(std::string_view bytes) {
  const auto picture = ReadDib(bytes);
  if (picture == nullptr) return;
  const auto again = dq::ReadDib(dq::WriteDib(*picture));
  Require(again != nullptr && again->size == picture->size && again->pixels == picture->pixels);
}
