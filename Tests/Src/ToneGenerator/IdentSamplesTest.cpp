#include "Host/Interface/Media/TickTime.h"
#include "Tests/Src/ToneGenerator/IdentRun.h"
#include "Tests/Src/ToneGenerator/ToneModel.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace {

using model::GeneratesTheModel;
using model::Ident;
using model::Request;

constexpr std::int64_t kHour = 3600 * model::kTicksPerSecond;
constexpr std::int64_t kStep = model::kTicksPerSecond / 20;  // every edge of every sequence is a multiple of it

// The rates of clips; some that the steps are no multiples of; and rates of peaks, down to samples longer than a step.
constexpr float kRatesHz[] = {32000.0F, 44100.0F, 48000.0F,   88200.0F, 96000.0F, 47952.0F, 11025.0F,
                              22050.0F, 44056.0F, 12345.678F, 2000.0F,  100.0F,   7.0F,     0.3F};

/// One sequence, at every rate.
class IdentSamples : public testing::TestWithParam<Ident> {
protected:
    template <class Check>
    static void AtEveryRate(Check check) {
        for (const float rateHz : kRatesHz) {
            ASSERT_NO_FATAL_FAILURE(check(zelmediatypes::FrameRateFromHz(rateHz).Ticks())) << rateHz << " Hz";
        }
    }

    // Requests of up to 0.35 s that begin on a sample, at any time in [from, to).
    void ExpectTheModelBetween(std::int64_t fromTicks, std::int64_t toTicks, unsigned seed) const {
        AtEveryRate([&](std::int64_t sampleTicks) {
            std::mt19937 random(seed);
            std::uniform_int_distribution<std::int64_t> anyTime(fromTicks, toTicks - 1);
            std::uniform_int_distribution<std::int64_t> anyCount(1, 7 * kStep / sampleTicks + 3);
            for (int i = 0; i < 12; ++i) {
                const std::int64_t sample = model::FloorDivide(anyTime(random), sampleTicks);
                const Request request{sampleTicks, sample * sampleTicks, anyCount(random), i % 4 == 3};
                ASSERT_TRUE(GeneratesTheModel(GetParam(), request));
            }
        });
    }
};

TEST_P(IdentSamples, OfOneCycleAndALittleAreTheModelsToTheBit) {
    AtEveryRate([](std::int64_t sampleTicks) {
        const std::int64_t count = model::CycleTicks(GetParam()) / sampleTicks + 100;
        ASSERT_TRUE(GeneratesTheModel(GetParam(), {sampleTicks, 0, count}));
        ASSERT_TRUE(GeneratesTheModel(GetParam(), {sampleTicks, 0, count, true}));
    });
}

TEST_P(IdentSamples, OfAnyRequestInAFewCyclesAreTheModelsToTheBit) {
    ExpectTheModelBetween(0, 4 * model::CycleTicks(GetParam()), 1);
}

TEST_P(IdentSamples, OfAnyRequestHoursInAreTheModelsToTheBit) {
    ExpectTheModelBetween(kHour, 30 * kHour, 2);
}

TEST_P(IdentSamples, OfAnyRequestBeforeTheClipAreTheModelsToTheBit) {
    ExpectTheModelBetween(-2 * kHour, 0, 3);
    ExpectTheModelBetween(-kStep, kStep, 4);
}

TEST_P(IdentSamples, OfRequestsAcrossTheCyclesEndAreTheModelsToTheBit) {
    for (const std::int64_t cycle : {std::int64_t{-3}, std::int64_t{-1}, std::int64_t{1}, std::int64_t{2000}}) {
        const std::int64_t end = cycle * model::CycleTicks(GetParam());
        ExpectTheModelBetween(end - 3 * kStep, end, 5);
    }
}

TEST_P(IdentSamples, OfRequestsThatBeginInsideASampleAreTheModelsToTheBit) {
    AtEveryRate([](std::int64_t sampleTicks) {
        std::mt19937 random(6);
        std::uniform_int_distribution<std::int64_t> anyTime(-kHour, kHour);
        std::uniform_int_distribution<std::int64_t> anyCount(1, 3 * kStep / sampleTicks + 3);
        for (int i = 0; i < 12; ++i) {
            ASSERT_TRUE(GeneratesTheModel(GetParam(), {sampleTicks, anyTime(random), anyCount(random)}));
        }
    });
}

TEST_P(IdentSamples, OfRequestsOfAFewSamplesRoundEveryStepsEdgeAreTheModelsToTheBit) {
    AtEveryRate([](std::int64_t sampleTicks) {
        for (std::int64_t edge = 0; edge <= model::CycleTicks(GetParam()); edge += kStep) {
            const std::int64_t sample = edge / sampleTicks;
            for (const std::int64_t first : {sample - 2, sample - 1, sample, sample + 1}) {
                ASSERT_TRUE(GeneratesTheModel(GetParam(), {sampleTicks, first * sampleTicks, 1}));
                ASSERT_TRUE(GeneratesTheModel(GetParam(), {sampleTicks, first * sampleTicks, 4}));
            }
            // A start that is one tick off the edge.
            ASSERT_TRUE(GeneratesTheModel(GetParam(), {sampleTicks, edge - 1, 3}));
            ASSERT_TRUE(GeneratesTheModel(GetParam(), {sampleTicks, edge + 1, 3}));
        }
    });
}

TEST_P(IdentSamples, NearTheEndsOfTimeAreTheModelsToTheBit) {
    // Up to the cycle before the last whole one: a segment's end still fits 64 bits.
    const std::int64_t cycleTicks = model::CycleTicks(GetParam());
    const std::int64_t last = (std::numeric_limits<std::int64_t>::max() / cycleTicks - 2) * cycleTicks;
    AtEveryRate([&](std::int64_t sampleTicks) {
        const std::int64_t count = 2 * kStep / sampleTicks + 2;
        for (const std::int64_t cycle : {last, -last}) {
            ASSERT_TRUE(GeneratesTheModel(GetParam(), {sampleTicks, cycle, count}));
            ASSERT_TRUE(GeneratesTheModel(GetParam(), {sampleTicks, cycle - sampleTicks * count / 2, count}));
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Every, IdentSamples, testing::ValuesIn(model::kIdents),
                         [](const auto& each) { return model::Name(each.param); });

}  // namespace
