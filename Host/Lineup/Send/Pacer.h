#pragma once

#include <lineup/Api.h>
#include <lineup/Send.h>

#include <cstdint>
#include <optional>

namespace lineup {
inline namespace parts {

/// Waits until a datagram's time has come.
class LINEUP_API Pacer {
public:
    /// What is so much too late or too early is no delay: the clock has leapt, or the machine stood still.
    static constexpr std::int64_t kLeapNs = 1'000'000'000;

    static constexpr std::int64_t kTogether = 4;

    /// `originNs`: the clock's time of the stream's begin; without one, the first datagram is due at once, and where
    /// the clock leaps the stream goes on later.
    Pacer(SendClock& clock, std::optional<std::int64_t> originNs);

    /// Returns when a datagram is due that leaves `atNs` after the stream's begin, `apartNs` after the one before it.
    /// At once when it is late already, but at no more than twice the rate, of which kTogether datagrams may come
    /// together where the system was late to wake this thread. False when the clock has leapt
    /// away from a given origin.
    [[nodiscard]] bool Wait(std::int64_t atNs, std::int64_t apartNs, SendStatus& status);

private:
    SendClock* mClock;
    bool mIsGiven;
    std::optional<std::int64_t> mOrigin;
    std::optional<std::int64_t> mLastTurn;
};

}  // namespace parts
}  // namespace lineup
