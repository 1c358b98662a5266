#pragma once

#include "Host/Lineup/Check/Reader/Decoder/FfmpegOwners.h"

#include <cstdint>

namespace lineup::decoding {

/// Brings the samples of a track to the rate of the others. Its own delay is made up for: a sample comes out at the
/// time at which it went in.
class Resampler {
public:
    /// From the format, channels and rate of `frame` to floats, channel after channel, at `rate` Hz. Throws EarlyEnd,
    /// std::bad_alloc.
    Resampler(const AVFrame& frame, int rate);

    /// What comes out when `frame` goes in, or with null what is left; holds until the next call. May be empty.
    [[nodiscard]] const AVFrame& Convert(const AVFrame* frame);

private:
    AvResampler mContext;
    AvFrame mConverted;
    AVChannelLayout mLayout;
    int mRate;
};

}  // namespace lineup::decoding
