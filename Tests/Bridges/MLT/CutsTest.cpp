#include "Tests/Bridges/MLT/Framework.h"
#include "Tests/Bridges/PlugInSound.h"

#include <gtest/gtest.h>

namespace {

using test::Difference;
using test::Fps;
using test::PlugInSound;

const lineup::BarsAndToneInfo kBlits = test::IdentSettings(lineup::BLITS5_1);

std::int64_t LengthOf(const test::Planes& planes) {
    return static_cast<std::int64_t>(planes.front().size());
}

TEST(Cuts, OfTheProducerItselfCountFromTheClipsBeginning) {
    const auto profile = test::MakeProfile(test::kNtsc);
    const auto clip = test::MakeClip(*profile, {{"sound", "blits"}});
    mlt_producer_set_in_and_out(clip.get(), 37, 120);
    const auto sound = test::ReadFrames(MLT_PRODUCER_SERVICE(clip.get()), test::kNtsc, 84, 48000, 6);
    EXPECT_EQ(Difference(sound, PlugInSound(kBlits, test::SampleAt(37, test::kNtsc, 48000), LengthOf(sound))), "");
}

// Frames of a timeline at 29.97 are 1601 or 1602 samples long by their place there, not by the clip's.
TEST(Cuts, OnATimelinePlayWithoutAGapWhereverTheyLie) {
    const auto profile = test::MakeProfile(test::kNtsc);
    const auto clip = test::MakeClip(*profile, {{"sound", "blits"}});
    for (const int blank : {1, 2, 3, 4, 5}) {
        const test::Playlist timeline(mlt_playlist_new(profile.get()));
        mlt_playlist_blank(timeline.get(), blank - 1);
        mlt_playlist_append_io(timeline.get(), clip.get(), 11, 130);
        const mlt_service service = MLT_PLAYLIST_SERVICE(timeline.get());
        test::ReadFrames(service, test::kNtsc, blank, 48000, 6);
        const auto sound = test::ReadFrames(service, test::kNtsc, 120, 48000, 6, blank);
        EXPECT_EQ(Difference(sound, PlugInSound(kBlits, test::SampleAt(11, test::kNtsc, 48000), LengthOf(sound))), "")
            << "after " << blank << " frames";
    }
}

TEST(Cuts, ThatFollowEachOtherStartWhereEachStarts) {
    const auto profile = test::MakeProfile(test::kPal);
    const auto clip = test::MakeClip(*profile, {{"frequency", "997"}});
    const test::Playlist timeline(mlt_playlist_new(profile.get()));
    mlt_playlist_append_io(timeline.get(), clip.get(), 50, 59);
    mlt_playlist_append_io(timeline.get(), clip.get(), 3, 7);
    lineup::BarsAndToneInfo settings = test::Tone(2);
    settings.frequency = 997.0F;
    const mlt_service service = MLT_PLAYLIST_SERVICE(timeline.get());
    EXPECT_EQ(Difference(test::ReadFrames(service, test::kPal, 10), PlugInSound(settings, 96000, 19200)), "");
    EXPECT_EQ(Difference(test::ReadFrames(service, test::kPal, 5), PlugInSound(settings, 5760, 9600)), "");
}

TEST(Cuts, PlayedTogetherAreEachWithoutAGap) {
    const auto profile = test::MakeProfile(test::kNtsc);
    const auto clip = test::MakeClip(*profile, {{"frequency", "997"}});
    const auto one = test::Producer(mlt_producer_cut(clip.get(), 10, 99));
    const auto other = test::Producer(mlt_producer_cut(clip.get(), 41, 120));
    lineup::BarsAndToneInfo settings = test::Tone(2);
    settings.frequency = 997.0F;
    const float rate = 30000.0F / 1001.0F;
    std::int64_t done = 0;
    for (int i = 0; i < 60; ++i) {
        const int count = mlt_audio_calculate_frame_samples(rate, 48000, i + 3);
        const auto frameOfOne = test::NextFrame(MLT_PRODUCER_SERVICE(one.get()));
        const auto frameOfOther = test::NextFrame(MLT_PRODUCER_SERVICE(other.get()));
        ASSERT_EQ(Difference(test::SoundOf(*frameOfOne, 48000, 2, count).planes,
                             PlugInSound(settings, test::SampleAt(10, test::kNtsc, 48000) + done, count)),
                  "");
        ASSERT_EQ(Difference(test::SoundOf(*frameOfOther, 48000, 2, count).planes,
                             PlugInSound(settings, test::SampleAt(41, test::kNtsc, 48000) + done, count)),
                  "");
        done += count;
    }
}

class Speeds : public testing::TestWithParam<double> {};

TEST_P(Speeds, GiveEachFrameItsOwnSound) {
    const auto profile = test::MakeProfile(test::kNtsc);
    const auto clip = test::MakeClip(*profile, {{"sound", "ebu-5.1"}});
    const double speed = GetParam();
    mlt_producer_seek(clip.get(), 60);
    mlt_producer_set_speed(clip.get(), speed);
    for (int i = 0; i < 12; ++i) {
        const auto frame = test::NextFrame(MLT_PRODUCER_SERVICE(clip.get()));
        const int position = 60 + static_cast<int>(i * speed);
        EXPECT_EQ(mlt_frame_original_position(frame.get()), position);
        const auto sound = test::SoundOf(*frame, 48000, 6, 1600);
        ASSERT_EQ(Difference(sound.planes, PlugInSound(test::IdentSettings(lineup::EBUMultichannel),
                                                       test::SampleAt(position, test::kNtsc, 48000), 1600)),
                  "")
            << "frame " << position;
    }
}

INSTANTIATE_TEST_SUITE_P(OfPlayback, Speeds, testing::Values(2.0, 3.0, -2.0, -1.0));

}  // namespace
