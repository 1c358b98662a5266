#include "Host/Lineup/Send/Transport/SoundLane.h"

#include <lineup/Error.h>

#include <algorithm>

namespace lineup {
inline namespace parts {

SoundFrames::~SoundFrames() = default;

SoundLane::SoundLane(SoundFrames& frames, const SoundFraming& framing)
    : mFrames(&frames),
      mFraming(framing),
      mPerFrame(static_cast<std::int64_t>(PacketsFor(framing.mostBytes, /*isEntry=*/true))) {}

std::int64_t SoundLane::MostFrames(const StreamTimes& times) const {
    return CeilDivided(times.BeginUp(1, mFraming.sampleRateHz), mFraming.frameSamples);
}

std::int64_t SoundLane::FirstFrame(const StreamTimes& times, std::int64_t slot) const {
    return FirstFrameFrom(times.BeginUp(slot, mFraming.sampleRateHz));
}

std::int64_t SoundLane::FirstFrameFrom(std::int64_t sample) const {
    return CeilDivided(Wide{sample} + mFraming.paddingSamples, mFraming.frameSamples);
}

std::int64_t SoundLane::SampleOf(std::int64_t frame) const noexcept {
    return frame * mFraming.frameSamples - mFraming.paddingSamples;
}

std::vector<TsPacket> SoundLane::Packets(std::int64_t frame, std::int64_t pts) {
    const std::span<const std::uint8_t> bytes = mFrames->Frame(frame);
    if (bytes.size() > mFraming.mostBytes) {
        throw Error("cannot send the sound: its codec made a frame that is larger than it may be");
    }
    const PesKind kind = {.pid = Pid::kSound, .streamId = mFraming.streamId, .bounded = true};
    PesPackets made = Packetise(bytes, kind, static_cast<std::size_t>(mPerFrame), /*isEntry=*/true);
    SetPts(std::span(made.packets.front()).subspan(made.ptsAt), pts);
    std::int64_t count = frame * mPerFrame;
    for (TsPacket& packet : made.packets) {
        SetCount(packet, count++);
    }
    return std::move(made.packets);
}

}  // namespace parts
}  // namespace lineup
