#include "Src/ToneGenerator/ToneGenerator.h"

#include "Src/ToneGenerator/Sine/FastSine.h"
#include "Src/VectorPrimitives/VectorPrimitives.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <numeric>

using zelmediatypes::FrameRate;
using zelmediatypes::TickTime;

namespace {

// 2 pi rounded to single precision and widened. Every tone is defined with this value, so the exact
// one would change every sample.
constexpr double kTwoPi = 6.2831854820251465;
static_assert(std::bit_cast<std::uint64_t>(kTwoPi) == 0x401921FB60000000);

void WriteConstant(float level, float* out, long long numSamples) {
    if (numSamples > 0) {
        std::fill_n(out, numSamples, level);
    }
}

}  // namespace

ToneGenerator::ToneGenerator(const FrameRate& frameRate, int /*numChannels*/) noexcept : mFrameRate(frameRate) {}

void ToneGenerator::GenerateTone(const TickTime& startTime, float frequency, float amplitude, float* buffer,
                                 long long numSamples, bool peakMode) const {
    if (peakMode) {
        WriteConstant(amplitude, buffer, numSamples);
    } else {
        WriteSine(startTime, frequency, amplitude, buffer, numSamples);
    }
}

void ToneGenerator::GenerateSilence(float* buffer, long long numSamples) const {
    ippsZero_32f(buffer, static_cast<int>(numSamples));
}

void ToneGenerator::GenerateTonesAcrossChannels(const ChannelList& channels, const TickTime& startTime, float frequency,
                                                float amplitude, float** buffers, int /*numChannels*/,
                                                long long sampleOffset, long long numSamples, bool peakMode) const {
    if (channels.empty()) {
        return;
    }
    float* const first = buffers[channels.front()] + sampleOffset;
    GenerateTone(startTime, frequency, amplitude, first, numSamples, peakMode);
    std::for_each(channels.begin() + 1, channels.end(), [&](int channel) {
        ippsCopy_32f(first, buffers[channel] + sampleOffset, static_cast<int>(numSamples));
    });
}

void ToneGenerator::GenerateTonesAcrossChannels(const TickTime& startTime, float frequency, float amplitude,
                                                float** buffers, int numChannels, long long numSamples,
                                                bool peakMode) const {
    ChannelList channels(static_cast<std::size_t>(std::max(numChannels, 0)));
    std::iota(channels.begin(), channels.end(), 0);
    GenerateTonesAcrossChannels(channels, startTime, frequency, amplitude, buffers, numChannels, 0, numSamples,
                                peakMode);
}

void ToneGenerator::GenerateSilenceAcrossChannels(const ChannelList& channels, float** buffers, int /*numChannels*/,
                                                  long long sampleOffset, long long numSamples) const {
    if (buffers == nullptr || channels.empty()) {
        return;
    }
    float* const first = buffers[channels.front()] + sampleOffset;
    ippsZero_32f(first, static_cast<int>(numSamples));
    std::for_each(channels.begin() + 1, channels.end(), [&](int channel) {
        ippsCopy_32f(first, buffers[channel] + sampleOffset, static_cast<int>(numSamples));
    });
}

long long ToneGenerator::CalculateNumSamplesToGenerate(const TickTime& segmentStart, const FrameRate& segmentLength,
                                                       const TickTime& currentTime, const TickTime& endTime) const {
    const TickTime segmentEnd = segmentStart + TickTime(segmentLength.Ticks());
    const TickTime limit = std::min(endTime, segmentEnd);
    const std::int64_t count = (limit - currentTime).ToFrame64(mFrameRate);
    return count == 0 ? 1 : count;
}

void ToneGenerator::WriteSine(const TickTime& phaseTime, double frequency, double amplitude, float* out,
                              long long numSamples) const {
    const double cyclesPerSample = frequency / zelmediatypes::RateHz(mFrameRate);
    const double cycles = static_cast<double>(phaseTime.ToFrame64(mFrameRate)) * cyclesPerSample;
    const auto wholeCycles = static_cast<double>(zelcore::numeric::TruncateToInt64(cycles));

    const double phase = (cycles - wholeCycles) * kTwoPi;
    const double step = kTwoPi * cyclesPerSample;
    sine::WriteFast({phase, step, amplitude}, out, numSamples);
}
