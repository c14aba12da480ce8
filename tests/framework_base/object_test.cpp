#include "dqlib/framework/base/object.h"

#include <gtest/gtest.h>
#include <memory>

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/base/resource_module.h"

namespace dq {
namespace {

class Animal : public CObject {
  DECLARE_DYNAMIC(Animal)
};
class Dog : public Animal {
  DECLARE_DYNCREATE(Dog)
};
class Cat : public Animal {
  DECLARE_DYNCREATE(Cat)
};

IMPLEMENT_DYNAMIC(Animal, CObject)
IMPLEMENT_DYNCREATE(Dog, Animal)
IMPLEMENT_DYNCREATE(Cat, Animal)

TEST(RuntimeClass, KnowsItsBasesAndIsMadeAndFoundByName) {
  const std::unique_ptr<CObject> dog(RUNTIME_CLASS(Dog)->CreateObject());
  ASSERT_NE(DYNAMIC_DOWNCAST(Dog, dog.get()), nullptr);
  EXPECT_TRUE(dog->IsKindOf(RUNTIME_CLASS(Animal)) && dog->IsKindOf(RUNTIME_CLASS(CObject)));
  EXPECT_EQ(DYNAMIC_DOWNCAST(Cat, dog.get()), nullptr);
  EXPECT_EQ(DYNAMIC_DOWNCAST(Dog, nullptr), nullptr);
  EXPECT_EQ(RUNTIME_CLASS(Animal)->CreateObject(), nullptr);
  EXPECT_EQ(CRuntimeClass::FromName("Dog"), RUNTIME_CLASS(Dog));
  for (const char* name : {"dog", "Do", "", static_cast<const char*>(nullptr)}) {
    EXPECT_EQ(CRuntimeClass::FromName(name), nullptr);
  }
}

TEST(ExtensionModule, TakesUpTheClassesEnteredSinceTheRawAttachStep) {
  ResourceModule module;
  AFX_EXTENSION_MODULE state;
  const CRuntimeClass* const before = ProgramClassList().head;
  AfxRawAttachExtensionModule();
  const CRuntimeClass guest("Guest", 1, nullptr, RUNTIME_CLASS(CObject));
  AfxRawAttachExtensionModule();
  const CRuntimeClass second("Second", 1, nullptr, RUNTIME_CLASS(CObject));
  EXPECT_TRUE(AfxInitExtensionModule(state, &module));

  EXPECT_EQ(ProgramClassList().head, before);
  EXPECT_EQ(CRuntimeClass::FromName("Guest"), nullptr) << "its module isn't in the chain";
  {
    const CDynLinkLibrary link(state);
    EXPECT_EQ(CRuntimeClass::FromName("Guest"), &guest);
    EXPECT_EQ(CRuntimeClass::FromName("Second"), &second);
    EXPECT_EQ(CRuntimeClass::FromName("Dog"), RUNTIME_CLASS(Dog));
  }
  EXPECT_EQ(CRuntimeClass::FromName("Guest"), nullptr);
}

TEST(ExtensionModule, WithoutAModuleItIsNotLoaded) {
  AFX_EXTENSION_MODULE state;
  const CRuntimeClass* const before = ProgramClassList().head;
  AfxRawAttachExtensionModule();
  const CRuntimeClass guest("Guest", 1, nullptr, RUNTIME_CLASS(CObject));
  EXPECT_FALSE(AfxInitExtensionModule(state, nullptr) || state.bInitialized);
  EXPECT_TRUE(state.classes.head == nullptr && ProgramClassList().head == before);
}

}  // namespace
}  // namespace dq
