#include "dqlib/framework/base/object.h"

#include "dqlib/framework/base/resource_chain.h"
#include "dqlib/framework/base/resource_module.h"
#include "tests/support/testing.h"

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
  EXPECT_TRUE(!DYNAMIC_DOWNCAST(Cat, dog.get()) && !DYNAMIC_DOWNCAST(Dog, nullptr));
  EXPECT_EQ(RUNTIME_CLASS(Animal)->CreateObject(), nullptr);
  EXPECT_EQ(CRuntimeClass::FromName("Dog"), RUNTIME_CLASS(Dog));
  EXPECT_TRUE(!CRuntimeClass::FromName("dog") && !CRuntimeClass::FromName(nullptr));
}

TEST(ExtensionModule, TakesUpTheClassesEnteredSinceTheRawAttachStep) {
  // Without a module it is not loaded.
  ResourceModule module;
  for (const bool given : {true, false}) {
    AFX_EXTENSION_MODULE state;
    const CRuntimeClass* const before = ProgramClassList().head;
    AfxRawAttachExtensionModule();
    const CRuntimeClass guest("Guest", 1, nullptr, RUNTIME_CLASS(CObject));
    AfxRawAttachExtensionModule();
    const CRuntimeClass second("Second", 1, nullptr, RUNTIME_CLASS(CObject));
    EXPECT_EQ(AfxInitExtensionModule(state, given ? &module : nullptr), given);
    EXPECT_EQ(state.bInitialized, given);
    EXPECT_EQ(ProgramClassList().head, before);
    EXPECT_EQ(CRuntimeClass::FromName("Guest"), nullptr) << "its module isn't in the chain";
    {
      const CDynLinkLibrary link(state);
      EXPECT_EQ(CRuntimeClass::FromName("Guest"), given ? &guest : nullptr);
      EXPECT_EQ(CRuntimeClass::FromName("Second"), given ? &second : nullptr);
      EXPECT_EQ(CRuntimeClass::FromName("Dog"), RUNTIME_CLASS(Dog));
    }
    EXPECT_EQ(CRuntimeClass::FromName("Guest"), nullptr);
  }
}

}  // namespace
}  // namespace dq
