#include "dqlib/frame/cleaner.h"

namespace dq {

CDQObjCleaner::~CDQObjCleaner() { delete m_pObject; }

}  // namespace dq
