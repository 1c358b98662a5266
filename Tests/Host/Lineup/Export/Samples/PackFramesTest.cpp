#include "Host/Interface/Core/VectorRuntime.h"
#include "Host/Lineup/Export/Samples/SamplePacking.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

using lineup::PackFrames;
using lineup::SampleFormat;

constexpr std::array kFormats = {SampleFormat::S16, SampleFormat::S24, SampleFormat::S32, SampleFormat::F32};
constexpr std::uint8_t kGuard = 0xA5;
constexpr std::size_t kGuardBytes = 64;

// Sets the dispatch index for the time of a test.
class ForcedVariant {
public:
    explicit ForcedVariant(std::int32_t variant) : mBefore(ippJumpIndexForMergedLibs) {
        ippJumpIndexForMergedLibs = variant;
    }
    ~ForcedVariant() { ippJumpIndexForMergedLibs = mBefore; }
    ForcedVariant(const ForcedVariant&) = delete;
    ForcedVariant& operator=(const ForcedVariant&) = delete;

private:
    std::int32_t mBefore;
};

std::int32_t BestVariant() {
    ippSafeInit();
    return ippJumpIndexForMergedLibs;
}

// One sample as a file holds it: the words of SamplePacking.h, with the library's long double rounding.
std::uint32_t Expected(float sample, SampleFormat format) {
    if (format == SampleFormat::F32) {
        return std::bit_cast<std::uint32_t>(sample);
    }
    if (std::isnan(sample)) {
        return 0;
    }
    const int bits = format == SampleFormat::S16 ? 16 : format == SampleFormat::S24 ? 24 : 32;
    const long double full = std::ldexp(1.0L, bits - 1);
    const long double steps = std::nearbyint(static_cast<long double>(sample) * full);
    const auto clipped = static_cast<std::int64_t>(std::fmax(-full, std::fmin(full - 1, steps)));
    return static_cast<std::uint32_t>(clipped);
}

std::vector<std::uint8_t> ExpectedBytes(const std::vector<std::vector<float>>& channels, std::size_t count,
                                        SampleFormat format) {
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i < count; ++i) {
        for (const auto& channel : channels) {
            const std::uint32_t value = Expected(channel[i], format);
            for (std::size_t byte = 0; byte < lineup::PackedBytes(format); ++byte) {
                bytes.push_back(static_cast<std::uint8_t>(value >> (8 * byte)));
            }
        }
    }
    return bytes;
}

// What PackFrames writes; complains when it writes beyond.
std::vector<std::uint8_t> Packed(const std::vector<std::vector<float>>& channels, std::size_t count,
                                 SampleFormat format) {
    std::vector<const float*> pointers;
    for (const auto& channel : channels) {
        pointers.push_back(channel.data());
    }
    const std::size_t bytes = count * channels.size() * lineup::PackedBytes(format);
    std::vector<std::uint8_t> memory(bytes + 2 * kGuardBytes, kGuard);
    PackFrames(pointers, count, format, memory.data() + kGuardBytes);
    for (std::size_t i = 0; i < kGuardBytes; ++i) {
        EXPECT_EQ(memory[i], kGuard);
        EXPECT_EQ(memory[kGuardBytes + bytes + i], kGuard) << i << " bytes behind " << count << " samples";
    }
    return {memory.begin() + kGuardBytes, memory.begin() + static_cast<std::ptrdiff_t>(kGuardBytes + bytes)};
}

std::vector<float> Awkward() {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    std::vector<float> samples = {0.0F,       -0.0F, 1.0F,   -1.0F,  0.25F,  kInfinity,
                                  -kInfinity, 1e30F, -1e30F, 1e-42F, -1e-42F};
    samples.push_back(std::nanf(""));
    samples.push_back(-std::nanf("7"));
    samples.push_back(std::bit_cast<float>(0x7FA5C3E1U));  // a signalling NaN
    for (const int bits : {16, 24, 32}) {
        const float step = std::ldexp(1.0F, 1 - bits);
        for (const float steps : {0.49F, 0.5F, 0.51F, 1.5F, 2.5F, 3.5F}) {
            samples.push_back(steps * step);
            samples.push_back(-steps * step);
        }
        for (const float edge : {1.0F, 1.0F - step, 1.0F - step / 2, 1.0F - 2 * step, 1.0F + step}) {
            for (const float near : {edge, std::nextafter(edge, 0.0F), std::nextafter(edge, 2.0F)}) {
                samples.push_back(near);
                samples.push_back(-near);
            }
        }
    }
    return samples;
}

