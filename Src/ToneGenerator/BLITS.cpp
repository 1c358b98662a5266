#include "Src/ToneGenerator/IdentSequences.h"

#include <array>
#include <bit>

using zelmediatypes::FrameRate;
using zelmediatypes::TickTime;

namespace {

//  seconds 0   0.8  1.6  2.4  3.2  4.0  4.8                          9.9 10.2    13.2 13.4
//  L       880                          |1k ## ## ## ## ###########|     |2k #####|
//  R            880                     |1k #######################|     |2k #####|
//  C                 1320                                                |2k #####|
//  LFE                    88.5                                           |2k #####|
//  Ls                          660                                       |2k #####|
//  Rs                               660                                  |2k #####|

constexpr FrameRate kBLITSPatternRate{3403814400000};  // 13.4 s
constexpr FrameRate kBLITSFrameRate{25401600000};      // 0.1 s, 134 to a cycle

constexpr float kClosingLevel = 0.0625F;  // -24.08 dBFS

enum class Writing : std::uint8_t {
    Across,   // one sine, copied to every sounding channel
    InPlace,  // one sine on one channel
    Nothing,
};

struct Row {
    std::int64_t lastStep;
    Writing writing;
    ident::ChannelSet sounding;
    double frequency;
    float level;
};

constexpr Row Burst(std::int64_t lastStep, ident::ChannelSet channel, double frequency) {
    return {lastStep, Writing::InPlace, channel, frequency, ident::kLevelFloat};
}
constexpr Row Together(std::int64_t lastStep, ident::ChannelSet channels, double frequency, float level) {
    return {lastStep, Writing::Across, channels, frequency, level};
}
constexpr Row Silence(std::int64_t lastStep) {
    return {lastStep, Writing::Nothing, ident::kNoChannels, 0.0, 0.0F};
}

// Channels that do not sound are silent. A request is cut at every step, also inside a row.
constexpr std::array<Row, 24> kRows = {{
    Burst(5, ident::kLeft, 880.0),  // 0.0 s: the channels one by one
    Silence(7),
    Burst(13, ident::kRight, 880.0),  // 0.8 s
    Silence(15),
    Burst(21, ident::kCentre, 1320.0),  // 1.6 s
    Silence(23),
    Burst(29, ident::kLowFrequency, 88.5),  // 2.4 s
    Silence(31),
    Burst(37, ident::kLeftSurround, 660.0),  // 3.2 s
    Silence(39),
    Burst(45, ident::kRightSurround, 660.0),  // 4.0 s
    Silence(47),
    Together(57, ident::kFrontPair, 1000.0, ident::kLevelFloat),  // 4.8 s: stereo, left broken four times
    Burst(60, ident::kRight, 1000.0),                             // 5.8 s
    Together(63, ident::kFrontPair, 1000.0, ident::kLevelFloat),
    Burst(66, ident::kRight, 1000.0),  // 6.4 s
    Together(69, ident::kFrontPair, 1000.0, ident::kLevelFloat),
    Burst(72, ident::kRight, 1000.0),  // 7.0 s
    Together(75, ident::kFrontPair, 1000.0, ident::kLevelFloat),
    Burst(78, ident::kRight, 1000.0),  // 7.6 s
    Together(98, ident::kFrontPair, 1000.0, ident::kLevelFloat),
    Silence(101),
    Together(131, ident::kAllChannels, 2000.0, kClosingLevel),  // 10.2 s: everything together
    Silence(133),
}};
static_assert(ident::MakeOneCycle(kRows, kBLITSPatternRate, kBLITSFrameRate));

}  // namespace

void ToneGenerator::GenerateBLITS(const TickTime& startTime, float** buffers, int numChannels, long long numSamples,
                                  bool peakMode) const {
    const TickTime endTime = startTime + mFrameRate * numSamples;

    for (long long pos = 0; pos < numSamples;) {
        const TickTime time = startTime + mFrameRate * pos;
        const ident::CyclePosition at = ident::Locate(time, kBLITSPatternRate, kBLITSFrameRate);
        const long long count = CountPieceSamples(at.stepStart, kBLITSFrameRate, time, endTime, numSamples - pos);

        // A step outside the cycle, which a ToFrame64 that rounds down never gives, would write nothing.
        if (const Row* const row = ident::FindRow(kRows, at.step)) {
            if (row->writing == Writing::Across) {
                GenerateTonesAcrossChannels(ident::ToChannelList(row->sounding), time,
                                            static_cast<float>(row->frequency), row->level, buffers, numChannels, pos,
                                            count, peakMode);
            } else if (row->writing == Writing::InPlace) {
                float* const channel = buffers[std::countr_zero(row->sounding)];
                WriteIdentTone(time, row->frequency, channel + pos, count, peakMode);
            }
            const ident::ChannelSet silent = ident::kAllChannels & ~row->sounding;
            GenerateSilenceAcrossChannels(ident::ToChannelList(silent), buffers, numChannels, pos, count);
        }
        pos += count;
    }
}
