#include "Tests/Bridges/MLT/Framework.h"
#include "Tests/Bridges/PlugInSound.h"

#include <gtest/gtest.h>

namespace {

using test::Difference;
using test::PlugInSound;

test::FrameSound FirstFrame(const test::PropertyList& properties, int channels, const char* argument = nullptr) {
    const auto profile = test::MakeProfile(test::kPal);
    const auto clip = test::MakeClip(*profile, properties, argument);
    const auto frame = test::NextFrame(MLT_PRODUCER_SERVICE(clip.get()));
    return test::SoundOf(*frame, 48000, channels, 1920);
}

TEST(Channels, AreStereoUnlessToldOtherwise) {
    const auto sound = FirstFrame({}, 2);
    EXPECT_EQ(sound.planes.size(), 2U);
    EXPECT_EQ(sound.layout, "stereo");
}

TEST(Channels, OfSurroundComeInTheOrderOfFiles) {
    const auto sound = FirstFrame({{"sound", "blits"}}, 6);
    EXPECT_EQ(sound.layout, "5.1");
    EXPECT_EQ(Difference(sound.planes, PlugInSound(test::IdentSettings(lineup::BLITS5_1), 0, 1920)), "");
    // The ident begins with left alone.
    EXPECT_NE(sound.planes[0][100], 0.0F);
    for (std::size_t c = 1; c < 6; ++c) {
        EXPECT_EQ(sound.planes[c], std::vector<float>(1920, 0.0F)) << c;
    }
}

TEST(Channels, OfMonoReachBothSidesOfAStereoConsumerAtFullLevel) {
    const auto sound = FirstFrame({{"channels", "mono"}}, 2);
    EXPECT_EQ(sound.layout, "stereo");
    const auto mono = PlugInSound(test::Tone(1), 0, 1920);
    EXPECT_EQ(Difference(sound.planes, {mono[0], mono[0]}), "");
}

TEST(Channels, OfMonoStayMonoForAMonoConsumer) {
    const auto sound = FirstFrame({{"channels", "mono"}}, 1);
    EXPECT_EQ(sound.layout, "mono");
    EXPECT_EQ(Difference(sound.planes, PlugInSound(test::Tone(1), 0, 1920)), "");
}

TEST(Channels, AreNeverFewerThanTheClipsOwn) {
    EXPECT_EQ(FirstFrame({{"sound", "ebu-5.1"}}, 2).planes.size(), 6U);
}

TEST(Channels, AndSoundMayBeNamedByTheProducersArgument) {
    const auto sound = FirstFrame({}, 2, "ebu-stereo-400");
    EXPECT_EQ(Difference(sound.planes, PlugInSound(test::IdentSettings(lineup::EBUStereo400), 0, 1920)), "");
}

}  // namespace
