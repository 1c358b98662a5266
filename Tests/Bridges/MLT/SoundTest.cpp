#include "Tests/Bridges/MLT/Framework.h"
#include "Tests/Bridges/PlugInSound.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using test::Difference;
using test::Fps;
using test::PlugInSound;

constexpr Fps kFilm{24000, 1001};
constexpr Fps kPal50{50, 1};
constexpr Fps kNtsc60{60000, 1001};

struct Kind {
    const char* name;
    test::PropertyList properties;
    lineup::BarsAndToneInfo settings;
};

std::vector<Kind> Kinds() {
    return {
        {"StereoTone", {}, test::Tone(2)},
        {"SurroundTone", {{"channels", "5.1"}}, test::Tone(6)},
        {"EbuStereo1000", {{"sound", "ebu-stereo-1000"}}, test::IdentSettings(lineup::EBUStereo1000)},
        {"EbuStereo400", {{"sound", "ebu-stereo-400"}}, test::IdentSettings(lineup::EBUStereo400)},
        {"Ebu51", {{"sound", "ebu-5.1"}}, test::IdentSettings(lineup::EBUMultichannel)},
        {"Blits", {{"sound", "blits"}}, test::IdentSettings(lineup::BLITS5_1)},
    };
}

std::int64_t SamplesIn(const test::Planes& planes) {
    return std::ssize(planes.front());
}

class ClipSound : public testing::TestWithParam<std::tuple<Kind, Fps>> {};

TEST_P(ClipSound, IsThePlugInsFromTheFirstSampleToTheLast) {
    const auto& [kind, fps] = GetParam();
    const auto profile = test::MakeProfile(fps);
    const auto clip = test::MakeClip(*profile, kind.properties);
    mlt_producer_set_in_and_out(clip.get(), 0, 14 * fps.num / fps.den);  // more than the longest cycle
    const int frames = static_cast<int>(mlt_producer_get_playtime(clip.get()));
    const auto channels = static_cast<int>(kind.settings.numChannels);
    const auto sound = test::ReadFrames(MLT_PRODUCER_SERVICE(clip.get()), fps, frames, 48000, channels);
    EXPECT_EQ(SamplesIn(sound), test::SampleAt(frames, fps, 48000));
    EXPECT_EQ(Difference(sound, PlugInSound(kind.settings, 0, SamplesIn(sound))), "");
}

