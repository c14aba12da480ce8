// The fixed-width integer names and opaque handles that interfaces of the library carry.
//
// The names are those that callers of the library know; the widths are the same on every platform,
// because texts, files and arithmetic depend on them.

#pragma once

#include <cstdint>

namespace dq {

namespace platform {
class Module;
struct Resource;
}  // namespace platform

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;

/// A truth value where an interface promises a number: 0 is false, anything else true.
using BOOL = int;

/// First and second argument of a window message, and its result; each is wide enough for a
/// pointer.
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;

/// A colour as hexadecimal 00bbggrr.
using COLORREF = std::uint32_t;

/// A module of code with resources. Null means what the operation that takes it says. Not owning.
using HINSTANCE = const platform::Module*;

/// One resource of a module, as a search finds it; null when there is none. Owned by the module.
using HRSRC = const platform::Resource*;

/// A window by its handle: an opaque number, never dereferenced, never reused while the process
/// lives. Null is no window.
struct WindowHandle;
using HWND = WindowHandle*;

}  // namespace dq
