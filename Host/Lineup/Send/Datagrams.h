#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Send/Output/StreamOutput.h"
#include "Host/Lineup/Send/Pacer.h"
#include "Host/Lineup/Send/Transport/StreamTimes.h"

#include <cstdint>
#include <span>
#include <vector>

namespace lineup {
inline namespace parts {

/// Sends the packets of a transport stream seven to a datagram, each datagram when its first packet is due. Where a
/// datagram begins follows from the packets' numbers alone.
class LINEUP_API Datagrams {
public:
    static constexpr std::int64_t kPackets = 7;

    Datagrams(Pacer& pacer, StreamOutput& output, const StreamTimes& times);

    /// Sends whole packets, of which the first has the number `first`; the last may wait for those after them. False
    /// as Pacer::Wait says: of these packets the rest is not sent, and none waits.
    [[nodiscard]] bool Send(std::int64_t first, std::span<const std::uint8_t> packets, SendStatus& status);

    /// Sends what waits. False as above.
    [[nodiscard]] bool Flush(SendStatus& status);

private:
    Pacer* mPacer;
    StreamOutput* mOutput;
    StreamTimes mTimes;
    std::int64_t mFirst = 0;  // the number of the first packet that waits
    std::vector<std::uint8_t> mWaiting;
};

}  // namespace parts
}  // namespace lineup
