// The library as a module: its handle, its entry point, and its place in the chain of resource
// modules.

#pragma once

#include "dqlib/platform/types.h"

namespace dq {

/// Why the entry point is called.
enum AttachReason : DWORD {
  PROCESS_DETACH = 0,
  PROCESS_ATTACH = 1,
  THREAD_ATTACH = 2,
  THREAD_DETACH = 3,
};

/// Puts the library's resources into the framework's chain. The entry point does it once; a host
/// whose own module keeps a chain may call it again, and every call adds one more link. Does
/// nothing before the process is attached.
void DQLIB_InitializeExtensionDLL();

/// The library's module handle, as its extension module record holds it; null before the process is
/// attached. The record takes up no run-time classes: those of a library that is linked statically
/// enter the program's own list, and there is no moment to move them out of it.
HINSTANCE DQLIB_GetInstanceHandle();

/// The library's entry point. In a program that links the library statically it runs by itself,
/// with the library's own module and `PROCESS_ATTACH`, while static objects are built. A process
/// attach returns 0, and the library must not be used, if the extension module can't be
/// initialised, which is when `module` is null; every other call returns 1. A detach takes nothing
/// down: what the library has handed out stays valid until the process is gone.
int DQLIB_EntryPoint(HINSTANCE module, DWORD reason, void* reserved);

}  // namespace dq
