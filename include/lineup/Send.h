#pragma once

#include <lineup/Api.h>
#include <lineup/Clip.h>
#include <lineup/Error.h>
#include <lineup/SendClock.h>
#include <lineup/SendSettings.h>
#include <lineup/UsageError.h>

#include <cstdint>
#include <functional>
#include <string>

namespace lineup {

/// How a stream goes.
struct SendStatus {
    double seconds = 0;              ///< sent so far
    double clipSeconds = 0;          ///< the clip time that is sent now
    std::int64_t bitsPerSecond = 0;  ///< constant; of FLV what it was so far
    std::int64_t bytes = 0;          ///< of the stream, without the network's own
    std::int64_t datagrams = 0;      ///< or pieces of a file
    std::int64_t lateDatagrams = 0;  ///< that left more than kLateMs after their time
    double worstLateMs = 0;          ///< of all
    std::int64_t lostDatagrams = 0;  ///< that the system refused to send
    std::int64_t jumps = 0;          ///< how often the clock, or this machine, stood still or leapt
    double delayMs = 0;              ///< by how much what is shown lies behind the stream's clock
};

/// A datagram that leaves so much after its time is late.
inline constexpr double kLateMs = 2;

/// Called as a stream goes on, ten times a second at least while nothing holds it up; returns false to end it. Called
/// on the thread that sends. May be empty.
using SendProgress = std::function<bool(const SendStatus& status)>;

/// What a target asks for: FLV for rtmp:// and files called so, else a transport stream.
[[nodiscard]] LINEUP_API StreamFormat UsualFormat(const std::string& target);

/// Throws UsageError when `settings` cannot be sent from `clip` as they stand. Opens nothing.
LINEUP_API void CheckSend(const Clip& clip, const SendSettings& settings);

/// What a receiver of rtp:// has to be told beforehand: a session description (RFC 4566). Throws UsageError as
/// CheckSend does, and for another target.
[[nodiscard]] LINEUP_API std::string DescribeSession(const Clip& clip, const SendSettings& settings);

/// Sends `clip` as a stream, of constant bit rate but for FLV, each datagram at its time, until the samples that were
/// asked for are sent or `progress` returns false, and says how it went. The picture is encoded once; so is the sound
/// where a cycle of it fits into memory. Which bytes are sent follows from the settings and the clip time alone. Throws
/// UsageError as CheckSend does, or when the file exists and may not be replaced; Error when sending cannot begin, or
/// what receives a pipe or file does not take any more. What `progress` throws is thrown on. Any thread.
LINEUP_API SendStatus Send(const Clip& clip, const SendSettings& settings, const SendProgress& progress = {});

}  // namespace lineup
