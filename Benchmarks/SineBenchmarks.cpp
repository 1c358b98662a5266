#include "Benchmarks/Race.h"
#include "Host/Interface/Core/VectorRuntime.h"
#include "Src/ToneGenerator/Sine/FastSine.h"
#include "Src/ToneGenerator/Sine/PlainSine.h"
#include "Src/ToneGenerator/ToneGenerator.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <vector>

// The exact sine against the loop that defines it, variant by variant, at the lengths that hosts ask for: one, two and
// ten milliseconds, a frame at 25 and at 23.976 a second, a tenth of a second, and five seconds. And the same on six
// channels.

namespace {

#define VECTOR_NAME(level, ...) #level,
constexpr std::array<const char*, kVectorVariantCount> kVariantNames = {VECTOR_LEVELS(VECTOR_NAME)};
#undef VECTOR_NAME
constexpr std::array<int, 7> kLengths = {48, 96, 480, 1920, 2002, 4800, 240'000};
constexpr std::array<double, 2> kFrequencies = {1000.0, 997.0};
constexpr double kRateHz = 48'000.0;
constexpr double kTwoPi = 6.2831854820251465;
constexpr double kAmplitude = 0.125;
constexpr int kSamplesPerTurn = 240'000;
constexpr int kTurns = 60;

void RaceSine(benchmark::State& state, std::int32_t variant, double frequency, int samples) {
    const sine::Wave wave{0.0, kTwoPi * (frequency / kRateHz), kAmplitude};
    std::vector<float> out(static_cast<std::size_t>(samples));
    ippJumpIndexForMergedLibs = variant;
    bench::Race(state, kSamplesPerTurn / samples, [&] { sine::WriteFast(wave, out.data(), samples); },
                {{"plain", [&] { sine::WritePlain(wave, out.data(), samples); }}});
    ippSafeInit();
}

constexpr int kChannelCount = 6;

// The job as it would be done without any of this: the plain sine once, copied to the other channels.
void WritePlainChannels(const sine::Wave& wave, float** channels, int samples) {
    sine::WritePlain(wave, channels[0], samples);
    for (int channel = 1; channel < kChannelCount; ++channel) {
        std::copy_n(channels[0], samples, channels[channel]);
    }
}

void RaceSixChannels(benchmark::State& state, int samples) {
    const zelmediatypes::FrameRate rate = zelmediatypes::FrameRateFromHz(static_cast<float>(kRateHz));
    const ToneGenerator generator(rate, kChannelCount);
    const sine::Wave wave{0.0, kTwoPi * (1000.0 / kRateHz), kAmplitude};
    std::vector<std::vector<float>> memory(kChannelCount, std::vector<float>(static_cast<std::size_t>(samples)));
    std::array<float*, kChannelCount> channels{};
    std::ranges::transform(memory, channels.begin(), [](std::vector<float>& each) { return each.data(); });
    bench::Race(state, kSamplesPerTurn / samples,
                [&] {
                    generator.GenerateTonesAcrossChannels(zelmediatypes::TickTime(0), 1000.0F,
                                                          static_cast<float>(kAmplitude), channels.data(),
                                                          kChannelCount, samples, false);
                },
                {{"plain", [&] { WritePlainChannels(wave, channels.data(), samples); }}});
}

void RegisterAll() {
    ippSafeInit();
    for (std::int32_t variant = 0; variant <= ippJumpIndexForMergedLibs; ++variant) {
        for (const double frequency : kFrequencies) {
            for (const int samples : kLengths) {
                const std::string name = "sine/" + std::string(kVariantNames.at(static_cast<std::size_t>(variant))) +
                                         "/" + std::to_string(static_cast<int>(frequency)) + "_Hz/" +
                                         std::to_string(samples);
                benchmark::RegisterBenchmark(name.c_str(), RaceSine, variant, frequency, samples)
                    ->Iterations(kTurns)
                    ->UseManualTime()
                    ->Unit(benchmark::kMicrosecond);
            }
        }
    }
    for (const int samples : kLengths) {
        benchmark::RegisterBenchmark(("six_channels/" + std::to_string(samples)).c_str(), RaceSixChannels, samples)
            ->Iterations(kTurns)
            ->UseManualTime()
            ->Unit(benchmark::kMicrosecond);
    }
}

}  // namespace

int main(int argc, char** argv) {
    return bench::RunAll(argc, argv, RegisterAll);
}
