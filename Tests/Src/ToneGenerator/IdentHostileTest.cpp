#include "Tests/Src/ToneGenerator/IdentRun.h"
#include "Tests/Src/ToneGenerator/ToneModel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using model::GeneratesTheModel;
using model::Ident;
using model::Request;
using test::GuardedChannels;

constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kSample = model::kTicksPerSampleAt48kHz;
constexpr std::int64_t kSecond = model::kTicksPerSecond;

constexpr std::int64_t kSampleLengths[] = {
    kMin,    kMin + 1, -kSecond,  -kSample,     -1,       0,        1,    2,
    kSample, kSecond,  kMax / 10, kMax / 2 + 1, kMax - 1, kMax - 7, kMax,
};
constexpr std::int64_t kStarts[] = {
    kMin, kMin + 1, kMin + 3 * kSecond, -kSample, -1, 0, 1, kSecond, kMax - 13 * kSecond, kMax - 100 * kSample, kMax,
};

/// Lengths of a sample and times that no clip has, so that sums and products wrap.
class IdentOfHostileTimes : public testing::TestWithParam<Ident> {
protected:
    // The channels of every combination at hand, after a check that nothing else was written.
    template <class Check>
    static void ForEachRequest(std::initializer_list<std::int64_t> counts, Check check) {
        for (const std::int64_t sampleTicks : kSampleLengths) {
            for (const std::int64_t start : kStarts) {
                for (const std::int64_t count : counts) {
                    for (const bool peakMode : {false, true}) {
                        check(Request{sampleTicks, start, count, peakMode});
                    }
                }
            }
        }
    }
};

TEST_P(IdentOfHostileTimes, EndsAndWritesEverySampleOfItsChannelsAndNothingElse) {
    const std::size_t channelCount = model::ChannelCount(GetParam());
    ForEachRequest({1, 2, 3, 65, 3000}, [&](const Request& request) {
        GuardedChannels channels = model::Generate(GetParam(), request);
        ASSERT_TRUE(model::NothingElseIsWritten(channels, channelCount)) << request;
        for (std::size_t c = 0; c < channelCount; ++c) {
            ASSERT_EQ(channels[c].UnwrittenSamples(), 0U) << "channel " << c << ", " << request;
        }
    });
}

TEST_P(IdentOfHostileTimes, WritesNothingForNoSamplesOrFewer) {
    ForEachRequest({0, -1, -4294967295, kMin}, [&](const Request& request) {
        GuardedChannels channels = model::Generate(GetParam(), request);
        ASSERT_TRUE(model::NothingElseIsWritten(channels, 0)) << request;
    });
}

TEST_P(IdentOfHostileTimes, HoldsNothingLouderThanItsLevel) {
    ForEachRequest({300}, [&](const Request& request) {
        GuardedChannels channels = model::Generate(GetParam(), request);
        for (std::size_t c = 0; c < model::ChannelCount(GetParam()); ++c) {
            for (const float sample : channels[c].Samples()) {
                // A tone of no rate is not a number.
                ASSERT_TRUE(std::abs(sample) <= 0.125F || (std::isnan(sample) && request.sampleTicks == kMax))
                    << request;
            }
        }
    });
}

TEST_P(IdentOfHostileTimes, OfSamplesOfOneTickIsTheModelRoundEveryEdge) {
    for (std::int64_t edge = -kSecond; edge <= model::CycleTicks(GetParam()); edge += kSecond / 20) {
        ASSERT_TRUE(GeneratesTheModel(GetParam(), {1, edge - 10, 20}));
        ASSERT_TRUE(GeneratesTheModel(GetParam(), {1, edge - 10, 20, true}));
    }
}

TEST_P(IdentOfHostileTimes, OfSamplesOfNoLengthIsTheStartsStepAtPhaseZero) {
    for (const std::int64_t start : {-kSecond / 8, std::int64_t{0}, kSecond, 23 * kSecond / 8}) {
        EXPECT_TRUE(GeneratesTheModel(GetParam(), {0, start, 10}));
        EXPECT_TRUE(GeneratesTheModel(GetParam(), {0, start, 10, true}));
    }
}

TEST_P(IdentOfHostileTimes, OfSamplesThatRunBackwardsIsOnePieceFromTheStartsStep) {
    for (const std::int64_t start : {std::int64_t{0}, kSample, kSecond, 29 * kSecond / 10}) {
        EXPECT_TRUE(GeneratesTheModel(GetParam(), {-kSample, start, 30000}));
        EXPECT_TRUE(GeneratesTheModel(GetParam(), {-kSample, start, 30000, true}));
    }
}

TEST_P(IdentOfHostileTimes, OfSamplesOfMinutesIsTheModel) {
    EXPECT_TRUE(GeneratesTheModel(GetParam(), {61 * kSecond + 1, 0, 3000}));
    EXPECT_TRUE(GeneratesTheModel(GetParam(), {61 * kSecond + 1, -1000 * kSecond, 3000, true}));
}

INSTANTIATE_TEST_SUITE_P(Every, IdentOfHostileTimes, testing::ValuesIn(model::kIdents),
                         [](const auto& each) { return model::Name(each.param); });

}  // namespace
