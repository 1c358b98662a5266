// Consumers with threads of their own, in this process: the thread sanitizer sees what they do.
#include "Tests/Bridges/MLT/Framework.h"
#include "Tests/Bridges/MLT/MediaRun.h"
#include "Tests/Bridges/PlugInSound.h"
#include "Tests/Support/OnAllThreads.h"
#include "Tests/Support/TestFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>

namespace {

using test::Difference;
using test::PlugInSound;

constexpr test::Fps kNtsc{30000, 1001};

class ConsumerThreads : public test::TestFolder, public testing::WithParamInterface<const char*> {};

// Renders to the end. False where nothing was rendered: the framework starts the consumer's thread before it says
// that the consumer runs. A thread that is quicker ends at once, and the consumer then says for good that it runs.
bool Render(mlt_consumer consumer) {
    const mlt_properties properties = MLT_CONSUMER_PROPERTIES(consumer);
    mlt_event stopped = mlt_events_setup_wait_for(properties, "consumer-stopped");
    mlt_consumer_start(consumer);
    mlt_events_wait_for(properties, stopped);
    mlt_events_close_wait_for(properties, stopped);
    const bool hasRun = mlt_consumer_is_stopped(consumer) != 0;
    mlt_consumer_stop(consumer);
    return hasRun;
}

// A minute of picture and sound. The consumer fetches pictures ahead on as many threads as it is told.
TEST_P(ConsumerThreads, DoNotChangeASample) {
    const auto profile = test::MakeProfile(kNtsc, 64, 36);
    const std::string file = (Folder() / "a.wav").string();
    bool isRendered = false;
    for (int attempt = 0; attempt < 10 && !isRendered; ++attempt) {
        const auto clip = test::MakeWholeClip(*profile, "blits");
        mlt_producer_set_in_and_out(clip.get(), 0, 1799);
        const test::Consumer sound(mlt_factory_consumer(profile.get(), "avformat", file.c_str()));
        ASSERT_TRUE(sound);
        for (const auto& [name, value] : test::PropertyList{{"real_time", GetParam()},
                                                            {"acodec", "pcm_f32le"},
                                                            {"mlt_audio_format", "f32le"},
                                                            {"channels", "6"},
                                                            {"f", "wav"},
                                                            {"vn", "1"},
                                                            {"terminate_on_pause", "1"}}) {
            mlt_properties_set(MLT_CONSUMER_PROPERTIES(sound.get()), name.c_str(), value.c_str());
        }
        mlt_consumer_connect(sound.get(), MLT_PRODUCER_SERVICE(clip.get()));
        isRendered = Render(sound.get());
    }
    ASSERT_TRUE(isRendered);
    const auto planes = test::ReadFloatWave(file);
    ASSERT_EQ(planes.front().size(), 2882880U);  // 1800 frames
    EXPECT_EQ(Difference(planes, PlugInSound(test::IdentSettings(lineup::BLITS5_1), 0, 2882880)), "");
}

INSTANTIATE_TEST_SUITE_P(RealTime, ConsumerThreads, testing::Values("-2", "-1", "0"));

// As an editor does: a monitor, thumbnails and a waveform view of one clip at once.
TEST(FramesOnManyThreads, HavePictureAndSoundOfTheirOwnPosition) {
    const auto profile = test::MakeProfile({25, 1}, 64, 36);
    const auto clip = test::MakeClip(*profile);
    std::vector<test::Frame> frames;
    for (int i = 0; i < 8 * test::kThreads; ++i) {
        frames.push_back(test::NextFrame(MLT_PRODUCER_SERVICE(clip.get())));
    }
    const auto expected = PlugInSound(test::Tone(2), 0, 1920 * 8 * test::kThreads);
    std::atomic<int> wrong = 0;
    test::OnAllThreads([&](int thread) {
        for (std::size_t i = static_cast<std::size_t>(thread); i < frames.size(); i += test::kThreads) {
            std::uint8_t* bytes = nullptr;
            mlt_image_format format = i % 2 == 0 ? mlt_image_yuv422 : mlt_image_yuv422p16;
            int width = 64 + 2 * (thread % 3);
            int height = 36;
            wrong += mlt_frame_get_image(frames[i].get(), &bytes, &format, &width, &height, 0);
            const auto sound = test::SoundOf(*frames[i], 48000, 2, 1920);
            wrong += std::memcmp(sound.planes[1].data(), expected[1].data() + 1920 * i, 1920 * sizeof(float)) != 0;
        }
    });
    EXPECT_EQ(wrong, 0);
}

}  // namespace
