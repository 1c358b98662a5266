#include "Src/ToneGenerator/IdentSequences.h"
#include "Src/VectorPrimitives/VectorPrimitives.h"

using zelmediatypes::FrameRate;
using zelmediatypes::TickTime;

namespace {

//  seconds 0                               2.75  3
//  left    |#################################|    |
//  right   |######################################|
//  step     0  1  2  3  4  5  6  7  8  9  10   11

constexpr FrameRate kEBUStereoPatternRate{762048000000};  // 3 s
constexpr FrameRate kEBUStereoFrameRate{63504000000};     // 0.25 s, twelve to a cycle

constexpr std::int64_t kSilentStep = 11;
constexpr FrameRate kToneLength{kEBUStereoFrameRate.Ticks() * kSilentStep};  // 2.75 s
static_assert(kToneLength.Ticks() + kEBUStereoFrameRate.Ticks() == kEBUStereoPatternRate.Ticks());

}  // namespace

void ToneGenerator::GenerateEBUStereo(const TickTime& startTime, float frequency, float** buffers, int /*numChannels*/,
                                      long long numSamples, bool peakMode) const {
    float* const left = buffers[ident::kLeftChannelIndex];
    const TickTime endTime = startTime + mFrameRate * numSamples;

    for (long long pos = 0; pos < numSamples;) {
        const TickTime time = startTime + mFrameRate * pos;
        const ident::CyclePosition at = ident::Locate(time, kEBUStereoPatternRate, kEBUStereoFrameRate);
        const bool silent = at.step == kSilentStep;
        const TickTime segmentStart = silent ? at.stepStart : at.cycleStart;
        const FrameRate segmentLength = silent ? kEBUStereoFrameRate : kToneLength;
        const long long count = CountPieceSamples(segmentStart, segmentLength, time, endTime, numSamples - pos);

        if (silent) {
            ippsZero_32f(left + pos, static_cast<int>(count));
        } else {
            WriteIdentTone(time, frequency, left + pos, count, peakMode);
        }
        pos += count;
    }
    WriteIdentTone(startTime, frequency, buffers[ident::kRightChannelIndex], numSamples, peakMode);
}
