#include "Src/ToneGenerator/Sine/FastSine.h"
#include "Tests/Src/ToneGenerator/Sine/SineVariants.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

namespace {

// A sample whose value before narrowing lies on the middle between two floats, or a few parts in 2^53 off
// it, is the hardest there is: an error in the last place of a sine gives another float. Amplitudes are
// chosen so that one sample of the wave is such a one.

constexpr std::size_t kCount = 200;
constexpr int kWaves = 4000;

// The amplitude that brings sin(phase) to `distance` (in units of 2^-53 of the value) from a middle.
double AmplitudeForMiddle(double phase, double level, double distance) {
    const auto sample = static_cast<float>(std::sin(phase) * level);
    const double middle = (static_cast<double>(sample) + static_cast<double>(std::nextafter(sample, 2.0F))) / 2.0;
    return middle / std::sin(phase) * (1.0 + distance * 0x1p-53);
}

void ExpectPlainBesideMiddles(const test::SineVariant& variant, double firstPhase) {
    std::mt19937_64 random(29);
    std::uniform_real_distribution<double> anyStep(0.01, 0.15);
    std::uniform_int_distribution<std::size_t> anySample(0, kCount - 1);
    std::uniform_real_distribution<double> anyDistance(-40.0, 40.0);
    for (int i = 0; i < kWaves; ++i) {
        sine::Wave wave{firstPhase, anyStep(random), 1.0};
        double phase = wave.phase;
        for (std::size_t at = anySample(random); at != 0; --at) {
            phase += wave.step;
        }
        wave.amplitude = AmplitudeForMiddle(phase, 0.125, i % 2 == 0 ? 0.0 : anyDistance(random));
        std::vector<float> got(kCount);
        sine::WriteFast(*variant.kernels, wave, got.data(), kCount);
        ASSERT_TRUE(test::AreTheSameBits(test::Plain(wave, kCount), got)) << testing::PrintToString(wave);
    }
}

using AmbiguousSamples = test::SineVariantTest;

TEST_P(AmbiguousSamples, AmongPhasesAddedOneByOneAreTheLibrarys) {
    ExpectPlainBesideMiddles(GetParam(), 0.001);
}

TEST_P(AmbiguousSamples, InAStretchAreTheLibrarys) {
    // From 64 on at most 30 radians: all phases have one exponent.
    ExpectPlainBesideMiddles(GetParam(), 64.5);
}

TEST_P(AmbiguousSamples, FarOutAreTheLibrarys) {
    // Doubles lie 2^-30 apart there, further than the turns can be adjusted by.
    ExpectPlainBesideMiddles(GetParam(), 8'500'000.0);
}

TEST_P(AmbiguousSamples, NextToMultiplesOfPiAreTheLibrarys) {
    // A sine as small as 2^-53: as much of it as of the phase has to be right.
    std::mt19937_64 random(31);
    std::uniform_int_distribution<int> anyMultiple(1, 5'000'000);
    for (int i = 0; i < kWaves; ++i) {
        const int multiple = i < 100 ? i + 1 : anyMultiple(random);
        const sine::Wave wave{multiple * std::numbers::pi, i % 2 == 0 ? 0.1 : -0.1, 0.125};
        std::vector<float> got(20);
        sine::WriteFast(*GetParam().kernels, wave, got.data(), 20);
        ASSERT_TRUE(test::AreTheSameBits(test::Plain(wave, 20), got)) << testing::PrintToString(wave);
    }
}

INSTANTIATE_TEST_SUITE_P(Variants, AmbiguousSamples, testing::ValuesIn(test::SineVariants()), test::SineVariantName);

}  // namespace
