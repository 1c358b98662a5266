#include "Src/ToneGenerator/IdentSequences.h"

#include <array>
#include <bit>

using zelmediatypes::FrameRate;
using zelmediatypes::TickTime;

namespace {

//  seconds 0           3   4   5   6   7   8   9          12
//  L       |###########| |#|                   |###########|
//  R       |###########|         |#|           |###########|
//  Ls      |###########|                 |#|   |###########|
//  Rs      |###########|             |#|       |###########|
//  C       |###########|     |#|               |###########|
//  LFE     |###############################################|  80 Hz

constexpr FrameRate kEBUMultichannelPatternRate{3048192000000};  // 12 s
constexpr FrameRate kEBUMultichannelFrameRate{127008000000};     // 0.5 s, 24 to a cycle

constexpr double kToneFrequency = 1000.0;
constexpr double kLowFrequencyTone = 80.0;

// What sounds in each half second. Full-range channels that are not named are silent.
constexpr std::array<ident::ChannelSet, 24> kSounding = {
    ident::kFullRangeChannels, ident::kFullRangeChannels,
    ident::kFullRangeChannels,  // 0.0 s
    ident::kFullRangeChannels, ident::kFullRangeChannels,
    ident::kFullRangeChannels,                                                  // 1.5 s
    ident::kNoChannels,        ident::Only(ident::kLeftChannelIndex),           // 3.0 s
    ident::kNoChannels,        ident::Only(ident::kCentreChannelIndex),         // 4.0 s
    ident::kNoChannels,        ident::Only(ident::kRightChannelIndex),          // 5.0 s
    ident::kNoChannels,        ident::Only(ident::kRightSurroundChannelIndex),  // 6.0 s
    ident::kNoChannels,        ident::Only(ident::kLeftSurroundChannelIndex),   // 7.0 s
    ident::kNoChannels,        ident::kNoChannels,                              // 8.0 s
    ident::kFullRangeChannels, ident::kFullRangeChannels,
    ident::kFullRangeChannels,  // 9.0 s
    ident::kFullRangeChannels, ident::kFullRangeChannels,
    ident::kFullRangeChannels,  // 10.5 s
};
static_assert(kEBUMultichannelFrameRate * kSounding.size() == TickTime(kEBUMultichannelPatternRate.Ticks()));

constexpr bool IsInCycle(std::int64_t step) {
    return step >= 0 && step < static_cast<std::int64_t>(kSounding.size());
}

// Where times wrap there are steps outside the cycle: they sound on the left and silence nothing.
constexpr ident::ChannelSet SoundingAt(std::int64_t step) {
    return IsInCycle(step) ? kSounding.at(static_cast<std::size_t>(step)) : ident::Only(ident::kLeftChannelIndex);
}
constexpr ident::ChannelSet SilentAt(std::int64_t step) {
    return IsInCycle(step) ? ident::kFullRangeChannels & ~SoundingAt(step) : ident::kNoChannels;
}

}  // namespace

void ToneGenerator::GenerateEBUMultichannel(const TickTime& startTime, float** buffers, int numChannels,
                                            long long numSamples, bool peakMode) const {
    const TickTime endTime = startTime + mFrameRate * numSamples;

    for (long long pos = 0; pos < numSamples;) {
        const TickTime time = startTime + mFrameRate * pos;
        const ident::CyclePosition at = ident::Locate(time, kEBUMultichannelPatternRate, kEBUMultichannelFrameRate);
        const TickTime stepEnd = ident::StepEnd(at, kEBUMultichannelFrameRate);
        const long long count = SamplesUntil(stepEnd, time, endTime, numSamples - pos);

        const ident::ChannelSet sounding = SoundingAt(at.step);
        if (sounding == ident::kFullRangeChannels) {
            GenerateTonesAcrossChannels(ident::ToChannelList(sounding), time, static_cast<float>(kToneFrequency),
                                        ident::kLevelFloat, buffers, numChannels, pos, count, peakMode);
        } else {
            // The list comes first: where there is no memory for it, no channel of the step is written.
            const ToneGenerator::ChannelList silent = ident::ToChannelList(SilentAt(at.step));
            // A lone burst takes the phase of the request's start, not that of its own first sample.
            if (sounding != ident::kNoChannels) {
                WriteIdentTone(startTime, kToneFrequency, buffers[std::countr_zero(sounding)] + pos, count, peakMode);
            }
            GenerateSilenceAcrossChannels(silent, buffers, numChannels, pos, count);
        }
        pos += count;
    }
    WriteIdentTone(startTime, kLowFrequencyTone, buffers[ident::kLowFrequencyChannelIndex], numSamples, peakMode);
}
