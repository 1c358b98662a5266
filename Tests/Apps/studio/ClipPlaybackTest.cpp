#include <lineup/ToneChoice.h>
#include "Apps/studio/Sound/ClipPlayback.h"
#include "Apps/studio/Sound/SilentOutput.h"
#include "Tests/Support/Samples.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

using studio::ClipPlayback;
using studio::SpeakerMap;

std::shared_ptr<const lineup::Clip> ClipOf(const lineup::ToneChoice& tone) {
    static const auto plugin = std::make_shared<const lineup::Importer>(TEST_BUNDLE);
    return std::make_shared<const lineup::Clip>(plugin, lineup::MakeSettings(*plugin, tone));
}

// Frames of the left channel from `position` on.
std::vector<float> Left(const lineup::Clip& clip, std::int64_t position, std::size_t count) {
    std::vector<float> left(count);
    std::vector<float> right(count);
    const std::vector<float*> targets = {left.data(), right.data()};
    lineup::AudioReader(clip).Read(position, static_cast<std::int64_t>(count), targets);
    return left;
}

std::vector<float> RenderLeft(ClipPlayback& playback, std::size_t frames) {
    std::vector<float> interleaved(2 * frames);
    playback.Render(interleaved);
    std::vector<float> left;
    for (std::size_t i = 0; i < frames; ++i) {
        left.push_back(interleaved[2 * i]);
    }
    return left;
}

class Playback : public testing::Test {
protected:
    std::shared_ptr<const lineup::Clip> mClip = ClipOf({.ident = "ebu-stereo-1000"});
    ClipPlayback mPlayback{mClip, SpeakerMap(2, 2), 10000, 4000};
};

TEST_F(Playback, RendersThePlugInsSamplesHoweverItIsCut) {
    std::vector<float> rendered;
    for (const std::size_t frames : {1U, 479U, 3000U}) {
        const auto part = RenderLeft(mPlayback, frames);
        rendered.insert(rendered.end(), part.begin(), part.end());
    }
    EXPECT_TRUE(test::SameSamples(rendered, Left(*mClip, 4000, 3480)));
}

TEST_F(Playback, IsSilentAfterTheEnd) {
    EXPECT_TRUE(test::SameSamples(RenderLeft(mPlayback, 6000), Left(*mClip, 4000, 6000)));
    EXPECT_TRUE(test::AllAre(RenderLeft(mPlayback, 500), 0.0F));
}

TEST_F(Playback, TakesUpAChangedVolumeOverABlockAndShowsPeaksWithoutIt) {
    mPlayback.Loudness().Set(0.5F);
    const auto plain = Left(*mClip, 4000, 1200);
    const auto block = RenderLeft(mPlayback, 600);
    EXPECT_FLOAT_EQ(block[299], plain[299] * 0.75F);
    EXPECT_FLOAT_EQ(block[599], plain[599] * 0.5F);
    (void)mPlayback.Peaks().Take(0);
    EXPECT_FLOAT_EQ(RenderLeft(mPlayback, 600)[300], plain[900] * 0.5F);
    EXPECT_FLOAT_EQ(mPlayback.Peaks().Take(0), 0.125F);
}

TEST_F(Playback, LoopsToTheSample) {
    mPlayback.SetLoop(true);
    (void)RenderLeft(mPlayback, 5900);
    std::vector<float> expected = Left(*mClip, 9900, 100);
    const std::vector<float> again = Left(*mClip, 0, 400);
    expected.insert(expected.end(), again.begin(), again.end());
    EXPECT_TRUE(test::SameSamples(RenderLeft(mPlayback, 500), expected));
}

TEST_F(Playback, SeeksWithTheNextRender) {
    (void)RenderLeft(mPlayback, 100);
    mPlayback.Seek(777);
    EXPECT_TRUE(test::SameSamples(RenderLeft(mPlayback, 100), Left(*mClip, 777, 100)));
}

TEST_F(Playback, ThePlayheadIsWhatIsHeardNotWhatIsRendered) {
    mPlayback.SetLatency(1000);
    (void)RenderLeft(mPlayback, 1000);
    const auto now = ClipPlayback::Clock::time_point{};  // as long ago as the last render
    EXPECT_EQ(mPlayback.Playhead(now), 4000);
    (void)RenderLeft(mPlayback, 500);
    EXPECT_EQ(mPlayback.Playhead(now), 4500);
}

TEST_F(Playback, ThePlayheadJumpsWhenTheSeekIsHeard) {
    mPlayback.SetLatency(1000);
    (void)RenderLeft(mPlayback, 2000);
    mPlayback.Seek(0);
    const auto now = ClipPlayback::Clock::time_point{};
    (void)RenderLeft(mPlayback, 900);
    EXPECT_EQ(mPlayback.Playhead(now), 5900);
    (void)RenderLeft(mPlayback, 200);
    EXPECT_EQ(mPlayback.Playhead(now), 100);
}

TEST_F(Playback, HasEndedWhenTheEndHasBeenHeard) {
    mPlayback.SetLatency(1000);
    const auto now = ClipPlayback::Clock::time_point{};
    (void)RenderLeft(mPlayback, 6900);
    EXPECT_FALSE(mPlayback.Ended(now));
    (void)RenderLeft(mPlayback, 100);
    EXPECT_TRUE(mPlayback.Ended(now));
    mPlayback.SetLoop(true);
    EXPECT_FALSE(mPlayback.Ended(now));
}

TEST_F(Playback, PeaksAreOfTheClipsChannelsAndTakenOnce) {
    (void)RenderLeft(mPlayback, 4800);
    EXPECT_FLOAT_EQ(mPlayback.Peaks().Take(0), 0.125F);
    EXPECT_EQ(mPlayback.Peaks().Take(0), 0.0F);
    EXPECT_FLOAT_EQ(mPlayback.Peaks().Take(1), 0.125F);
}

TEST_F(Playback, IsSteeredWhileItIsPulled) {
    auto playback = std::make_shared<ClipPlayback>(mClip, SpeakerMap(2, 2), 48000, 0);
    playback->SetLoop(true);
    const studio::SilentOutput output(playback);
    for (int i = 0; i < 2000; ++i) {
        playback->Seek(i * 20);
        playback->SetLoop(i % 2 == 0);
        const std::int64_t playhead = playback->Playhead();
        ASSERT_GE(playhead, 0);
        ASSERT_LE(playhead, 48000);
        (void)playback->Peaks().Take(0);
        std::this_thread::yield();
    }
}

TEST(SnapshotCell, IsReadWhole) {
    struct Pair {
        std::uint64_t a = 0;
        std::uint64_t b = 0;
    };
    studio::SnapshotCell<Pair> cell;
    cell.Write({0, ~std::uint64_t{0}});
    std::atomic<bool> done{false};
    std::thread writer([&] {
        for (std::uint64_t i = 1; i < 200000; ++i) {
            cell.Write({i, ~i});
        }
        done.store(true);
    });
    while (!done.load()) {
        const Pair pair = cell.Read();
        EXPECT_EQ(pair.b, ~pair.a);
        std::this_thread::yield();
    }
    writer.join();
}

}  // namespace