TEST_P(ClipSound, StartsExactlyAtTheFrameAfterASeek) {
    const auto& [kind, fps] = GetParam();
    const auto profile = test::MakeProfile(fps);
    const auto clip = test::MakeClip(*profile, kind.properties);
    mlt_producer_set_in_and_out(clip.get(), 0, 14 * fps.num / fps.den);
    const auto channels = static_cast<int>(kind.settings.numChannels);
    std::mt19937 random(3);
    std::uniform_int_distribution<int> positions(0, static_cast<int>(mlt_producer_get_playtime(clip.get())) - 4);
    for (int i = 0; i < 25; ++i) {
        const int position = positions(random);
        mlt_producer_seek(clip.get(), position);
        const auto sound = test::ReadFrames(MLT_PRODUCER_SERVICE(clip.get()), fps, 3, 48000, channels, position);
        ASSERT_EQ(Difference(sound, PlugInSound(kind.settings, test::SampleAt(position, fps, 48000), SamplesIn(sound))),
                  "")
            << "from frame " << position;
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, ClipSound,
                         testing::Combine(testing::ValuesIn(Kinds()),
                                          testing::Values(kFilm, test::kPal, test::kNtsc, kPal50, kNtsc60)),
                         [](const auto& suite) {
                             const Fps fps = std::get<1>(suite.param);
                             return std::string(std::get<0>(suite.param).name) + "At" + std::to_string(fps.num) + "By" +
                                    std::to_string(fps.den);
                         });

TEST(Sound, IsMadeAtTheRateThatIsAskedFor) {
    const auto profile = test::MakeProfile(test::kNtsc);
    for (const int rate : {8000, 32000, 44100, 96000, 192000, 384000}) {
        const auto clip = test::MakeClip(*profile);
        const auto sound = test::ReadFrames(MLT_PRODUCER_SERVICE(clip.get()), test::kNtsc, 60, rate);
        EXPECT_EQ(Difference(sound, PlugInSound(test::Tone(2, static_cast<float>(rate)), 0, SamplesIn(sound))), "")
            << rate;
    }
}

TEST(Sound, HasAsManySamplesAsAreAskedFor) {
    const auto profile = test::MakeProfile(test::kPal);
    const auto clip = test::MakeClip(*profile);
    for (const int count : {1, 2, 1919, 1920, 1921, 48000}) {
        mlt_producer_seek(clip.get(), 10);
        const auto frame = test::NextFrame(MLT_PRODUCER_SERVICE(clip.get()));
        const auto sound = test::SoundOf(*frame, 48000, 2, count);
        EXPECT_EQ(sound.format, mlt_audio_float);
        EXPECT_EQ(Difference(sound.planes, PlugInSound(test::Tone(2), 19200, count)), "");
    }
}

TEST(Sound, IsMadeAtTheNearestRateWhereNoClipHasTheOneAskedFor) {
    const auto profile = test::MakeProfile(test::kPal);
    const auto clip = test::MakeClip(*profile);
    const auto frame = test::NextFrame(MLT_PRODUCER_SERVICE(clip.get()));
    const auto sound = test::SoundOf(*frame, 4000, 2, 160);  // a waveform view
    EXPECT_EQ(sound.rateHz, 8000);
    EXPECT_EQ(Difference(sound.planes, PlugInSound(test::Tone(2, 8000.0F), 0, 320)), "");
}

TEST(Sound, OfAFrameThatIsAskedForTwiceIsTheSame) {
    const auto profile = test::MakeProfile(test::kNtsc);
    const auto clip = test::MakeClip(*profile, {{"frequency", "997"}});
    test::ReadFrames(MLT_PRODUCER_SERVICE(clip.get()), test::kNtsc, 7);
    const auto once = test::ReadFrames(MLT_PRODUCER_SERVICE(clip.get()), test::kNtsc, 1);
    mlt_producer_seek(clip.get(), 7);
    EXPECT_EQ(Difference(test::ReadFrames(MLT_PRODUCER_SERVICE(clip.get()), test::kNtsc, 1), once), "");
}

TEST(Sound, StartsByTheClockWhenTheProfilesFrameRateChanges) {
    const auto profile = test::MakeProfile(test::kPal);
    const auto clip = test::MakeClip(*profile);
    test::ReadFrames(MLT_PRODUCER_SERVICE(clip.get()), test::kPal, 1);  // 1920 samples, 318 more than a frame at 29.97
    profile->frame_rate_num = test::kNtsc.num;
    profile->frame_rate_den = test::kNtsc.den;
    const auto sound = test::ReadFrames(MLT_PRODUCER_SERVICE(clip.get()), test::kNtsc, 1, 48000, 2, 1);
    EXPECT_EQ(Difference(sound, PlugInSound(test::Tone(2), 1602, static_cast<std::int64_t>(LengthOf(sound)))), "");
}

TEST(Sound, FollowsItsPropertiesWhileItPlays) {
    const auto profile = test::MakeProfile(test::kPal);
    const auto clip = test::MakeClip(*profile);
    test::ReadFrames(MLT_PRODUCER_SERVICE(clip.get()), test::kPal, 5);
    mlt_properties_set(MLT_PRODUCER_PROPERTIES(clip.get()), "frequency", "440");
    mlt_properties_set_double(MLT_PRODUCER_PROPERTIES(clip.get()), "level", -20.0);
    lineup::BarsAndToneInfo settings = test::Tone(2);
    settings.frequency = 440.0F;
    settings.amplitude = 0.1F;
    EXPECT_EQ(Difference(test::ReadFrames(MLT_PRODUCER_SERVICE(clip.get()), test::kPal, 5),
                         PlugInSound(settings, 9600, 9600)),
              "");
}

}  // namespace
