#pragma once

namespace lineup::decoding {

/// Sanitizers take all the address space there is, and look at the process with system calls of their own: with them,
/// neither has a limit.
#if defined(LINEUP_SANITIZED)
inline constexpr bool kIsSanitized = true;
#else
inline constexpr bool kIsSanitized = false;
#endif

}  // namespace lineup::decoding
