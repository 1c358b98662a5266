#include <lineup/UsageError.h>
#include "Apps/lineup/Options/Values.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using cli::NearestIndex;
using cli::ParseFrameRate;
using cli::ParseNumber;
using cli::ParseSize;
using cli::ParseTime;
using lineup::Rational;
using testing::AllOf;
using testing::HasSubstr;
using zelmediatypes::kTicksPerSecond;
using zelmediatypes::TickTime;

template <class Act>
std::string Refusal(Act act) {
    try {
        act();
    } catch (const lineup::UsageError& error) {
        return error.what();
    }
    return "no refusal";
}

TEST(Size, IsTwoNumbersOfPixels) {
    EXPECT_EQ(ParseSize("1920x1080").width, 1920);
    EXPECT_EQ(ParseSize("1920x1080").height, 1080);
}

TEST(Size, OfAnotherShapeIsRefused) {
    for (const char* const text : {"", "1920", "1920x", "x1080", "1920x1080x3", "1920 x 1080", "wxh", "1e3x5"}) {
        EXPECT_THAT(Refusal([&] { (void)ParseSize(text); }),
                    AllOf(HasSubstr(std::string("size ") + text), HasSubstr("WIDTHxHEIGHT")));
    }
}

TEST(FrameRate, IsWholeOrAFraction) {
    EXPECT_EQ(ParseFrameRate("25"), (Rational{25, 1}));
    EXPECT_EQ(ParseFrameRate("30000/1001"), (Rational{30000, 1001}));
}

TEST(FrameRate, HasTheUsualShortForms) {
    EXPECT_EQ(ParseFrameRate("23.976"), (Rational{24000, 1001}));
    EXPECT_EQ(ParseFrameRate("29.97"), (Rational{30000, 1001}));
    EXPECT_EQ(ParseFrameRate("59.94"), (Rational{60000, 1001}));
}

TEST(FrameRate, OfAnotherShapeIsRefused) {
    for (const char* const text : {"", "0", "-25", "25/0", "25/1/1", "29.98", "fast"}) {
        EXPECT_THAT(Refusal([&] { (void)ParseFrameRate(text); }), HasSubstr(std::string("fps ") + text));
    }
}

TEST(Time, IsSecondsOrAClock) {
    EXPECT_EQ(ParseTime("start", "90"), TickTime(90 * kTicksPerSecond));
    EXPECT_EQ(ParseTime("start", "2.5"), TickTime(5 * kTicksPerSecond / 2));
    EXPECT_EQ(ParseTime("start", "1:30"), TickTime(90 * kTicksPerSecond));
    EXPECT_EQ(ParseTime("start", "01:00:00.1"), TickTime(36001 * (kTicksPerSecond / 10)));
    EXPECT_EQ(ParseTime("start", "-0.25"), TickTime(-kTicksPerSecond / 4));
    EXPECT_EQ(ParseTime("start", "1000:00:00"), TickTime(3600000 * kTicksPerSecond));
}

TEST(Time, OfAnotherShapeIsRefused) {
    for (const char* const text : {"", "-", ".", "1.", "1:60", "1:2:3:4", "5s", "1e3", "1:99:00", "1000:00:01", "+1",
                                   "99999999999", "--1", "nan"}) {
        EXPECT_THAT(Refusal([&] { (void)ParseTime("duration", text); }), HasSubstr(std::string("duration ") + text));
    }
}

TEST(Number, IsFiniteAndNothingElse) {
    EXPECT_EQ(ParseNumber("level", "-18.5", "must be a number of dBFS"), -18.5);
    for (const char* const text : {"", "loud", "1,5", "nan", "inf", "1e999", "3 "}) {
        EXPECT_THAT(Refusal([&] { (void)ParseNumber("level", text, "must be a number of dBFS"); }),
                    AllOf(HasSubstr(std::string("level ") + text), HasSubstr("must be a number of dBFS")));
    }
}

TEST(NearestIndex, RoundsToTheNearestFrame) {
    constexpr Rational kNtsc{30000, 1001};
    EXPECT_EQ(NearestIndex(TickTime(5 * kTicksPerSecond), kNtsc), 150);  // 149.85 frames
    EXPECT_EQ(NearestIndex(TickTime(kTicksPerSecond), {25, 1}), 25);
    EXPECT_EQ(NearestIndex(TickTime(kTicksPerSecond / 2), {1, 1}), 1);   // half goes up
    EXPECT_EQ(NearestIndex(TickTime(-kTicksPerSecond / 2), {1, 1}), 0);  // up here too
    EXPECT_EQ(NearestIndex(TickTime(-kTicksPerSecond), {48000, 1}), -48000);
}

TEST(NearestIndex, DoesNotOverflowAtAThousandHours) {
    EXPECT_EQ(NearestIndex(TickTime(3600000 * kTicksPerSecond), {384000, 1}), 3600000LL * 384000);
}

}  // namespace
