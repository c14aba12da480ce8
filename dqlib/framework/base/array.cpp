#include "dqlib/framework/base/array.h"

#include "dqlib/framework/base/archive.h"

namespace dq {

void CWordArray::Serialize(CArchive& archive) {
  if (archive.IsStoring()) {
    archive.WriteCount(static_cast<DWORD>(GetSize()));
    for (int i = 0; i < GetSize(); ++i) archive << GetAt(i);
    return;
  }
  std::vector<WORD> numbers(archive.ReadCount());
  for (WORD& number : numbers) archive >> number;
  SetElements(std::move(numbers));
}

}  // namespace dq
