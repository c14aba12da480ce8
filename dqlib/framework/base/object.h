// Objects with run-time classes.
//
//   class Thing : public CObject {
//     DECLARE_DYNCREATE(Thing)
//   };
//   IMPLEMENT_DYNCREATE(Thing, CObject)   // in the source file
//
//   if (object->IsKindOf(RUNTIME_CLASS(Thing))) ...

#pragma once

#include <memory>

#include "dqlib/platform/types.h"

namespace dq {

class CArchive;
class CObject;

/// A bit of a schema number: objects stored with other numbers load too, and ask the archive for
/// theirs.
inline constexpr DWORD VERSIONABLE_SCHEMA = 0x80000000;

/// What a program can ask of a class at run time. Each one is a constant static object, which
/// enters itself in the list of classes of the module under way when it is built.
struct CRuntimeClass {
  CRuntimeClass(const char* name, DWORD schema, CObject* (*create)(), const CRuntimeClass* base);
  CRuntimeClass(const CRuntimeClass&) = delete;
  CRuntimeClass& operator=(const CRuntimeClass&) = delete;

  /// A new object that the caller owns, or null if the class can't be created dynamically.
  CObject* CreateObject() const;

  /// True if archives can store and load its objects.
  bool IsSerial() const { return m_wSchema != 0xFFFF; }

  /// True for `base` itself and for every class derived from it.
  bool IsDerivedFrom(const CRuntimeClass* base) const;

  /// The class with exactly this name, searched for in the program's list and then in those of the
  /// extension modules, the newest first; or null. A null name finds none.
  static const CRuntimeClass* FromName(const char* name);

  const char* m_lpszClassName;
  /// Schema number in archives, whose low 16 bits are stored; FFFFh for a class that isn't serial.
  DWORD m_wSchema;
  CObject* (*m_pfnCreateObject)();
  const CRuntimeClass* m_pBaseClass;
  /// The next class of the same list; see `ClassList`.
  const CRuntimeClass* m_pNextClass = nullptr;
};

/// A list of run-time classes, the newest first, linked through `m_pNextClass`. There is one for
/// the program; an extension module takes over the part that its own static objects have entered.
struct ClassList {
  const CRuntimeClass* head = nullptr;
};

/// The program's list, which classes enter when they are built. For the start-up of modules only.
ClassList& ProgramClassList();

/// Base of objects with a run-time class. Not copied unless a derived class says how.
class CObject {
 public:
  static const CRuntimeClass classCObject;

  CObject() = default;
  CObject(const CObject&) = delete;
  CObject& operator=(const CObject&) = delete;
  virtual ~CObject();

  virtual const CRuntimeClass* GetRuntimeClass() const;

  /// True if the class has a schema, so that an archive can store and load its objects.
  bool IsSerializable() const { return GetRuntimeClass()->IsSerial(); }

  /// Stores the object to the archive or loads it, as the archive is made for. The base does
  /// nothing.
  virtual void Serialize(CArchive& archive);

  bool IsKindOf(const CRuntimeClass* runtime_class) const {
    return GetRuntimeClass()->IsDerivedFrom(runtime_class);
  }
};

/// `object` itself if it is of the class, else null; null for null.
inline CObject* IfKindOf(CObject* object, const CRuntimeClass* runtime_class) {
  return object != nullptr && object->IsKindOf(runtime_class) ? object : nullptr;
}

/// `archive.ReadObject(runtime_class)`, for where archives aren't known.
CObject* ReadObjectOf(CArchive& archive, const CRuntimeClass* runtime_class);

}  // namespace dq

// Macros, under the names by which every class of the family declares its run-time class.

/// The run-time class of a class.
#define RUNTIME_CLASS(class_name) (&class_name::class##class_name)

/// In a class: it has a run-time class.
#define DECLARE_DYNAMIC(class_name)                   \
 public:                                              \
  static const ::dq::CRuntimeClass class##class_name; \
  const ::dq::CRuntimeClass* GetRuntimeClass() const override;

/// In a class: as before, and it can be created by its run-time class.
#define DECLARE_DYNCREATE(class_name) \
  DECLARE_DYNAMIC(class_name)         \
  static ::dq::CObject* CreateObject();

/// In a class: as before, and archives can store and load its objects. `archive >> pointer` reads
/// one as `CArchive::ReadObject` does: null, or an object of the class.
#define DECLARE_SERIAL(class_name)                                                             \
  DECLARE_DYNCREATE(class_name)                                                                \
  friend ::dq::CArchive& operator>>(::dq::CArchive& archive, class_name*& object) {            \
    object = static_cast<class_name*>(::dq::ReadObjectOf(archive, RUNTIME_CLASS(class_name))); \
    return archive;                                                                            \
  }

#define DQ_IMPLEMENT_RUNTIMECLASS(class_name, base_name, schema, create)               \
  const ::dq::CRuntimeClass class_name::class##class_name(#class_name, schema, create, \
                                                          RUNTIME_CLASS(base_name));   \
  const ::dq::CRuntimeClass* class_name::GetRuntimeClass() const {                     \
    return RUNTIME_CLASS(class_name);                                                  \
  }

/// `object` as a pointer to the class if it is one by its run-time class, else null; null for null.
#define DYNAMIC_DOWNCAST(class_name, object) \
  (static_cast<class_name*>(::dq::IfKindOf(object, RUNTIME_CLASS(class_name))))

/// In the source file of a class with `DECLARE_DYNAMIC`.
#define IMPLEMENT_DYNAMIC(class_name, base_name) \
  DQ_IMPLEMENT_RUNTIMECLASS(class_name, base_name, 0xFFFF, nullptr)

/// In the source file of a class with `DECLARE_DYNCREATE`.
#define IMPLEMENT_DYNCREATE(class_name, base_name) IMPLEMENT_SERIAL(class_name, base_name, 0xFFFF)

/// In the source file of a class with `DECLARE_SERIAL`, with its schema number.
#define IMPLEMENT_SERIAL(class_name, base_name, schema)                                          \
  ::dq::CObject* class_name::CreateObject() { return std::make_unique<class_name>().release(); } \
  DQ_IMPLEMENT_RUNTIMECLASS(class_name, base_name, schema, &class_name::CreateObject)
