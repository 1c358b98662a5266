#include "Host/Lineup/Values/FrameTimes.h"

namespace lineup {
inline namespace parts {

std::int64_t SamplesAtFrame(std::int64_t frame, Rational frameRate, int sampleRateHz) {
    __extension__ using Int128 = __int128;
    const Int128 samplesTimesNum = Int128{frame} * frameRate.den * sampleRateHz;
    return static_cast<std::int64_t>((2 * samplesTimesNum + frameRate.num) / (2 * Int128{frameRate.num}));
}

}  // namespace parts
}  // namespace lineup
