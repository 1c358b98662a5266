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

struct Row {
    std::int64_t lastStep;
    ident::ChannelSet sounding;  // the other full-range channels are silent
};

constexpr std::array<Row, 13> kRows = {{
    {5, ident::kFullRangeChannels},  // 0.0 s: all together
    {6, ident::kNoChannels},
    {7, ident::kLeft},  // 3.5 s: one by one
    {8, ident::kNoChannels},
    {9, ident::kCentre},  // 4.5 s
    {10, ident::kNoChannels},
    {11, ident::kRight},  // 5.5 s
    {12, ident::kNoChannels},
    {13, ident::kRightSurround},  // 6.5 s
    {14, ident::kNoChannels},
    {15, ident::kLeftSurround},  // 7.5 s
    {17, ident::kNoChannels},
    {23, ident::kFullRangeChannels},  // 9.0 s: all together again
}};
static_assert(ident::MakeOneCycle(kRows, kEBUMultichannelPatternRate, kEBUMultichannelFrameRate));

}  // namespace

void ToneGenerator::GenerateEBUMultichannel(const TickTime& startTime, float** buffers, int numChannels,
                                            long long numSamples, bool peakMode) const {
    const TickTime endTime = startTime + mFrameRate * numSamples;

    for (long long pos = 0; pos < numSamples;) {
        const TickTime time = startTime + mFrameRate * pos;
        const ident::CyclePosition at = ident::Locate(time, kEBUMultichannelPatternRate, kEBUMultichannelFrameRate);
        const long long count =
            CountPieceSamples(at.stepStart, kEBUMultichannelFrameRate, time, endTime, numSamples - pos);

        // A step outside the cycle, which a ToFrame64 that rounds down never gives, would sound on the left alone.
        const Row* const row = ident::FindRow(kRows, at.step);
        const ident::ChannelSet sounding = row != nullptr ? row->sounding : ident::kLeft;
        const ident::ChannelSet silent = row != nullptr ? ident::kFullRangeChannels & ~sounding : ident::kNoChannels;
        if (sounding == ident::kFullRangeChannels) {
            GenerateTonesAcrossChannels(ident::ToChannelList(sounding), time, static_cast<float>(kToneFrequency),
                                        ident::kLevelFloat, buffers, numChannels, pos, count, peakMode);
        } else {
            // The list comes first: out of memory, no channel of the step is written.
            const ChannelList silentList = ident::ToChannelList(silent);
            // A lone burst takes the phase of the request's start, not that of its own first sample.
            if (sounding != ident::kNoChannels) {
                WriteIdentTone(startTime, kToneFrequency, buffers[std::countr_zero(sounding)] + pos, count, peakMode);
            }
            GenerateSilenceAcrossChannels(silentList, buffers, numChannels, pos, count);
        }
        pos += count;
    }
    WriteIdentTone(startTime, kLowFrequencyTone, buffers[ident::kLowFrequencyChannelIndex], numSamples, peakMode);
}
