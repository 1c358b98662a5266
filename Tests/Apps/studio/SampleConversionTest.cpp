#include "Apps/studio/Sound/SampleConversion.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

namespace {

using testing::ElementsAre;

template <class Sample>
std::vector<Sample> Converted(const std::vector<float>& samples, QAudioFormat::SampleFormat format) {
    std::vector<Sample> target(samples.size());
    studio::ConvertSamples(samples, format, reinterpret_cast<char*>(target.data()));
    return target;
}

TEST(SampleConversion, FloatsAreCopiedBitForBit) {
    const std::vector<float> samples = {0.1F, -0.0F, 1.5F, std::numeric_limits<float>::denorm_min()};
    const auto copied = Converted<float>(samples, QAudioFormat::Float);
    EXPECT_EQ(std::memcmp(copied.data(), samples.data(), samples.size() * sizeof(float)), 0);
}

TEST(SampleConversion, WholeNumbersAreRoundedAndClipped) {
    const std::vector<float> samples = {0, 0.25F, -1, 1, 7, -7, 0.6F / 32768, std::nanf("")};
    EXPECT_THAT(Converted<std::int16_t>(samples, QAudioFormat::Int16),
                ElementsAre(0, 8192, -32768, 32767, 32767, -32768, 1, 0));
    EXPECT_THAT(Converted<std::int32_t>({0.25F, 1, -1}, QAudioFormat::Int32),
                ElementsAre(1 << 29, 2147483647, -2147483647 - 1));
}

}  // namespace