using Channels = std::vector<std::vector<std::vector<float>>>;

class PackFramesForms : public testing::TestWithParam<std::int32_t> {};

TEST_P(PackFramesForms, PackWhatTheDefinitionSaysForAwkwardSamples) {
    if (GetParam() > BestVariant()) {
        GTEST_SKIP() << "this processor does not run it";
    }
    const ForcedVariant forced(GetParam());
    const auto awkward = Awkward();
    // Each of them at each place of a register.
    for (std::size_t shift = 0; shift < 16; ++shift) {
        std::vector<float> samples(shift, 0.125F);
        samples.insert(samples.end(), awkward.begin(), awkward.end());
        samples.resize(samples.size() + 32, 0.125F);
        std::vector<float> backwards(samples.rbegin(), samples.rend());
        for (const auto format : kFormats) {
            for (const auto& channels : Channels{{samples}, {samples, backwards}}) {
                ASSERT_EQ(Packed(channels, samples.size(), format), ExpectedBytes(channels, samples.size(), format));
            }
        }
    }
}

TEST_P(PackFramesForms, PackEveryLengthAndNumberOfChannels) {
    if (GetParam() > BestVariant()) {
        GTEST_SKIP() << "this processor does not run it";
    }
    const ForcedVariant forced(GetParam());
    std::mt19937 random(3);
    std::uniform_real_distribution<float> sample(-1.1F, 1.1F);
    for (const std::size_t channels : {1U, 2U, 3U, 4U, 6U, 8U, 65U, 66U}) {
        std::vector<std::vector<float>> samples(channels, std::vector<float>(1100));
        for (auto& channel : samples) {
            std::ranges::generate(channel, [&] { return sample(random); });
        }
        for (const auto format : kFormats) {
            for (std::size_t count = 0; count < 70; ++count) {
                ASSERT_EQ(Packed(samples, count, format), ExpectedBytes(samples, count, format))
                    << channels << " channels, " << count << " samples";
            }
            ASSERT_EQ(Packed(samples, 1023, format), ExpectedBytes(samples, 1023, format));
        }
    }
}

TEST_P(PackFramesForms, PackAnyBitPatternAlike) {
    if (GetParam() > BestVariant()) {
        GTEST_SKIP() << "this processor does not run it";
    }
    const ForcedVariant forced(GetParam());
    std::mt19937 random(5);
    std::vector<std::vector<float>> samples(2, std::vector<float>(100000));
    for (auto& channel : samples) {
        std::ranges::generate(channel, [&] { return std::bit_cast<float>(static_cast<std::uint32_t>(random())); });
    }
    for (const auto format : kFormats) {
        ASSERT_EQ(Packed(samples, samples[0].size(), format), ExpectedBytes(samples, samples[0].size(), format));
    }
}

#define VECTOR_NAME(level, ...) #level,
constexpr std::array kLevelNames = {VECTOR_LEVELS(VECTOR_NAME)};
#undef VECTOR_NAME
INSTANTIATE_TEST_SUITE_P(Variants, PackFramesForms, testing::Range<std::int32_t>(kVectorLowest, kVectorVariantCount),
                         [](const auto& row) { return kLevelNames.at(static_cast<std::size_t>(row.param)); });

TEST(PackFrames, LaysOutStereoOf24BitsLowestByteFirst) {
    const float left = 0.5F;                 // 0x400000
    const float right = -1.0F / 8388608.0F;  // -1
    const std::array<const float*, 2> channels = {&left, &right};
    std::array<std::uint8_t, 6> packed{};
    PackFrames(channels, 1, SampleFormat::S24, packed.data());
    EXPECT_EQ(packed, (std::array<std::uint8_t, 6>{0x00, 0x00, 0x40, 0xFF, 0xFF, 0xFF}));
}

TEST(PackFrames, CountsTheBytesOfASampleInAFile) {
    EXPECT_EQ(lineup::PackedBytes(SampleFormat::S16), 2U);
    EXPECT_EQ(lineup::PackedBytes(SampleFormat::S24), 3U);
    EXPECT_EQ(lineup::PackedBytes(SampleFormat::S32), 4U);
    EXPECT_EQ(lineup::PackedBytes(SampleFormat::F32), 4U);
}

}  // namespace
