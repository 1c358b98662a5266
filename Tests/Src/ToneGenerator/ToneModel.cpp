#include "Tests/Src/ToneGenerator/ToneModel.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

namespace model {

namespace {

// The generator's 2 pi: single precision, widened.
const double kTwoPi = std::bit_cast<double>(std::uint64_t{0x401921FB60000000});

std::uint32_t Bits(float value) {
    return std::bit_cast<std::uint32_t>(value);
}

}  // namespace

std::int64_t FloorDivide(std::int64_t a, std::int64_t b) {
    if (b == 0) {
        return 0;
    }
    const std::int64_t quotient = a / b;
    return a % b != 0 && (a < 0) != (b < 0) ? quotient - 1 : quotient;
}

std::vector<float> Tone(std::int64_t sampleTicks, std::int64_t phaseTicks, double frequencyHz, double level,
                        std::size_t count) {
    const double rateHz = 254016000000.0 / static_cast<double>(sampleTicks);
    const double cyclesPerSample = frequencyHz / rateHz;
    const double cycles = static_cast<double>(FloorDivide(phaseTicks, sampleTicks)) * cyclesPerSample;
    const double step = kTwoPi * cyclesPerSample;

    std::vector<float> samples(count);
    double phase = (cycles - static_cast<double>(static_cast<std::int64_t>(cycles))) * kTwoPi;
    for (float& sample : samples) {
        sample = static_cast<float>(std::sin(phase) * level);
        phase = phase + step;
    }
    return samples;
}

testing::AssertionResult SameBits(std::span<const float> expected, std::span<const float> got) {
    if (expected.size() != got.size()) {
        return testing::AssertionFailure() << got.size() << " samples instead of " << expected.size();
    }
    for (std::size_t i = 0; i < got.size(); ++i) {
        if (Bits(expected[i]) != Bits(got[i])) {
            return testing::AssertionFailure() << "sample " << i << " is " << got[i] << " instead of " << expected[i];
        }
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult IsSilent(std::span<const float> samples) {
    const auto sounding = std::ranges::find_if(samples, [](float sample) { return Bits(sample) != 0; });
    if (sounding == samples.end()) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "sample " << sounding - samples.begin() << " is " << *sounding;
}

testing::AssertionResult IsToneAt48kHz(std::span<const float> samples, std::int64_t firstIndex, double frequencyHz,
                                       double level) {
    constexpr double kTwoPiExcess = 1.7485e-7;
    const double cyclesPerSample = frequencyHz / 48000.0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double index = static_cast<double>(firstIndex) + static_cast<double>(i);
        // The remainder is exact for the frequencies of the idents, which are multiples of half a hertz.
        const double cycles = std::fmod(index * frequencyHz, 48000.0) / 48000.0;
        const double sine = level * std::sin(2.0 * std::numbers::pi * cycles);
        const double bound = level * (kTwoPiExcess * (cyclesPerSample * static_cast<double>(i) + 1.0) + 1e-7);
        if (!(std::abs(static_cast<double>(samples[i]) - sine) <= bound)) {
            return testing::AssertionFailure() << "sample " << i << " is " << samples[i] << ", a " << frequencyHz
                                               << " Hz tone would be " << sine << " within " << bound;
        }
    }
    return testing::AssertionSuccess();
}

}  // namespace model
