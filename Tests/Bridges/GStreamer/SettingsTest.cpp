// Sound that a settings file or a document says all of.
#include <lineup/SettingsFile.h>
#include "Tests/Bridges/GStreamer/Framework.h"
#include "Tests/Bridges/PlugInSound.h"
#include "Tests/Support/TestFolder.h"

#include <gmock/gmock.h>

#include <limits>

namespace {

using testing::HasSubstr;

class SettingsOfAFile : public test::TestFolder {
protected:
    [[nodiscard]] test::Played Play(const lineup::BarsAndToneInfo& settings, const std::string& more = "") const {
        lineup::WriteSettings(Folder() / "tone.batn", settings, true);
        return test::PlayOnce("lineupaudiosrc num-buffers=2 settings=" + (Folder() / "tone.batn").string() + more);
    }
};

TEST_F(SettingsOfAFile, SayTheChannelsTheRateAndTheTone) {
    lineup::BarsAndToneInfo settings = test::Tone(4, 44100.0F);
    settings.frequency = 997.0F;
    const auto played = Play(settings);
    EXPECT_EQ(played.error, "");
    // Left and right, at the front and at the sides.
    EXPECT_THAT(played.caps, testing::AllOf(HasSubstr("rate=(int)44100"), HasSubstr("channels=(int)4"),
                                            HasSubstr("channel-mask=(bitmask)0x0000000000000c03")));
    const std::string bytes = played.Bytes();
    ASSERT_EQ(bytes.size(), std::size_t{2048} * 4 * sizeof(float));
    EXPECT_EQ(test::Difference(test::PlanesOf(bytes, 4), test::PlugInSound(settings, 0, 2048)), "");
}

TEST_F(SettingsOfAFile, AreRefusedWhereNoStreamCanHaveThem) {
    lineup::BarsAndToneInfo settings = test::Tone(2, std::numeric_limits<float>::quiet_NaN());
    EXPECT_THAT(Play(settings).error, HasSubstr("tone.batn has a sample rate of nan Hz: must be a whole number"));
    settings.sampleRate = 1e30F;
    EXPECT_THAT(Play(settings).error, HasSubstr("must be a whole number from 8000 to 384000"));
    EXPECT_THAT(Play(test::Tone(7)).error, HasSubstr("tone.batn has 7 channels: must be 1 to 6"));
    settings = test::Tone(2);
    settings.frequency = 24000.0F;
    EXPECT_THAT(Play(settings).error, HasSubstr("24000"));
}

}  // namespace
