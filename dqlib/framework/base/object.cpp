#include "dqlib/framework/base/object.h"

#include <cstring>

#include "dqlib/framework/base/resource_chain.h"

namespace dq {
namespace {

const CRuntimeClass* FindInList(const ClassList& list, const char* name) {
  for (const CRuntimeClass* entry = list.head; entry != nullptr; entry = entry->m_pNextClass) {
    if (std::strcmp(entry->m_lpszClassName, name) == 0) return entry;
  }
  return nullptr;
}

}  // namespace

const CRuntimeClass CObject::classCObject("CObject", 0xFFFF, nullptr, nullptr);

ClassList& ProgramClassList() {
  static ClassList list;
  return list;
}

CRuntimeClass::CRuntimeClass(const char* name, DWORD schema, CObject* (*create)(),
                             const CRuntimeClass* base)
    : m_lpszClassName(name),
      m_wSchema(schema),
      m_pfnCreateObject(create),
      m_pBaseClass(base),
      m_pNextClass(ProgramClassList().head) {
  ProgramClassList().head = this;
}

CObject* CRuntimeClass::CreateObject() const {
  return m_pfnCreateObject == nullptr ? nullptr : m_pfnCreateObject();
}

bool CRuntimeClass::IsDerivedFrom(const CRuntimeClass* base) const {
  const CRuntimeClass* entry = this;
  while (entry != nullptr && entry != base) entry = entry->m_pBaseClass;
  return entry != nullptr;
}

const CRuntimeClass* CRuntimeClass::FromName(const char* name) {
  if (name == nullptr) return nullptr;
  if (const CRuntimeClass* found = FindInList(ProgramClassList(), name)) return found;
  for (const CDynLinkLibrary* link = CDynLinkLibrary::head(); link != nullptr;
       link = link->next()) {
    if (const CRuntimeClass* found = FindInList(link->classes(), name)) return found;
  }
  return nullptr;
}

CObject::~CObject() = default;

void CObject::Serialize(CArchive& /*archive*/) {}

const CRuntimeClass* CObject::GetRuntimeClass() const { return RUNTIME_CLASS(CObject); }

}  // namespace dq
