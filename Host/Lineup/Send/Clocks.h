#pragma once

#include <lineup/Api.h>
#include <lineup/SendClock.h>
#include <lineup/SendSettings.h>

#include <memory>

namespace lineup {
inline namespace parts {

/// The machine's own clock for a timing: the monotonic one, the system's, or for SendTiming::Free one that nobody has
/// to wait for.
[[nodiscard]] LINEUP_API std::unique_ptr<SendClock> MakeClock(SendTiming timing);

}  // namespace parts
}  // namespace lineup
