#include "Src/ToneGenerator/IdentSequences.h"

#include <algorithm>
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
    kAcross,   // one sine, copied to every sounding channel
    kInPlace,  // one sine on one channel
    kSilence,
};

struct Piece {
    int lastSlot;
    Writing writing;
    ident::ChannelSet sounding;
    double frequency;
    float level;
};

constexpr ident::ChannelSet kL = ident::Only(ident::kLeftChannelIndex);
constexpr ident::ChannelSet kR = ident::Only(ident::kRightChannelIndex);
constexpr ident::ChannelSet kC = ident::Only(ident::kCentreChannelIndex);
constexpr ident::ChannelSet kLfe = ident::Only(ident::kLowFrequencyChannelIndex);
constexpr ident::ChannelSet kLs = ident::Only(ident::kLeftSurroundChannelIndex);
constexpr ident::ChannelSet kRs = ident::Only(ident::kRightSurroundChannelIndex);

constexpr Piece Burst(int lastSlot, ident::ChannelSet channel, double frequency) {
    return {lastSlot, Writing::kInPlace, channel, frequency, ident::kLevelFloat};
}
constexpr Piece Together(int lastSlot, ident::ChannelSet channels, double frequency, float level) {
    return {lastSlot, Writing::kAcross, channels, frequency, level};
}
constexpr Piece Silence(int lastSlot) {
    return {lastSlot, Writing::kSilence, ident::kNoChannels, 0.0, 0.0F};
}

// Each row runs from the slot after the row above to its last slot, a slot being 0.1 s. Channels that
// do not sound are silent.
constexpr std::array<Piece, 24> kPieces = {{
    Burst(5, kL, 880.0),  // 0.0 s: the channels one by one
    Silence(7),
    Burst(13, kR, 880.0),
    Silence(15),
    Burst(21, kC, 1320.0),
    Silence(23),
    Burst(29, kLfe, 88.5),
    Silence(31),
    Burst(37, kLs, 660.0),
    Silence(39),
    Burst(45, kRs, 660.0),
    Silence(47),
    Together(57, ident::kFrontPair, 1000.0, ident::kLevelFloat),  // 4.8 s: stereo, left broken four times
    Burst(60, kR, 1000.0),
    Together(63, ident::kFrontPair, 1000.0, ident::kLevelFloat),
    Burst(66, kR, 1000.0),
    Together(69, ident::kFrontPair, 1000.0, ident::kLevelFloat),
    Burst(72, kR, 1000.0),
    Together(75, ident::kFrontPair, 1000.0, ident::kLevelFloat),
    Burst(78, kR, 1000.0),
    Together(98, ident::kFrontPair, 1000.0, ident::kLevelFloat),
    Silence(101),
    Together(131, ident::kAllChannels, 2000.0, kClosingLevel),  // 10.2 s: everything together
    Silence(133),
}};
static_assert(kBLITSFrameRate * (kPieces.back().lastSlot + 1) == TickTime(kBLITSPatternRate.Ticks()));

// The piece that `slot` belongs to; null for the slots outside the cycle that there are where times wrap.
const Piece* FindPiece(std::int64_t slot) {
    if (slot < 0 || slot > kPieces.back().lastSlot) {
        return nullptr;
    }
    return std::ranges::lower_bound(kPieces, slot, {}, &Piece::lastSlot);
}

}  // namespace

void ToneGenerator::GenerateBLITS(const TickTime& startTime, float** buffers, int numChannels, long long numSamples,
                                  bool peakMode) const {
    const TickTime endTime = startTime + mFrameRate * numSamples;

    for (long long pos = 0; pos < numSamples;) {
        const TickTime time = startTime + mFrameRate * pos;
        const ident::CyclePosition at = ident::Locate(time, kBLITSPatternRate, kBLITSFrameRate);
        const TickTime slotEnd = ident::StepEnd(at, kBLITSFrameRate);
        const long long count = SamplesUntil(slotEnd, time, endTime, numSamples - pos);

        if (const Piece* piece = FindPiece(at.step)) {
            if (piece->writing == Writing::kAcross) {
                GenerateTonesAcrossChannels(ident::ToChannelList(piece->sounding), time,
                                            static_cast<float>(piece->frequency), piece->level, buffers, numChannels,
                                            pos, count, peakMode);
            } else if (piece->writing == Writing::kInPlace) {
                float* const channel = buffers[std::countr_zero(piece->sounding)];
                WriteIdentTone(time, piece->frequency, channel + pos, count, peakMode);
            }
            const ident::ChannelSet silent = ident::kAllChannels & ~piece->sounding;
            GenerateSilenceAcrossChannels(ident::ToChannelList(silent), buffers, numChannels, pos, count);
        }
        pos += count;
    }
}
