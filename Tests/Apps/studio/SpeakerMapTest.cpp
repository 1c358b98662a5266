#include "Apps/studio/Sound/SpeakerMap.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace {

using studio::SpeakerMap;
using testing::ElementsAre;
using testing::FloatEq;
using testing::HasSubstr;

// What comes out of one frame in which channel c of the clip, in the plug-in's order, holds c + 1.
std::vector<float> OneFrame(const SpeakerMap& map, int clipChannels) {
    std::array<float, 8> values = {1, 2, 3, 4, 5, 6, 7, 8};
    std::vector<const float*> channels;
    for (int c = 0; c < clipChannels; ++c) {
        channels.push_back(&values[static_cast<std::size_t>(c)]);
    }
    std::vector<float> frame(static_cast<std::size_t>(map.Outputs()));
    map.Mix(channels, 1, frame.data());
    return frame;
}

TEST(SpeakerMap, SurroundGoesOutInTheDevicesOrder) {
    const SpeakerMap map(6, 6);
    // The plug-in has L, R, Ls, Rs, C, LFE; the device wants L, R, C, LFE, Ls, Rs.
    EXPECT_THAT(OneFrame(map, 6), ElementsAre(1, 2, 5, 6, 3, 4));
    EXPECT_EQ(map.Notice(), "");
    EXPECT_EQ(SpeakerMap(6, 8).Outputs(), 6);
}

TEST(SpeakerMap, SurroundFoldsDownOnAStereoDeviceAndSaysSo) {
    const SpeakerMap map(6, 2);
    constexpr float kMinus3Db = 0.70710678F;
    EXPECT_THAT(OneFrame(map, 6), ElementsAre(FloatEq(1 + kMinus3Db * (5 + 3)), FloatEq(2 + kMinus3Db * (5 + 4))));
    EXPECT_THAT(map.Notice(), HasSubstr("folded down to stereo"));
}

TEST(SpeakerMap, StereoStaysStereoOnAnyDevice) {
    EXPECT_THAT(OneFrame(SpeakerMap(2, 2), 2), ElementsAre(1, 2));
    EXPECT_THAT(OneFrame(SpeakerMap(2, 8), 2), ElementsAre(1, 2));
    EXPECT_EQ(SpeakerMap(2, 8).Notice(), "");
}

TEST(SpeakerMap, MonoPlaysOnBothFrontSpeakers) {
    EXPECT_THAT(OneFrame(SpeakerMap(1, 2), 1), ElementsAre(1, 1));
    EXPECT_THAT(OneFrame(SpeakerMap(1, 1), 1), ElementsAre(1));
    EXPECT_EQ(SpeakerMap(1, 2).Notice(), "");
}

TEST(SpeakerMap, AMonoDeviceGetsHalfOfEachSide) {
    EXPECT_THAT(OneFrame(SpeakerMap(2, 1), 2), ElementsAre(1.5F));
    EXPECT_THAT(SpeakerMap(2, 1).Notice(), HasSubstr("mono"));
    EXPECT_THAT(SpeakerMap(6, 1).Notice(), HasSubstr("mono"));
}

TEST(SpeakerMap, AClipOfNoKnownLayoutPlaysItsFirstChannelsAndSaysSo) {
    EXPECT_THAT(OneFrame(SpeakerMap(8, 6), 8), ElementsAre(1, 2));
    EXPECT_EQ(SpeakerMap(8, 6).Notice(), "Channels 1 and 2 alone");
}

}  // namespace
