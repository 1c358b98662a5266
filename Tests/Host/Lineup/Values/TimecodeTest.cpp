#include <lineup/Timecode.h>
#include <lineup/UsageError.h>

#include <gtest/gtest.h>

namespace {

using lineup::Rational;
using lineup::Timecode;

constexpr Rational k23976{24000, 1001};
constexpr Rational k25{25, 1};
constexpr Rational k2997{30000, 1001};
constexpr Rational k5994{60000, 1001};

TEST(Timecode, CountsFramesFromMidnight) {
    EXPECT_EQ(Timecode("00:00:00:00", k25).Frames(), 0);
    EXPECT_EQ(Timecode("00:00:01:02", k25).Frames(), 27);
    EXPECT_EQ(Timecode("10:00:00:00", k25).Frames(), 900000);
    EXPECT_EQ(Timecode("23:59:59:24", k25).Frames(), 2159999);
}

TEST(Timecode, OfAFractionalRateCountsLabelsOfTheWholeRate) {
    EXPECT_EQ(Timecode("01:00:00:00", k2997).Frames(), 108000);
    EXPECT_EQ(Timecode("01:00:00:00", k23976).Frames(), 86400);
}

TEST(Timecode, DropFrameLeavesOutTwoNumbersAMinuteButNotEveryTenth) {
    EXPECT_EQ(Timecode("00:00:59;29", k2997).Frames(), 1799);
    EXPECT_EQ(Timecode("00:01:00;02", k2997).Frames(), 1800);
    EXPECT_EQ(Timecode("00:10:00;00", k2997).Frames(), 17982);   // 18000 - 9 * 2
    EXPECT_EQ(Timecode("01:00:00;00", k2997).Frames(), 107892);  // 108000 - 54 * 2
}

TEST(Timecode, DropFrameAtTwiceTheRateLeavesOutFour) {
    EXPECT_EQ(Timecode("00:00:59;59", k5994).Frames(), 3599);
    EXPECT_EQ(Timecode("00:01:00;04", k5994).Frames(), 3600);
    EXPECT_EQ(Timecode("00:10:00;00", k5994).Frames(), 35964);  // 36000 - 9 * 4
}

TEST(Timecode, IsSamplesOfTheTimeThatItsFramesTake) {
    EXPECT_EQ(Timecode("10:00:00:00", k25).Samples(48000), 1728000000);
    EXPECT_EQ(Timecode("01:00:00:00", k2997).Samples(48000), 172972800);   // 108000 * 1001 / 30000 * 48000
    EXPECT_EQ(Timecode("01:00:00;00", k2997).Samples(48000), 172799827);   // 3599.9964 s, 172799827.2
    EXPECT_EQ(Timecode("00:00:00:01", k2997).Samples(48000), 1602);        // 1601.6
    EXPECT_EQ(Timecode("23:59:59:24", k25).Samples(768000), 66355169280);  // 2159999 * 30720
}

TEST(Timecode, KeepsItsText) {
    EXPECT_EQ(Timecode("01:02:03;04", k2997).Text(), "01:02:03;04");
    EXPECT_TRUE(Timecode("01:02:03;04", k2997).DropFrame());
    EXPECT_FALSE(Timecode("01:02:03:04", k2997).DropFrame());
}

TEST(Timecode, TakesARateInAnyTerms) {
    EXPECT_EQ(Timecode("00:00:01:00", {50, 2}).Frames(), 25);
}

TEST(Timecode, RefusesAnotherShape) {
    for (const char* text : {"", "1:00:00:00", "01:00:00", "01:00:00:0", "01:00:00:000", "01:00;00:00", "01;00:00:00",
                             "aa:00:00:00", "-1:00:00:00", "01.00.00.00", "01:00:00,00"}) {
        EXPECT_THROW(Timecode(text, k25), lineup::UsageError) << text;
    }
}

TEST(Timecode, RefusesNumbersThatDoNotOccur) {
    for (const char* text : {"24:00:00:00", "00:60:00:00", "00:00:60:00", "00:00:00:25"}) {
        EXPECT_THROW(Timecode(text, k25), lineup::UsageError) << text;
    }
}

TEST(Timecode, RefusesDroppedNumbers) {
    EXPECT_THROW(Timecode("00:01:00;00", k2997), lineup::UsageError);
    EXPECT_THROW(Timecode("00:01:00;01", k2997), lineup::UsageError);
    EXPECT_THROW(Timecode("00:01:00;03", k5994), lineup::UsageError);
    EXPECT_NO_THROW(Timecode("00:01:00:00", k2997));
    EXPECT_NO_THROW(Timecode("00:01:01;00", k2997));
}

TEST(Timecode, RefusesDropFrameWhereThereIsNone) {
    for (const Rational rate : {k25, k23976, Rational{30, 1}, Rational{60, 1}}) {
        EXPECT_THROW(Timecode("00:00:00;00", rate), lineup::UsageError) << rate.num;
    }
}

TEST(Timecode, CountsAtEveryRateOfTelevisionAndFilm) {
    for (const int nominal : {24, 25, 30, 48, 50, 60}) {
        EXPECT_EQ(Timecode("00:00:01:00", {nominal, 1}).Frames(), nominal);
        EXPECT_EQ(Timecode::Labels({nominal * 1000, 1001}), nominal % 25 != 0) << nominal;
        if (nominal % 25 != 0) {
            EXPECT_EQ(Timecode("00:00:01:00", {nominal * 1000, 1001}).Frames(), nominal);
        }
    }
}

TEST(Timecode, CountsTheFramesOfADay) {
    EXPECT_EQ(Timecode("00:00:00:00", k25).FramesADay(), 2160000);
    const Rational ntsc{30000, 1001};
    EXPECT_EQ(Timecode("00:00:00;00", ntsc).FramesADay(), Timecode("23:59:59;29", ntsc).Frames() + 1);
    EXPECT_EQ(Timecode("00:00:00:00", ntsc).FramesADay(), Timecode("23:59:59:29", ntsc).Frames() + 1);
}

TEST(Timecode, RefusesRatesWithoutLabels) {
    EXPECT_FALSE(Timecode::Labels({25, 2}));
    EXPECT_THROW(Timecode("00:00:00:00", {25, 2}), lineup::UsageError);
    EXPECT_THROW(Timecode("00:00:00:00", {120, 1}), lineup::UsageError);
}

TEST(Timecode, SaysWhatIsWrongAndWhatWouldBeRight) {
    try {
        const Timecode wrong("00:00:00:25", k25);
        FAIL() << "was taken";
    } catch (const lineup::UsageError& error) {
        EXPECT_EQ(error.Option(), "timecode");
        EXPECT_EQ(error.Value(), "00:00:00:25");
        EXPECT_EQ(error.Remedy(), "frames count from 00 to 24 at this rate");
    }
}

}  // namespace
