// Numbers no dialog makes: every request ends, writes nothing outside what was asked for, and holds exactly what the
// oracle says wherever times do not wrap.
#include "Tests/Src/BarsAndToneImporter/HostileRequests.h"
#include "Tests/Src/BarsAndToneImporter/SoundRequests.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

void Check(const test::HostileRequest& request) {
    ASSERT_TRUE(test::PlaysTheAnswer(request.settings, request.position, static_cast<std::uint32_t>(request.count)));
    ASSERT_TRUE(test::DrawsTheAnswer(request.settings, request.position, request.peakRateHz, request.count));
}

TEST(HostileRequests, AtEveryRateWithEverySound) {
    for (const float rateHz : test::kHostileFloats) {
        for (const BarsAndToneInfo& settings : test::EverySound(rateHz)) {
            for (const std::int64_t position : {0, 131990, -20}) {
                Check({.settings = settings, .position = position, .peakRateHz = rateHz, .count = 40});
            }
        }
    }
}

TEST(HostileRequests, AtEveryPositionWithEverySound) {
    for (const std::int64_t position : test::kHostilePositions) {
        for (const float rateHz : {48000.0F, 44100.0F, 1.0F, 1e-5F}) {
            for (const BarsAndToneInfo& settings : test::EverySound(rateHz)) {
                Check({.settings = settings, .position = position, .peakRateHz = 100.0F, .count = 150});
            }
        }
    }
}

TEST(HostileRequests, WithEveryFrequencyAndLevel) {
    for (const float frequencyHz : test::kHostileFloats) {
        for (const float level : test::kHostileFloats) {
            Check({.settings = {.numChannels = 2, .frequency = frequencyHz, .amplitude = level},
                   .position = 1234,
                   .peakRateHz = 2000.0F,
                   .count = 20});
        }
    }
}

TEST(HostileRequests, AtEveryPeakRateWithEverySound) {
    for (const float peakRateHz : test::kHostileFloats) {
        for (const BarsAndToneInfo& settings : test::EverySound()) {
            Check({.settings = settings, .position = 131000, .peakRateHz = peakRateHz, .count = 300});
        }
    }
}

TEST(HostileRequests, DrawnByLot) {
    test::HostileRequestSource source(20240229);
    for (int i = 0; i < 4000; ++i) {
        ASSERT_NO_FATAL_FAILURE(Check(source.Next())) << "request " << i;
    }
}

TEST(HostileRequests, OfThousandsOfSamplesEndWhereTimeWraps) {
    // The last samples before the clip time wraps, at 48000 Hz, and the first after it.
    const std::int64_t last = oracle::kInt64Max / 5292000;
    for (const BarsAndToneInfo& settings : test::EverySound()) {
        Check({.settings = settings, .position = last - 2500, .peakRateHz = 48000.0F, .count = 5000});
        Check({.settings = settings, .position = -last - 2500, .peakRateHz = 48000.0F, .count = 5000});
    }
}

}  // namespace
