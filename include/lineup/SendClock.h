#pragma once

#include <lineup/Api.h>

#include <cstdint>

namespace lineup {

/// The clock that a stream runs by. Used from the thread that sends alone.
class LINEUP_API SendClock {
public:
    SendClock() = default;
    virtual ~SendClock();
    SendClock(const SendClock&) = delete;
    SendClock& operator=(const SendClock&) = delete;

    /// Nanoseconds since whenever the clock begins; since 1970 for one that tells clip time (SendTiming::Wall).
    [[nodiscard]] virtual std::int64_t NowNs() = 0;

    /// Returns when it is `ns` or later, or earlier: who waits looks at the clock again.
    virtual void WaitUntilNs(std::int64_t ns) = 0;
};

}  // namespace lineup
