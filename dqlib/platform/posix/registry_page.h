// Pages of files that others may cut short while they are mapped.

#pragma once

#include <cstddef>

namespace dq::platform::posix {

/// The most bytes that a guarded mapping may have; none is larger than a page.
inline constexpr std::size_t kMaxGuardedSize = 4096;

/// From now on, reading this mapping, which begins with a page, ends the process no more when its
/// file has become shorter: the page is then one of zeros, for good. False if that can't be had,
/// because too many are guarded or the system doesn't let the signal be caught.
///
/// The first call takes SIGBUS over for the rest of the process; what isn't about a guarded page
/// goes on to the handler that was there before. A program that sets a handler of its own later
/// should hand on what it doesn't know. Any thread.
bool GuardPage(void* page);
/// Ends that, before the page is unmapped. Any thread.
void UnguardPage(void* page);

}  // namespace dq::platform::posix
