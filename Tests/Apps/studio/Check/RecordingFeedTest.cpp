#include <lineup/ToneChoice.h>
#include "Apps/studio/Check/RecordingFeed.h"
#include "Apps/studio/Sound/ClipPlayback.h"
#include "Tests/Apps/studio/Check/Recordings.h"
#include "Tests/Apps/studio/StudioHands.h"
#include "Tests/Support/TestFolder.h"

#include <gtest/gtest.h>

#include <QTest>
#include <array>
#include <cstdint>
#include <vector>

namespace {

using studio::RecordingFeed;
using Planes = std::array<std::vector<float>, 6>;

constexpr std::size_t kFrames = 20000;
constexpr std::int64_t kLength = 14 * 48000;

std::array<float*, 6> Targets(Planes& planes, std::size_t at) {
    std::array<float*, 6> targets{};
    for (std::size_t channel = 0; channel < planes.size(); ++channel) {
        planes[channel].resize(kFrames);
        targets[channel] = planes[channel].data() + at;
    }
    return targets;
}

Planes ReadAll(studio::SoundFeed& feed, std::int64_t position) {
    Planes planes;
    std::size_t done = 0;
    test::WaitFor(
        [&] {
            done += feed.Read(position + static_cast<std::int64_t>(done), kFrames - done, Targets(planes, done));
            return done == kFrames;
        },
        "the samples are decoded");
    return planes;
}

class RecordingFeeds : public test::TestFolder {
protected:
    RecordingFeeds() { test::RecordLineup(test::ThePlugin(), QString::fromStdString(mFile), {64, 36}); }
    [[nodiscard]] RecordingFeed Feed() const { return {mFile, 6, 48000, kLength}; }

private:
    const std::string mFile = (Folder() / "sent.mov").string();
};

TEST_F(RecordingFeeds, ASampleIsTheClipsWhereverItIsAskedFor) {
    RecordingFeed feed = Feed();
    studio::ClipFeed clip(std::make_shared<lineup::Clip>(test::ThePlugin(),
                                                         lineup::MakeSettings(*test::ThePlugin(), {.ident = "blits"})));
    for (const std::int64_t place : {0, 9 * 48000, 2 * 48000 + 17, 2 * 48000 + 17 + static_cast<int>(kFrames)}) {
        const Planes sent = ReadAll(clip, place);
        const Planes came = ReadAll(feed, place);
        for (std::size_t channel = 0; channel < sent.size(); ++channel) {
            for (std::size_t i = 2048; i < kFrames; i += 111) {  // behind the first packet after a seek
                ASSERT_NEAR(came[channel][i], sent[channel][i], 1e-6) << place << " " << channel << " " << i;
            }
        }
    }
}

TEST_F(RecordingFeeds, BehindTheEndOfWhatCanBeReadItIsSilent) {
    RecordingFeed feed("no such file", 6, 48000, kLength);
    EXPECT_EQ(ReadAll(feed, 100),
              Planes({std::vector<float>(kFrames), std::vector<float>(kFrames), std::vector<float>(kFrames),
                      std::vector<float>(kFrames), std::vector<float>(kFrames), std::vector<float>(kFrames)}));
}

// Has nothing until it is told so, and then ones.
class LateFeed : public studio::SoundFeed {
public:
    explicit LateFeed(const bool& isThere) : mIsThere(&isThere) {}
    [[nodiscard]] int NumChannels() const noexcept override { return 1; }
    [[nodiscard]] double SampleRate() const noexcept override { return 48000; }
    std::size_t Read(std::int64_t /*position*/, std::size_t frames, std::span<float* const> targets) override {
        std::fill_n(targets[0], frames, 1.0F);
        return *mIsThere ? frames : 0;
    }

private:
    const bool* mIsThere;
};

TEST(ClipPlayback, WaitsWithThePlayheadForSamplesThatAreStillToCome) {
    bool isThere = false;
    studio::ClipPlayback playback(std::make_unique<LateFeed>(isThere), studio::SpeakerMap(1, 1), 48000, 700);
    playback.Loudness().Begin(1);
    std::vector<float> heard(2400, 7.0F);
    playback.Render(heard);
    playback.Render(heard);
    EXPECT_EQ(heard, std::vector<float>(2400, 0.0F));
    const auto later = studio::ClipPlayback::Clock::now() + std::chrono::milliseconds(300);
    EXPECT_EQ(playback.Playhead(later), 700);
    isThere = true;
    playback.Render(heard);
    EXPECT_EQ(heard, std::vector<float>(2400, 1.0F));
    EXPECT_GT(playback.Playhead(later), 700);
}

}  // namespace
