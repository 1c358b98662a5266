#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Send/Transport/StreamTimes.h"
#include "Host/Lineup/Send/Transport/TsPacket.h"

#include <cstdint>
#include <span>

namespace lineup {
inline namespace parts {

/// The sound as its codec cuts it: frame n stands for the samples from n * frameSamples - paddingSamples on.
class LINEUP_API SoundFrames {
public:
    SoundFrames() = default;
    virtual ~SoundFrames();
    SoundFrames(const SoundFrames&) = delete;
    SoundFrames& operator=(const SoundFrames&) = delete;

    /// The bytes of frame `index`, valid until the next call. The same each time for the same index.
    [[nodiscard]] virtual std::span<const std::uint8_t> Frame(std::int64_t index) = 0;
};

/// What does not change from one frame to the next.
struct SoundFraming {
    int sampleRateHz = 0;
    int frameSamples = 0;
    int paddingSamples = 0;     ///< by which the decoder's samples lie behind those of the frame
    std::size_t mostBytes = 0;  ///< that a frame may have
    std::uint8_t streamId = 0;
};

/// The sound's packets: every frame is wrapped into the same number of packets, whatever it has, so that the counter of
/// each is known without those before it.
class LINEUP_API SoundLane {
public:
    SoundLane(SoundFrames& frames, const SoundFraming& framing);

    /// The packets of a frame.
    [[nodiscard]] std::int64_t PerFrame() const noexcept { return mPerFrame; }

    /// The most frames that begin in one slot.
    [[nodiscard]] std::int64_t MostFrames(const StreamTimes& times) const;

    /// The first frame that begins in slot `slot` or later.
    [[nodiscard]] std::int64_t FirstFrame(const StreamTimes& times, std::int64_t slot) const;

    /// The first frame that begins with sample `sample` or a later one.
    [[nodiscard]] std::int64_t FirstFrameFrom(std::int64_t sample) const;

    /// The sample with which a frame begins.
    [[nodiscard]] std::int64_t SampleOf(std::int64_t frame) const noexcept;
    [[nodiscard]] int SampleRateHz() const noexcept { return mFraming.sampleRateHz; }

    /// The packets of a frame, counted, with their time stamp in 90 kHz.
    [[nodiscard]] std::vector<TsPacket> Packets(std::int64_t frame, std::int64_t pts);

private:
    SoundFrames* mFrames;
    SoundFraming mFraming;
    std::int64_t mPerFrame;
};

}  // namespace parts
}  // namespace lineup
