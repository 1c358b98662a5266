#include "Src/ToneGenerator/Sine/FastSine.h"
#include "Tests/Src/ToneGenerator/Sine/SineVariants.h"
#include "Tests/Support/GuardedBuffer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using sine::Wave;
using test::AreTheSameBits;
using test::GuardedBuffer;
using test::Plain;

class FastSine : public test::SineVariantTest {
protected:
    static void WriteFast(const Wave& wave, float* out, long long count) {
        sine::WriteFast(*GetParam().kernels, wave, out, count);
    }

    static testing::AssertionResult IsPlain(const Wave& wave, std::size_t count) {
        GuardedBuffer got(count);
        WriteFast(wave, got.Data(), static_cast<long long>(count));
        if (!got.GuardsIntact()) {
            return testing::AssertionFailure() << "wrote outside its " << count << " samples";
        }
        return AreTheSameBits(Plain(wave, count), got.Samples());
    }
};

constexpr double kStep1kHz = 0.13089969394124782;  // 1000 Hz at 48 kHz
constexpr double kStep997Hz = 0.13050699485942407;

TEST_P(FastSine, OfAnyLengthIsThePlainOne) {
    for (std::size_t count = 1; count <= 700; ++count) {
        ASSERT_TRUE(IsPlain({0.0, kStep1kHz, 0.125}, count)) << count;
        ASSERT_TRUE(IsPlain({300.0, kStep997Hz, 0.125}, count)) << count;
    }
}

TEST_P(FastSine, BeginsWithTheZeroOfItsSign) {
    GuardedBuffer samples(2);
    WriteFast({0.0, kStep997Hz, 0.25}, samples.Data(), 2);
    EXPECT_FALSE(std::signbit(samples[0]));
    WriteFast({-0.0, -kStep997Hz, 0.25}, samples.Data(), 2);
    EXPECT_EQ(samples[0], 0.0F);
    EXPECT_TRUE(std::signbit(samples[0]));
    EXPECT_TRUE(IsPlain({-0.0, -kStep997Hz, -0.25}, 5000));
}

TEST_P(FastSine, OfNoSamplesWritesNothing) {
    GuardedBuffer samples(4);
    for (const long long count : {0LL, -1LL, std::numeric_limits<long long>::min()}) {
        WriteFast({0.0, kStep997Hz, 0.25}, samples.Data(), count);
    }
    EXPECT_EQ(samples.UnwrittenSamples(), 4U);
    EXPECT_TRUE(samples.GuardsIntact());
}

