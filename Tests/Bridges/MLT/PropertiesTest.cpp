#include "Bridges/MLT/Properties.h"
#include "Tests/Bridges/MLT/Framework.h"
#include "Tests/Bridges/PlugInSound.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using test::Difference;
using test::PlugInSound;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

struct Answer {
    test::Planes planes;
    std::string log;
};

// The sound of ten frames, and what was said while it was made.
Answer Play(const test::PropertyList& properties, int rateHz = 48000, const char* argument = nullptr) {
    const auto profile = test::MakeProfile(test::kPal);
    const test::LogCapture log;
    const auto clip = test::MakeClip(*profile, properties, argument);
    Answer answer;
    answer.planes = test::ReadFrames(MLT_PRODUCER_SERVICE(clip.get()), test::kPal, 10, rateHz);
    answer.log = log.Text();
    return answer;
}

std::size_t Count(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

lineup::BarsAndToneInfo ToneOf(float frequency, float amplitude) {
    lineup::BarsAndToneInfo settings = test::Tone(2);
    settings.frequency = frequency;
    settings.amplitude = amplitude;
    return settings;
}

TEST(Properties, ThatAreNotSetAreThePlugInsOwn) {
    const auto answer = Play({});
    EXPECT_THAT(answer.log, IsEmpty());
    EXPECT_EQ(Difference(answer.planes, PlugInSound(lineup::BarsAndToneInfo{}, 0, 19200)), "");
}

TEST(Properties, InRangeAreTakenWithoutAWord) {
    const auto answer = Play({{"frequency", "997.5"}, {"level", "-20"}, {"channels", "stereo"}, {"card", "sd"}});
    EXPECT_THAT(answer.log, IsEmpty());
    EXPECT_EQ(Difference(answer.planes, PlugInSound(ToneOf(997.5F, 0.1F), 0, 19200)), "");
}

TEST(Properties, MayBeWrittenWithADecimalComma) {
    EXPECT_EQ(Difference(Play({{"frequency", "997,5"}}).planes, PlugInSound(ToneOf(997.5F, 0.25F), 0, 19200)), "");
}

TEST(Properties, AboveTheirRangeAreBroughtDownToIt) {
    const auto answer = Play({{"frequency", "30000"}});
    EXPECT_THAT(answer.log, HasSubstr("frequency 30000: must be 1 to 24000 Hz; 24000 is used"));
    EXPECT_THAT(answer.log, HasSubstr("frequency 24000: must be below 24000 Hz, half the sample rate of 48000 Hz"));
    EXPECT_EQ(Difference(answer.planes, PlugInSound(ToneOf(23999.0F, 0.25F), 0, 19200)), "");
    EXPECT_THAT(Play({{"level", "6"}}).log, HasSubstr("level 6: must be -300 to 0 dBFS; 0 is used"));
    EXPECT_EQ(Difference(Play({{"level", "6"}}).planes, PlugInSound(ToneOf(1000.0F, 1.0F), 0, 19200)), "");
    EXPECT_EQ(Difference(Play({{"level", "inf"}}).planes, PlugInSound(ToneOf(1000.0F, 1.0F), 0, 19200)), "");
}

TEST(Properties, BelowTheirRangeAreBroughtUpToIt) {
    const auto answer = Play({{"frequency", "-5"}});
    EXPECT_THAT(answer.log, HasSubstr("frequency -5: must be 1 to 24000 Hz; 1 is used"));
    EXPECT_EQ(Difference(answer.planes, PlugInSound(ToneOf(1.0F, 0.25F), 0, 19200)), "");
    EXPECT_THAT(Play({{"level", "-1e9"}}).log, HasSubstr("-300 is used"));
}

TEST(Properties, ThatAreNoNumberTakeTheirDefault) {
    for (const char* const text : {"loud", "nan", "1000 Hz", "0x10", "1=2;3=4"}) {
        const auto answer = Play({{"frequency", text}});
        EXPECT_THAT(answer.log, AllOf(HasSubstr("frequency " + std::string(text)), HasSubstr("1000 is used")));
        EXPECT_EQ(Difference(answer.planes, PlugInSound(ToneOf(1000.0F, 0.25F), 0, 19200)), "");
    }
}

TEST(Properties, OfUnknownNamesTakeTheirDefault) {
    const auto answer = Play({{"sound", "ebu"}, {"channels", "7.1"}, {"card", "uhd"}});
    EXPECT_THAT(
        answer.log,
        AllOf(HasSubstr("sound ebu: must be tone, ebu-stereo-1000, ebu-stereo-400, ebu-5.1, blits; tone is used"),
              HasSubstr("channels 7.1: must be auto, mono, stereo, 5.1; auto is used"),
              HasSubstr("card uhd: must be auto, hd, sd; auto is used")));
    EXPECT_EQ(Difference(answer.planes, PlugInSound(lineup::BarsAndToneInfo{}, 0, 19200)), "");
}

TEST(Properties, AreComplainedOfOnceAndNotEveryFrame) {
    EXPECT_EQ(Count(Play({{"frequency", "30000"}}).log, "frequency 30000"), 1U);
}

TEST(Properties, OfAFrequencyOfHalfTheRateOrMoreAreBroughtDownBelowIt) {
    for (const char* const frequency : {"20000", "16000"}) {
        EXPECT_THAT(Play({{"frequency", frequency}}, 32000).log, HasSubstr("15999 is used")) << frequency;
    }
    EXPECT_THAT(Play({{"frequency", "15999.5"}}, 32000).log, IsEmpty());
}

TEST(Properties, OfTheToneDoNotDisturbAnIdent) {
    const auto answer = Play({{"sound", "ebu-stereo-400"}, {"frequency", "440"}, {"level", "-3"}});
    EXPECT_THAT(answer.log, IsEmpty());
    EXPECT_EQ(Difference(answer.planes, PlugInSound(test::IdentSettings(lineup::EBUStereo400), 0, 19200)), "");
}

TEST(Properties, OfChannelsThatAnIdentDoesNotHaveGiveWayToIt) {
    const auto answer = Play({{"sound", "blits"}, {"channels", "stereo"}});
    EXPECT_THAT(answer.log, AllOf(HasSubstr("channels stereo"), HasSubstr("5.1 is used")));
    EXPECT_EQ(answer.planes.size(), 6U);
}

TEST(Properties, OfAnUnknownArgumentAreComplainedOf) {
    EXPECT_THAT(Play({}, 48000, "clip.mov").log, HasSubstr("sound clip.mov: must be tone"));
}

TEST(Properties, MakeAClipOfFiveSecondsThatMayBeMadeLonger) {
    for (const test::Fps fps : {test::Fps{25, 1}, {30000, 1001}, {60, 1}}) {
        const auto profile = test::MakeProfile(fps);
        const auto clip = test::MakeClip(*profile);
        const int five = fps.num == 30000 ? 150 : 5 * fps.num;
        EXPECT_EQ(mlt_producer_get_playtime(clip.get()), five);
        mlt_producer_set_in_and_out(clip.get(), 0, 5000);
        EXPECT_EQ(mlt_producer_get_playtime(clip.get()), 5001);
    }
}

}  // namespace
