// Times, and where in the clip a pipeline is after a seek.
#include "Tests/Bridges/GStreamer/Framework.h"
#include "Tests/Bridges/PlugInSound.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using test::Player;
using test::Stretch;

// The first nanosecond of which the frame, or the sample, has begun.
GstClockTime TimeOf(std::uint64_t number, std::uint64_t num, std::uint64_t den) {
    return number * den * GST_SECOND / num;
}

TEST(Times, OfFramesAreCountedAndDoNotAddUp) {
    const auto played =
        test::PlayOnce("lineupvideosrc num-buffers=300 ! video/x-raw,width=16,height=16,framerate=30000/1001");
    ASSERT_EQ(played.buffers.size(), 300U);
    for (std::uint64_t n = 0; n < 300; ++n) {
        EXPECT_EQ(played.buffers[n].time, TimeOf(n, 30000, 1001));
        EXPECT_EQ(played.buffers[n].duration, TimeOf(n + 1, 30000, 1001) - TimeOf(n, 30000, 1001));
        EXPECT_EQ(played.buffers[n].discont, n == 0);
    }
}

TEST(Times, OfSamplesAreCountedAndDoNotAddUp) {
    const auto played = test::PlayOnce("lineupaudiosrc num-buffers=200 samplesperbuffer=441 ! audio/x-raw,rate=44100");
    ASSERT_EQ(played.buffers.size(), 200U);
    EXPECT_EQ(played.buffers[199].time, TimeOf(199 * 441, 44100, 1));
}

TEST(Duration, IsWhereTheStreamEnds) {
    const auto frames = test::PlayOnce("lineupvideosrc duration=2000000000 ! video/x-raw,width=16,height=16");
    EXPECT_EQ(frames.buffers.size(), 50U);
    // 1 ms less than two buffers of a thousand samples.
    Player sound("lineupaudiosrc duration=40666666 samplesperbuffer=1000 ! audio/x-raw,format=S16LE,channels=1");
    sound.SetState(GST_STATE_PAUSED);
    gint64 duration = 0;
    EXPECT_NE(gst_element_query_duration(&sound.Pipeline(), GST_FORMAT_TIME, &duration), FALSE);
    EXPECT_EQ(duration, 40666666);
    EXPECT_EQ(sound.Play().Bytes().size(), 1952U * 2);
}

TEST(Duration, OfASourceThatHasNoEndIsUnknown) {
    Player player("lineupaudiosrc");
    player.SetState(GST_STATE_PAUSED);
    gint64 duration = 0;
    EXPECT_EQ(gst_element_query_duration(&player.Pipeline(), GST_FORMAT_TIME, &duration), FALSE);
}

TEST(Seek, GivesTheFrameThatIsShownThen) {
    Player player("lineupvideosrc ! video/x-raw,width=16,height=16,framerate=30000/1001");
    for (std::uint64_t n = 0; n < 40; ++n) {
        const GstClockTime begin = TimeOf(n, 30000, 1001);
        const auto played = player.Play(Stretch{begin, TimeOf(n + 3, 30000, 1001)});
        ASSERT_EQ(played.buffers.size(), 3U) << n;
        EXPECT_EQ(played.buffers.front().time, begin);
        EXPECT_TRUE(played.buffers.front().discont);
    }
    const auto within = player.Play(Stretch{TimeOf(7, 30000, 1001) - 1, TimeOf(7, 30000, 1001) + 1});
    ASSERT_EQ(within.buffers.size(), 2U);
    EXPECT_EQ(within.buffers.front().time, TimeOf(6, 30000, 1001));
}

TEST(Seek, GivesTheSamplesFromThereToTheStop) {
    Player player("lineupaudiosrc ident=blits ! audio/x-raw,format=F32LE");
    std::mt19937 random(5);
    std::uniform_int_distribution<std::uint64_t> positions(0, 14 * 48000);
    for (int i = 0; i < 20; ++i) {
        const std::uint64_t start = positions(random);
        const std::uint64_t count = 1 + positions(random) % 5000;
        const auto played = player.Play(Stretch{TimeOf(start, 48000, 1), TimeOf(start + count, 48000, 1)});
        EXPECT_EQ(
            test::Difference(test::PlanesOf(played.Bytes(), 6),
                             test::PlugInSound(test::IdentSettings(lineup::BLITS5_1), static_cast<std::int64_t>(start),
                                               static_cast<std::int64_t>(count))),
            "");
    }
}

TEST(Seek, GoesAYearAhead) {
    constexpr std::uint64_t kYear = std::uint64_t{365} * 24 * 3600 * 48000;
    Player player("lineupaudiosrc ! audio/x-raw,format=F32LE,channels=1");
    const auto played = player.Play(Stretch{kYear / 48000 * GST_SECOND, kYear / 48000 * GST_SECOND + 10'000'000});
    EXPECT_EQ(test::Difference(test::PlanesOf(played.Bytes(), 1),
                               test::PlugInSound(test::Tone(1), static_cast<std::int64_t>(kYear), 480)),
              "");
}

TEST(Seek, BackwardsIsRefused) {
    Player player("lineupaudiosrc");
    player.SetState(GST_STATE_PAUSED);
    EXPECT_EQ(gst_element_seek(&player.Pipeline(), -1.0, GST_FORMAT_TIME, GST_SEEK_FLAG_FLUSH, GST_SEEK_TYPE_SET, 0,
                               GST_SEEK_TYPE_SET, GST_SECOND),
              FALSE);
}

TEST(States, MayBeGoneThroughAgainAndAgain) {
    for (const char* const live : {"false", "true"}) {
        Player player("lineupaudiosrc num-buffers=3 samplesperbuffer=96 ident=ebu-5.1 is-live=" + std::string(live) +
                      " ! audio/x-raw,format=S24LE");
        const std::size_t bytes = player.Play().Bytes().size();
        EXPECT_EQ(bytes, 3U * 96 * 6 * 3);
        for (int i = 0; i < 10; ++i) {
            player.SetState(i % 2 == 0 ? GST_STATE_READY : GST_STATE_NULL);
            EXPECT_EQ(player.Play().Bytes().size(), bytes);
        }
    }
}

TEST(States, MayBeGoneThroughWithoutAnEnd) {
    Player player("lineupsrc name=s s.video ! fakesink sync=false s.audio ! queue");
    for (int i = 0; i < 5; ++i) {
        player.SetState(GST_STATE_PLAYING);
        player.SetState(i % 2 == 0 ? GST_STATE_READY : GST_STATE_NULL);
    }
}

}  // namespace
