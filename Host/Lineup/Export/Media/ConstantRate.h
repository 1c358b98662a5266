#pragma once

#include <lineup/Rational.h>
#include "Host/Lineup/Export/Media/FfmpegHandles.h"

#include <cstdint>

namespace lineup {

/// Encoded MPEG-2 pictures at a constant bit rate: each is filled up with zeros, which decoders skip, to its share of
/// the bits, and says that it waits in the decoder's buffer for the time of one frame.
class ConstantRate {
public:
    ConstantRate(std::int64_t bitsPerSecond, Rational frameRate);

    /// The bytes of frame `index`: where the share is no whole number, frames take turns.
    [[nodiscard]] std::int64_t BytesOf(std::int64_t index) const;

    /// Makes `picture`, whose bytes may be changed, as long as the longest frame. Throws Error when it has no head.
    void FillUp(AVPacket& picture) const;

private:
    std::int64_t mBitsPerSecond;
    Rational mFrameRate;
};

}  // namespace lineup
