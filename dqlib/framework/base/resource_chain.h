// The search for resources: the current resource module, then the chain of extension modules, then
// the framework's own module. Wherever a module comes that others translate, these come before it.
//
// The current module and the chain are changed by the user-interface thread; any thread may search
// them, and no link is taken out while one does.

#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <string_view>

#include "dqlib/framework/base/object.h"
#include "dqlib/platform/modules.h"

namespace dq {

/// The current resource module. At first null, until the program sets one: then only the chain is
/// searched.
HINSTANCE AfxGetResourceHandle();
void AfxSetResourceHandle(HINSTANCE module);

/// The first module that has the resource, in the order above; the current resource module if none
/// has it. The name counts by its low 16 bits.
HINSTANCE AfxFindResourceHandle(UINT name, WORD type);

/// The text of the string with the id from the first module that has it and isn't empty there.
std::optional<std::string_view> AfxFindString(UINT id);

namespace detail {
/// From 1, another number whenever a search may find what it didn't find before: the current
/// module, the chain or a `ResourceModule` has changed. Any thread.
inline std::atomic<std::uint64_t> resource_generation = 1;
}  // namespace detail

/// The framework's own module, the end of every search: strings 57344 to 61999.
const platform::Module& FrameworkModule();

/// What the framework knows of an extension module. Zero until `AfxInitExtensionModule`.
struct AFX_EXTENSION_MODULE {
  bool bInitialized = false;
  /// Where the module's code lies, and where its resources lie; the same for most.
  HINSTANCE hModule = nullptr;
  HINSTANCE hResource = nullptr;
  /// Run-time classes that the module's static objects entered.
  ClassList classes;
};

/// A raw attach step for an extension module, to be called before its static objects are built:
/// moves the program's list of run-time classes aside, so that the module's record takes up those
/// of the module. A module that is linked into the program has no such moment; its classes stay in
/// the program's list. A second step before the module is initialised changes nothing.
void AfxRawAttachExtensionModule();

/// Fills the record, takes up the classes entered since the raw attach step and puts the program's
/// list back. Without a raw attach step the record takes up none. False, and no change to the
/// record, if the module is null; then the module isn't loaded, and its classes are dropped.
bool AfxInitExtensionModule(AFX_EXTENSION_MODULE& state, HINSTANCE module);

/// A link in the chain of extension modules. Making one puts it at the head of the chain,
/// destroying it takes it out. The same module may have several.
class CDynLinkLibrary {
 public:
  /// On the record of a module; the module must outlive the link. A record that isn't initialised
  /// gives a link without resources.
  explicit CDynLinkLibrary(AFX_EXTENSION_MODULE& state);
  /// On a module without run-time classes of its own, as a host's strings; it must outlive the
  /// link. If it translates another one, which is named then, its resources are found in place of
  /// that one's with the same numbers, also where that one is the current module; the newest
  /// translation first. What it doesn't have is found as before.
  explicit CDynLinkLibrary(HINSTANCE resources, HINSTANCE translated = nullptr);
  CDynLinkLibrary(const CDynLinkLibrary&) = delete;
  CDynLinkLibrary& operator=(const CDynLinkLibrary&) = delete;
  ~CDynLinkLibrary();

  HINSTANCE resources() const { return resources_; }
  /// The module that it translates, or null.
  HINSTANCE translated() const { return translated_; }
  const ClassList& classes() const { return classes_; }
  /// The next older link, null at the end.
  CDynLinkLibrary* next() const { return next_; }

  /// The newest link, null if there is none.
  static CDynLinkLibrary* head();

 private:
  /// Puts the link at the head, once it is whole.
  void Link();

  HINSTANCE resources_;
  HINSTANCE translated_ = nullptr;
  ClassList classes_;
  CDynLinkLibrary* next_ = nullptr;
};

}  // namespace dq
