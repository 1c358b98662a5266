#include "Host/Lineup/Send/Sound/ClipCycle.h"

#include <lineup/Idents.h>
#include "Host/Interface/Media/TickTime.h"

#include <cmath>
#include <numeric>

namespace lineup {
inline namespace parts {

namespace {

// The tones of the sequences have whole cycles in ten of theirs, where one has none.
constexpr std::int64_t kSequencesACycle = 10;

// The seconds in which a tone has whole cycles. A frequency is a fraction whose denominator is a power of two.
std::int64_t SecondsOfTone(float frequencyHz) {
    constexpr int kMostDoublings = 23;  // of a single-precision number from 1 Hz on
    std::int64_t seconds = 1;
    double cycles = static_cast<double>(frequencyHz);
    for (int i = 0; i < kMostDoublings && cycles != std::floor(cycles); ++i) {
        cycles *= 2;
        seconds *= 2;
    }
    return seconds;
}

}  // namespace

std::int64_t CycleSamples(const Clip& clip) {
    const auto rate = static_cast<std::int64_t>(clip.SampleRate());
    if (!clip.Settings() || AsksForUnknownIdent(*clip.Settings())) {
        return rate;
    }
    if (const Ident* const ident = FindIdent(*clip.Settings())) {
        return kSequencesACycle * ident->cycleTicks / zelmediatypes::kTicksPerSecond * rate;
    }
    return SecondsOfTone(clip.Settings()->frequency) * rate;
}

}  // namespace parts
}  // namespace lineup
