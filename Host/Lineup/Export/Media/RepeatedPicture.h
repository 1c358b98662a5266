#pragma once

#include "Host/Lineup/Export/Media/ConstantRate.h"
#include "Host/Lineup/Export/Media/FfmpegHandles.h"
#include "Host/Lineup/Export/Media/GopTimecode.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace lineup {

/// One encoded picture as the packet of every frame. Packets share its memory; where each carries its own time
/// code, a few copies serve by turns.
class RepeatedPicture {
public:
    /// `timecode`: what each packet says of itself, if anything.
    /// `rate`: how long each packet is, where the encoder has no say in it; the picture is filled up by now.
    RepeatedPicture(AvPacket picture, std::optional<GopTimecode> timecode, std::optional<ConstantRate> rate);

    [[nodiscard]] std::int64_t Bytes() const noexcept { return mCopies.front()->size; }

    /// Makes `packet`, which is blank, the packet of frame `index`, timed in frames.
    void Fill(AVPacket& packet, std::int64_t index);

private:
    AVPacket& FreeCopy();

    std::int64_t mDelay;            // frames from decoding to showing, as the encoder has it
    std::vector<AvPacket> mCopies;  // the first is the picture itself
    std::optional<GopTimecode> mTimecode;
    std::optional<ConstantRate> mRate;
};

}  // namespace lineup
