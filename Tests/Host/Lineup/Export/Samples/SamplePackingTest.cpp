#include "Host/Lineup/Export/Samples/SamplePacking.h"
#include "Tests/Support/GuardedBuffer.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <vector>

namespace {

using lineup::PackSamples;
using lineup::SampleFormat;

constexpr float kInfinity = std::numeric_limits<float>::infinity();

std::int32_t Pack(float sample, SampleFormat format) {
    std::int32_t packed = 0;
    if (format == SampleFormat::S16) {
        std::int16_t narrow = 0;
        PackSamples({&sample, 1}, format, &narrow, 1);
        return narrow;
    }
    PackSamples({&sample, 1}, format, &packed, 1);
    return packed;
}

TEST(SamplePacking, ScalesToThePowerOfTwo) {
    EXPECT_EQ(Pack(0.25F, SampleFormat::S16), 8192);
    EXPECT_EQ(Pack(0.25F, SampleFormat::S24), 2097152 * 256);
    EXPECT_EQ(Pack(0.25F, SampleFormat::S32), 536870912);
    EXPECT_EQ(Pack(-1.0F, SampleFormat::S16), -32768);
    EXPECT_EQ(Pack(-1.0F, SampleFormat::S24), -8388608 * 256);
    EXPECT_EQ(Pack(-1.0F, SampleFormat::S32), std::numeric_limits<std::int32_t>::min());
}

TEST(SamplePacking, RoundsToTheNearestStepAndHalvesToEven) {
    constexpr float kStep = 1.0F / 32768.0F;
    EXPECT_EQ(Pack(0.49F * kStep, SampleFormat::S16), 0);
    EXPECT_EQ(Pack(0.5F * kStep, SampleFormat::S16), 0);
    EXPECT_EQ(Pack(0.51F * kStep, SampleFormat::S16), 1);
    EXPECT_EQ(Pack(1.5F * kStep, SampleFormat::S16), 2);
    EXPECT_EQ(Pack(-1.5F * kStep, SampleFormat::S16), -2);
    EXPECT_EQ(Pack(-0.51F * kStep, SampleFormat::S16), -1);
    EXPECT_EQ(Pack(1.5F / 8388608.0F, SampleFormat::S24), 2 * 256);
}

TEST(SamplePacking, ClipsWhatIsTooLoud) {
    for (const float loud : {1.0F, 1.5F, 1e30F, kInfinity}) {
        EXPECT_EQ(Pack(loud, SampleFormat::S16), 32767) << loud;
        EXPECT_EQ(Pack(loud, SampleFormat::S24), 8388607 * 256) << loud;
        EXPECT_EQ(Pack(loud, SampleFormat::S32), 2147483647) << loud;
        EXPECT_EQ(Pack(-loud, SampleFormat::S16), -32768) << loud;
        EXPECT_EQ(Pack(-loud, SampleFormat::S24), -8388608 * 256) << loud;
        EXPECT_EQ(Pack(-loud, SampleFormat::S32), std::numeric_limits<std::int32_t>::min()) << loud;
    }
}

TEST(SamplePacking, PacksNotANumberAsSilence) {
    for (const auto format : {SampleFormat::S16, SampleFormat::S24, SampleFormat::S32}) {
        EXPECT_EQ(Pack(std::nanf(""), format), 0);
    }
}

TEST(SamplePacking, KeepsFloatsBitForBit) {
    for (const float sample : {0.1F, -0.0F, 2.5F, 1e-42F, kInfinity, std::bit_cast<float>(0x7FA5C3E2U)}) {
        float packed = 0;
        PackSamples({&sample, 1}, SampleFormat::F32, &packed, 1);
        EXPECT_EQ(std::bit_cast<std::uint32_t>(packed), std::bit_cast<std::uint32_t>(sample));
    }
}

TEST(SamplePacking, TouchesOnlyItsOwnChannelOfAnInterleavedBuffer) {
    const std::vector<float> samples = {0.5F, -0.5F, 0.25F};
    test::GuardedBuffer packed(9);  // three samples of three channels; this one is the second
    PackSamples(samples, SampleFormat::F32, packed.Data() + 1, 3);
    EXPECT_EQ(packed[1], 0.5F);
    EXPECT_EQ(packed[4], -0.5F);
    EXPECT_EQ(packed[7], 0.25F);
    EXPECT_EQ(packed.UnwrittenSamples(), 6U);
    EXPECT_TRUE(packed.GuardsIntact());
}

TEST(SamplePacking, OfNoSamplesWritesNothing) {
    test::GuardedBuffer packed(1);
    PackSamples({}, SampleFormat::S32, packed.Data(), 1);
    EXPECT_EQ(packed.UnwrittenSamples(), 1U);
}

TEST(SamplePacking, CountsTheBytesOfASample) {
    EXPECT_EQ(lineup::BytesPerSample(SampleFormat::S16), 2U);
    EXPECT_EQ(lineup::BytesPerSample(SampleFormat::S24), 4U);
    EXPECT_EQ(lineup::BytesPerSample(SampleFormat::S32), 4U);
    EXPECT_EQ(lineup::BytesPerSample(SampleFormat::F32), 4U);
}

}  // namespace
