#pragma once

#include <lineup/Api.h>
#include <lineup/Send.h>
#include "Host/Lineup/Send/Output/StreamOutput.h"
#include "Host/Lineup/Send/Transport/StreamTimes.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace lineup {
inline namespace parts {

/// Sends the packets of a stream seven to a datagram, each datagram when its first packet is due. Where a datagram
/// begins follows from the packets' numbers alone.
class LINEUP_API Pacer {
public:
    static constexpr std::int64_t kPacketsADatagram = 7;

    /// What is so much too late or too early is no delay: the clock has leapt, or the machine stood still.
    static constexpr std::int64_t kLeapNs = 1'000'000'000;

    /// `originNs`: the clock's time of packet 0; without one, the first packet is due at once, and where the clock
    /// leaps the stream goes on later.
    Pacer(SendClock& clock, StreamOutput& output, const StreamTimes& times, std::optional<std::int64_t> originNs);

    /// Sends whole packets, of which the first has the number `first`; the last may wait for those after them. False
    /// when the clock has leapt away from a given origin: of these packets the rest is not sent, and nothing waits.
    [[nodiscard]] bool Send(std::int64_t first, std::span<const std::uint8_t> packets, SendStatus& status);

    /// Sends what waits. False as above.
    [[nodiscard]] bool Flush(SendStatus& status);

private:
    [[nodiscard]] bool WaitForTurn(SendStatus& status);
    [[nodiscard]] bool HasLeapt(std::int64_t now) const;

    SendClock* mClock;
    StreamOutput* mOutput;
    StreamTimes mTimes;
    bool mIsGiven;
    std::optional<std::int64_t> mOrigin;
    std::int64_t mLastSent;
    std::int64_t mFirst = 0;  // the number of the first packet that waits
    std::vector<std::uint8_t> mWaiting;
};

}  // namespace parts
}  // namespace lineup
