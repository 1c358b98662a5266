#include "Src/ToneGenerator/ToneGenerator.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>

namespace {

constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();

struct Segment {
    const char* what;
    std::int64_t start;
    std::int64_t length;
    std::int64_t current;
    std::int64_t end;  // of the request
    long long samples;
    std::int64_t sampleTicks = 10;  // so that the sums can be done by eye
};

constexpr Segment kSegments[] = {
    {"CountsToTheSegmentsEnd", 100, 50, 120, 1000, 3},
    {"CountsToTheRequestsEndWhereThatIsEarlier", 100, 50, 100, 120, 2},
    {"CountsToBothEndsWhereTheyMeet", 100, 50, 100, 150, 5},
    {"CountsWholeSamplesOnly", 0, 39, 0, 1000, 3},
    {"CountsASampleThatEndsWithTheSegment", 0, 40, 0, 1000, 4},
    {"CountsWholeSamplesOfTheRequestOnly", 100, 50, 100, 149, 4},
    {"IsOneAtTheSegmentsEnd", 100, 50, 150, 1000, 1},
    {"IsOneAtTheRequestsEnd", 100, 50, 120, 120, 1},
    {"IsOneForARemainderShorterThanASample", 100, 50, 141, 1000, 1},
    {"ATickPastTheEndIsNegative", 100, 50, 151, 1000, -1},  // a tenth of a sample, rounded down
    {"PastTheSegmentsEndIsNegative", 100, 50, 200, 1000, -5},
    {"PastTheRequestsEndIsNegative", 100, 50, 120, 0, -12},
    {"CountsBeforeTheClip", -100, 50, -80, 1000, 3},
    {"CountsToARequestsEndBeforeTheClip", -100, 50, -80, -70, 1},
    {"OfAQuarterSecondAt48kHzIs12000", 254016000000, 63504000000, 254016000000, kMax, 12000, 5292000},
    {"OfSamplesOfNoLengthIsOne", 100, 50, 100, 1000, 1, 0},
    {"OfNoRateIsOne", 100, 50, 100, 1000, 1, kMax},
    {"OfNoRatePastTheEndIsMinusOne", 100, 50, 200, 1000, -1, kMax},
    // The segment's end wraps to kMin + 9, earlier than every end: kMin + 9 - (kMax - 10) is 20 ticks.
    {"EndsWrap", kMax - 10, 20, kMax - 10, kMax, 2},
    {"DistancesWrap", 0, 50, kMin, 1000, kMin / 10 + 4},  // 50 - kMin wraps to kMin + 50
};

class SegmentLength : public testing::TestWithParam<Segment> {};
INSTANTIATE_TEST_SUITE_P(Segments, SegmentLength, testing::ValuesIn(kSegments),
                         [](const auto& row) { return row.param.what; });

TEST_P(SegmentLength, IsAsTheRowSays) {
    using zelmediatypes::FrameRate;
    using zelmediatypes::TickTime;
    const Segment& row = GetParam();
    EXPECT_EQ(ToneGenerator(FrameRate(row.sampleTicks), 2)
                  .CalculateNumSamplesToGenerate(TickTime(row.start), FrameRate(row.length), TickTime(row.current),
                                                 TickTime(row.end)),
              row.samples);
}

}  // namespace