TEST_P(FastSine, OfAPhaseThatComesFromBeforeZeroIsThePlainOne) {
    EXPECT_TRUE(IsPlain({-6.28, 0.001, 0.5}, 20'000));
    EXPECT_TRUE(IsPlain({6.28, -0.001, 0.5}, 20'000));
    EXPECT_TRUE(IsPlain({-100'000.0, kStep1kHz, 0.5}, 20'000));
}

TEST_P(FastSine, OfAPhaseThatStandsStillIsThePlainOne) {
    EXPECT_TRUE(IsPlain({3.0, 0.0, 0.5}, 1000));
    EXPECT_TRUE(IsPlain({3.0, 1e-20, 0.5}, 1000));
    EXPECT_TRUE(IsPlain({0.0, 0.0, 0.5}, 1000));
}

TEST_P(FastSine, OfHugePhasesIsThePlainOne) {
    // 2^24 is where the kernels end: begun inside, reached on the way, and far beyond.
    for (const double phase : {16'777'000.0, 16'777'216.0, 16'777'217.0, 1e9, 1e15, 1e17, 1e300}) {
        for (const double step : {kStep997Hz, 3.0, 1e6, 1e16, 1e299}) {
            ASSERT_TRUE(IsPlain({phase, step, 0.5}, 3000)) << phase << ' ' << step;
            ASSERT_TRUE(IsPlain({-phase, -step, 0.5}, 3000)) << phase << ' ' << step;
            ASSERT_TRUE(IsPlain({-phase, step, 0.5}, 300)) << phase << ' ' << step;
        }
    }
}

TEST_P(FastSine, OfAmplitudesOfAnySizeIsThePlainOne) {
    for (const double amplitude : {0.0,      -0.0,     1.0,      -1.0,  0x1p-40,
                                   1e-38,    -1e-44,   1e-45,    1e-46, 1e-60,
                                   0x1p-899, 0x1p-901, 5e-324,   3e38,  3.5e38,
                                   -1e39,    0x1p+899, 0x1p+901, 1e308, std::numeric_limits<double>::infinity()}) {
        ASSERT_TRUE(IsPlain({0.0, kStep1kHz, amplitude}, 3000)) << amplitude;
        ASSERT_TRUE(IsPlain({0.0, -kStep997Hz, amplitude}, 3000)) << amplitude;
    }
}

TEST_P(FastSine, OfWhatIsNotANumberIsNotANumber) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    for (const Wave& wave : {Wave{nan, 0.1, 0.5}, Wave{infinity, 0.1, 0.5}, Wave{0.0, nan, 0.5},
                             Wave{0.0, infinity, 0.5}, Wave{0.0, 0.1, nan}}) {
        GuardedBuffer got(200);
        WriteFast(wave, got.Data(), 200);
        const std::vector<float> expected = Plain(wave, 200);
        for (std::size_t i = 0; i < 200; ++i) {
            ASSERT_EQ(std::isnan(expected[i]), std::isnan(got[i])) << testing::PrintToString(wave) << " at " << i;
        }
        EXPECT_EQ(got.UnwrittenSamples(), 0U);
        EXPECT_TRUE(got.GuardsIntact());
    }
}

TEST_P(FastSine, TakesItsPartsForGranted) {
    // The wave in pieces that each start with the phase that the last one ended with.
    const std::vector<float> whole = Plain({0.3, kStep997Hz, 0.5}, 10'000);
    GuardedBuffer pieces(10'000);
    double phase = 0.3;
    std::size_t at = 0;
    for (const std::size_t count : {1U, 63U, 64U, 65U, 127U, 4000U, 5680U}) {
        WriteFast({phase, kStep997Hz, 0.5}, pieces.Data() + at, static_cast<long long>(count));
        for (std::size_t i = 0; i < count; ++i) {
            phase += kStep997Hz;
        }
        at += count;
    }
    ASSERT_EQ(at, 10'000U);
    EXPECT_TRUE(AreTheSameBits(whole, pieces.Samples()));
}

INSTANTIATE_TEST_SUITE_P(Variants, FastSine, testing::ValuesIn(test::SineVariants()), test::SineVariantName);

/// The entry that goes by the dispatch index.
class FastSineDispatch : public testing::TestWithParam<std::int32_t> {
protected:
    void TearDown() override { ippSafeInit(); }

    static std::int32_t BestIndex() {
        ippSafeInit();
        return ippJumpIndexForMergedLibs;
    }
};

TEST_P(FastSineDispatch, OfAnyIndexIsThePlainOne) {
    ippSafeInit();
    if (GetParam() > ippJumpIndexForMergedLibs) {
        GTEST_SKIP() << "this processor does not run the variant";
    }
    ippJumpIndexForMergedLibs = GetParam();
    GuardedBuffer got(5000);
    sine::WriteFast({0.0, kStep997Hz, 0.5}, got.Data(), 5000);
    const std::int32_t index = ippJumpIndexForMergedLibs;
    EXPECT_EQ(index, GetParam() == kVectorNotInitialised ? BestIndex() : GetParam());
    EXPECT_TRUE(AreTheSameBits(Plain({0.0, kStep997Hz, 0.5}, 5000), got.Samples()));
}
INSTANTIATE_TEST_SUITE_P(Indices, FastSineDispatch,
                         testing::Range<std::int32_t>(kVectorNotInitialised, kVectorVariantCount));

}  // namespace
