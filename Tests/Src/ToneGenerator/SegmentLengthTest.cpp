#include "Src/ToneGenerator/ToneGenerator.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using zelmediatypes::FrameRate;
using zelmediatypes::TickTime;

constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();

// Ten ticks a sample, so that the sums can be done by eye.
long long Samples(std::int64_t segmentStart, std::int64_t segmentLength, std::int64_t current, std::int64_t end,
                  std::int64_t sampleTicks = 10) {
    return ToneGenerator(FrameRate(sampleTicks), 2)
        .CalculateNumSamplesToGenerate(TickTime(segmentStart), FrameRate(segmentLength), TickTime(current),
                                       TickTime(end));
}

TEST(SegmentLength, CountsToTheEndOfTheSegment) {
    EXPECT_EQ(Samples(100, 50, 120, 1000), 3);  // [120, 150)
}

TEST(SegmentLength, CountsToTheEndOfTheRequestWhereThatIsEarlier) {
    EXPECT_EQ(Samples(100, 50, 100, 120), 2);  // [100, 120)
    EXPECT_EQ(Samples(100, 50, 100, 149), 4);  // [100, 149): four whole samples
}

TEST(SegmentLength, CountsToBothEndsWhereTheyMeet) {
    EXPECT_EQ(Samples(100, 50, 100, 150), 5);
}

TEST(SegmentLength, CountsWholeSamplesOnly) {
    EXPECT_EQ(Samples(0, 39, 0, 1000), 3);
    EXPECT_EQ(Samples(0, 40, 0, 1000), 4);
}

TEST(SegmentLength, IsOneAtTheLimit) {
    EXPECT_EQ(Samples(100, 50, 150, 1000), 1);
    EXPECT_EQ(Samples(100, 50, 120, 120), 1);
}

TEST(SegmentLength, IsOneForARemainderShorterThanASample) {
    EXPECT_EQ(Samples(100, 50, 141, 1000), 1);
    EXPECT_EQ(Samples(100, 50, 149, 1000), 1);
}

TEST(SegmentLength, PastTheLimitIsNegative) {
    EXPECT_EQ(Samples(100, 50, 151, 1000), -1);  // a tenth of a sample past, rounded down
    EXPECT_EQ(Samples(100, 50, 160, 1000), -1);
    EXPECT_EQ(Samples(100, 50, 200, 1000), -5);
    EXPECT_EQ(Samples(100, 50, 120, 0), -12);
}

TEST(SegmentLength, CountsBeforeTheClipToo) {
    EXPECT_EQ(Samples(-100, 50, -80, 1000), 3);  // [-80, -50)
    EXPECT_EQ(Samples(-100, 50, -80, -70), 1);
}

TEST(SegmentLength, OfAQuarterOfASecondAt48kHzIs12000) {
    EXPECT_EQ(Samples(254016000000, 63504000000, 254016000000, kMax, 5292000), 12000);
}

TEST(SegmentLength, OfSamplesOfNoLengthIsOne) {
    EXPECT_EQ(Samples(100, 50, 100, 1000, 0), 1);
}

TEST(SegmentLength, OfNoRateIsOneUpToTheLimitAndMinusOnePastIt) {
    EXPECT_EQ(Samples(100, 50, 100, 1000, kMax), 1);
    EXPECT_EQ(Samples(100, 50, 200, 1000, kMax), -1);
}

TEST(SegmentLength, EndsWrap) {
    // The segment's end wraps to kMin + 9, which is earlier than every end: kMin + 9 - (kMax - 10) is 20 ticks.
    EXPECT_EQ(Samples(kMax - 10, 20, kMax - 10, kMax), 2);
    EXPECT_EQ(Samples(0, 50, kMin, 1000), kMin / 10 + 4);  // 50 - kMin wraps to kMin + 50
}

}  // namespace
