// What the framework is told of the channels.
#include "Tests/Bridges/GStreamer/Framework.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

std::string CapsOf(const std::string& properties, const std::string& wanted = "") {
    const auto played = test::PlayOnce("lineupaudiosrc num-buffers=1 " + properties + " ! audio/x-raw" + wanted);
    return played.error + played.caps;
}

TEST(Channels, OfAnIdentAreThoseThatItNames) {
    EXPECT_THAT(CapsOf("ident=ebu-stereo-400"), HasSubstr("channels=(int)2, channel-mask=(bitmask)0x0000000000000003"));
    // Left, right, centre, low frequencies, and surround at the sides.
    EXPECT_THAT(CapsOf("ident=blits"), HasSubstr("channels=(int)6, channel-mask=(bitmask)0x0000000000000c0f"));
}

TEST(Channels, OfSurroundMayBeAtTheRearOrUnnamed) {
    EXPECT_THAT(CapsOf("ident=blits", ",channel-mask=(bitmask)0x3f"), HasSubstr("0x000000000000003f"));
    EXPECT_THAT(CapsOf("ident=blits", ",channel-mask=(bitmask)0x0"), HasSubstr("0x0000000000000000"));
}

TEST(Channels, OfAnIdentAreNoOthers) {
    EXPECT_THROW(CapsOf("ident=blits", ",channels=2"), std::runtime_error);
    EXPECT_THROW(CapsOf("ident=blits", ",channel-mask=(bitmask)0xff"), std::runtime_error);
}

TEST(Channels, OfASteadyToneAreForAnySpeakers) {
    EXPECT_THAT(CapsOf(""), HasSubstr("channels=(int)2, channel-mask=(bitmask)0x0000000000000003"));
    EXPECT_THAT(CapsOf("", ",channels=4,channel-mask=(bitmask)0x107"), HasSubstr("0x0000000000000107"));
    EXPECT_THAT(CapsOf("", ",channels=1"), HasSubstr("channels=(int)1"));
}

}  // namespace
