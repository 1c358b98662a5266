#pragma once

#include <lineup/Api.h>
#include <lineup/SendSettings.h>

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace lineup {
inline namespace parts {

/// What RTP says of a datagram; both follow from the clip time alone.
struct StreamMoment {
    std::int64_t datagram = 0;   ///< its number in the stream
    std::int64_t timestamp = 0;  ///< in the units of what is sent: 90 kHz of a transport stream, samples of sound
    bool isEntry = true;         ///< whoever begins to receive can begin with it
};

/// How RTP numbers what it carries.
enum class RtpPayload : std::uint8_t {
    TransportStream = 33,
    Sound = 96,  ///< the first of those that a session description explains
};

/// Where a stream goes.
class LINEUP_API StreamOutput {
public:
    StreamOutput() = default;
    virtual ~StreamOutput();
    StreamOutput(const StreamOutput&) = delete;
    StreamOutput& operator=(const StreamOutput&) = delete;

    /// Sends a datagram's worth of the stream; false when it is lost, and the stream goes on. Throws Error when nothing
    /// takes it any more.
    [[nodiscard]] virtual bool Write(std::span<const std::uint8_t> bytes, const StreamMoment& moment) = 0;
};

/// Opens what the settings' target names. Throws UsageError for one that cannot be, and Error.
[[nodiscard]] LINEUP_API std::unique_ptr<StreamOutput> OpenOutput(const SendSettings& settings, RtpPayload payload);

/// The same for a stream that begins with a head, on every connection; behind it an entry follows.
[[nodiscard]] LINEUP_API std::unique_ptr<StreamOutput> OpenOutput(const SendSettings& settings,
                                                                  const std::vector<std::uint8_t>& head);

}  // namespace parts
}  // namespace lineup
