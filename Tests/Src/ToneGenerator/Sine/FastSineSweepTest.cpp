#include "Src/ToneGenerator/Sine/FastSine.h"
#include "Tests/Src/ToneGenerator/Sine/SineVariants.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <random>

namespace {

// Every variant beside the plain loop, over everything that decides a wave. LINEUP_SINE_SAMPLES says how
// many samples of the plain loop to compare with.

constexpr long long kSamples = 100'000'000;
constexpr double kLongest = 400'000.0;
constexpr double kTwoPi = 6.2831854820251465;
constexpr double kSecondsAYear = 31'557'600.0;

constexpr std::array kRates = {8000.0,   11'025.0, 16'000.0, 22'050.0,  24'000.0, 32'000.0,
                               37'800.0, 44'056.0, 44'100.0, 47'952.0,  48'000.0, 48'048.0,
                               64'000.0, 88'200.0, 96'000.0, 176'400.0, 192'000.0};
constexpr std::array kFrequencies = {997.0, 1000.0, 440.0,  80.0, 88.5, 660.0, 880.0,     1320.0,     2000.0,   0.0,
                                     1e-3,  1e-7,   -997.0, -0.5, 23e3, 30e3,  100'000.0, -250'000.0, 19'997.3, 20.0};
constexpr std::array kLevels = {0.125,   0.0625, 0.25,    1.0,  0.1,    -0.5, 0.0,
                                0x1p-40, 1e-41,  1.4e-45, 3e38, -1e-38, 7.0,  0.125};

class AnyWave {
public:
    struct Request {
        sine::Wave wave;
        std::size_t count;
    };

    Request Next() {
        const double rate = kRates[Index(kRates.size())];
        const double frequency = Coin() ? kFrequencies[Index(kFrequencies.size())] : Between(-1000.0, 25'000.0);
        const double level = Coin() ? kLevels[Index(kLevels.size())] : Between(-1.0, 1.0);
        // From three hours before zero to thirty years after it, some at zero itself.
        const double seconds = Coin() ? Between(-10'800.0, 10'800.0) : Between(0.0, 30.0 * kSecondsAYear);
        const double cyclesPerSample = frequency / rate;
        const double cycles = (Index(8) == 0 ? 0.0 : std::floor(seconds * rate)) * cyclesPerSample;
        const sine::Wave wave{(cycles - std::trunc(cycles)) * kTwoPi, kTwoPi * cyclesPerSample, level};
        return {wave, static_cast<std::size_t>(std::exp(Between(0.0, std::log(kLongest))))};
    }

private:
    double Between(double low, double high) { return std::uniform_real_distribution<double>(low, high)(mRandom); }
    std::size_t Index(std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(mRandom); }
    bool Coin() { return Index(2) == 0; }

    std::mt19937_64 mRandom{20261121};
};

long long SamplesToCompare() {
    const char* const asked = std::getenv("LINEUP_SINE_SAMPLES");
    return asked != nullptr ? std::atoll(asked) : kSamples;
}

TEST(FastSineSweep, IsThePlainLoopToTheBitWhateverTheWave) {
    const std::vector<test::SineVariant> variants = test::SineVariants();
    AnyWave any;
    std::vector<float> got(static_cast<std::size_t>(kLongest) + 1);
    long long compared = 0;
    for (const long long wanted = SamplesToCompare(); compared < wanted;) {
        const auto [wave, count] = any.Next();
        const std::vector<float> expected = test::Plain(wave, count);
        for (const test::SineVariant& variant : variants) {
            if (variant.runsHere) {
                std::fill_n(got.begin(), count, 2.0F);
                sine::WriteFast(*variant.kernels, wave, got.data(), static_cast<long long>(count));
                ASSERT_TRUE(test::AreTheSameBits(expected, std::span(got).first(count)))
                    << variant.name << ", " << testing::PrintToString(wave) << ", " << count << " samples";
            }
        }
        compared += static_cast<long long>(count);
    }
    RecordProperty("samples", std::to_string(compared));
    EXPECT_GT(compared, 0);
}

}  // namespace
