// The renderer as a person runs it. Every run has a hard limit of time, after which it is killed.
#include "Tests/Bridges/MLT/Framework.h"
#include "Tests/Bridges/MLT/MediaRun.h"
#include "Tests/Bridges/PlugInSound.h"
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace {

namespace fs = std::filesystem;
using test::Difference;
using test::Fps;
using test::PlugInSound;
using testing::HasSubstr;

constexpr const char* kSound = " acodec=pcm_f32le mlt_audio_format=f32le vn=1";

class Melt : public test::TestFolder {
protected:
    // Runs `melt ARGUMENTS` in the test's own folder, with the modules of `repository`. On a busy machine melt 7.12
    // now and then, and 7.30 up to once in three times, sleeps on in its main loop, with no other thread left and
    // nothing written, or ends with an empty file and no error; such a run is killed and made again. It is the
    // framework's doing, and happens with its own producers alike: consumer_start in its avformat module creates the
    // thread first and sets "running" after, which a quick thread finds at 0.
    [[nodiscard]] test::RunResult Run(const std::string& arguments,
                                      const std::string& repository = TEST_MLT_REPOSITORY) const {
        const std::string command =
            "cd '" + Folder().string() + "' && LC_ALL=C MLT_REPOSITORY='" + repository + "' " TEST_MELT " " + arguments;
        constexpr int kKilled = 128 + 9;
        test::RunResult result = test::RunProgram(command, Folder());
        for (int again = 0; again < 7 && (result.exitCode == kKilled || WroteNothing()); ++again) {
            result = test::RunProgram(command, Folder());
        }
        return result;
    }

    [[nodiscard]] bool WroteNothing() const {
        const fs::path picture = Folder() / "a.yuv";
        return fs::exists(picture) && fs::file_size(picture) == 0;
    }

    // The sound of a render of `clip`.
    [[nodiscard]] test::Planes Sound(const std::string& profile, const std::string& clip,
                                     const std::string& options) const {
        const auto result =
            Run("-profile " + profile + " " + clip + " -consumer avformat:a.wav" + kSound + " " + options);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return test::ReadFloatWave(Folder() / "a.wav");
    }
};

struct Rate {
    const char* profile;
    Fps fps;
};

class MeltRender : public Melt, public testing::WithParamInterface<std::tuple<Rate, int>> {};

TEST_P(MeltRender, HasTheSoundOfThePlugIn) {
    const auto& [rate, realTime] = GetParam();
    const auto sound = Sound(rate.profile, "barsandtone: frequency=997", "real_time=" + std::to_string(realTime));
    const auto frames = 5 * rate.fps.num / rate.fps.den + (rate.fps.den == 1 ? 0 : 1);
    ASSERT_EQ(static_cast<std::int64_t>(sound.front().size()), test::SampleAt(frames, rate.fps, 48000));
    lineup::BarsAndToneInfo settings = test::Tone(2);
    settings.frequency = 997.0F;
    EXPECT_EQ(Difference(sound, PlugInSound(settings, 0, static_cast<std::int64_t>(sound.front().size()))), "");
}

INSTANTIATE_TEST_SUITE_P(RatesAndThreads, MeltRender,
                         testing::Values(std::tuple{Rate{"atsc_1080p_2398", {24000, 1001}}, -1},
                                         std::tuple{Rate{"atsc_1080p_25", {25, 1}}, 0},
                                         std::tuple{Rate{"atsc_1080p_25", {25, 1}}, 1},
                                         std::tuple{Rate{"atsc_1080p_2997", {30000, 1001}}, -2},
                                         std::tuple{Rate{"atsc_1080p_50", {50, 1}}, -1},
                                         std::tuple{Rate{"atsc_1080p_5994", {60000, 1001}}, -2}));

class MeltIdent : public Melt, public testing::WithParamInterface<std::tuple<const char*, lineup::IdentifierFormat>> {};

TEST_P(MeltIdent, SoundsAsThePlugInMakesIt) {
    const auto& [name, format] = GetParam();
    const lineup::BarsAndToneInfo settings = test::IdentSettings(format);
    const auto sound = Sound("atsc_1080p_2997", std::string("barsandtone:") + name + " out=449",
                             "real_time=-2 channels=" + std::to_string(settings.numChannels));
    ASSERT_EQ(sound.front().size(), 720720U);  // 450 frames
    EXPECT_EQ(Difference(sound, PlugInSound(settings, 0, 720720)), "");
}

INSTANTIATE_TEST_SUITE_P(OfEachKind, MeltIdent,
                         testing::Values(std::tuple{"ebu-stereo-1000", lineup::EBUStereo1000},
                                         std::tuple{"ebu-stereo-400", lineup::EBUStereo400},
                                         std::tuple{"ebu-5.1", lineup::EBUMultichannel},
                                         std::tuple{"blits", lineup::BLITS5_1}));

TEST_F(Melt, CutsAClipAtItsFrames) {
    const auto sound =
        Sound("atsc_1080p_2997", "barsandtone:ebu-stereo-400 in=37 out=120 barsandtone: in=5 out=9", "real_time=-1");
    constexpr Fps kNtsc{30000, 1001};
    const std::int64_t cut = test::SampleAt(84, kNtsc, 48000);
    ASSERT_EQ(static_cast<std::int64_t>(sound.front().size()), test::SampleAt(89, kNtsc, 48000));
    auto expected = PlugInSound(test::IdentSettings(lineup::EBUStereo400), test::SampleAt(37, kNtsc, 48000), cut);
    const auto second = PlugInSound(test::Tone(2), test::SampleAt(5, kNtsc, 48000),
                                    static_cast<std::int64_t>(sound.front().size()) - cut);
    for (std::size_t c = 0; c < 2; ++c) {
        expected[c].insert(expected[c].end(), second[c].begin(), second[c].end());
    }
    EXPECT_EQ(Difference(sound, expected), "");
}

TEST_F(Melt, GivesMonoToBothSidesAtFullLevel) {
    const auto sound = Sound("dv_pal", "barsandtone: channels=mono out=49", "real_time=-1");
    const auto mono = PlugInSound(test::Tone(1), 0, 96000);
    EXPECT_EQ(Difference(sound, {mono[0], mono[0]}), "");
}

// The pixels of the producer itself are compared with the plug-in's elsewhere.
TEST_F(Melt, RendersThePixelsOfTheProducer) {
    const auto result =
        Run("-profile atsc_1080p_25 barsandtone: out=2 -consumer avformat:a.yuv "
            "f=rawvideo vcodec=rawvideo pix_fmt=yuyv422 an=1 real_time=-2");
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto profile = test::MakeProfile({25, 1});
    const auto clip = test::MakeClip(*profile);
    const auto frame = test::NextFrame(MLT_PRODUCER_SERVICE(clip.get()));
    std::uint8_t* bytes = nullptr;
    mlt_image_format format = mlt_image_yuv422;
    int width = 0;
    int height = 0;
    ASSERT_EQ(mlt_frame_get_image(frame.get(), &bytes, &format, &width, &height, 0), 0);
    const std::string one(reinterpret_cast<const char*>(bytes), 1920UL * 1080 * 2);
    const std::string rendered = test::ReadFile(Folder() / "a.yuv");
    EXPECT_TRUE(rendered == one + one + one) << rendered.size() << " bytes";
}

// Of a render of pictures, of which the first is looked at.
constexpr std::size_t kFrames = 3;

// How many codes the ramp has in a picture of more than eight bits.
struct Deep {
    const char* clip;
    const char* consumer;
    std::size_t steps;
};

class MeltRamp : public Melt, public testing::WithParamInterface<Deep> {};

TEST_P(MeltRamp, HasAsManyStepsAsThePageSays) {
    const auto result = Run(std::string("-profile atsc_1080p_25 barsandtone: out=2 ") + GetParam().clip +
                                " -consumer avformat:a.yuv f=rawvideo vcodec=rawvideo an=1 " + GetParam().consumer,
                            TEST_MLT_DEEP_REPOSITORY);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const std::string rendered = test::ReadFile(Folder() / "a.yuv");
    ASSERT_EQ(rendered.size(), kFrames * 1920 * 1080 * 4);
    std::set<std::string> codes;
    for (std::size_t x = 445; x < 1473; ++x) {
        codes.insert(rendered.substr((1920 * 750 + x) * 2, 2));
    }
    EXPECT_EQ(codes.size(), GetParam().steps);
}

INSTANTIATE_TEST_SUITE_P(Depths, MeltRamp,
                         testing::Values(Deep{"", "pix_fmt=yuv422p10le", 220},
                                         Deep{"", "pix_fmt=yuv422p10le mlt_image_format=yuv422p16", 824},
                                         Deep{"depth=10", "pix_fmt=yuv422p10le mlt_image_format=yuv422p16", 876},
                                         Deep{"", "pix_fmt=yuv422p16le mlt_image_format=yuv422p16", 1028}));

TEST_F(Melt, HasTheFrameworkConvertThePictureForA709ProfileWhenToldTo) {
    const auto result =
        Run("-profile atsc_1080p_25 barsandtone: matrix=601 out=2 -consumer avformat:a.yuv f=rawvideo "
            "vcodec=rawvideo pix_fmt=yuyv422 an=1 real_time=-1");
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const std::string rendered = test::ReadFile(Folder() / "a.yuv");
    ASSERT_EQ(rendered.size(), kFrames * 1920 * 1080 * 2);
    const auto code = [&](std::size_t at) { return static_cast<double>(static_cast<unsigned char>(rendered[at])); };
    const std::size_t yellow = (1920 * 10 + 540) * 2;  // 161, 44, 142 in BT.601
    EXPECT_NEAR(code(yellow), 168, 2);
    EXPECT_NEAR(code(yellow + 1), 44, 2);
    EXPECT_NEAR(code(yellow + 3), 136, 2);
}

TEST_F(Melt, AnswersAQueryWithTheMetadata) {
    const auto result = Run("-query producer=barsandtone");
    EXPECT_EQ(result.exitCode, 0);
    for (const char* const text : {"title: Bars and Tone", "identifier: frequency", "maximum: 24000", "unit: dBFS"}) {
        EXPECT_THAT(result.out, HasSubstr(text));
    }
    EXPECT_THAT(Run("-query producers").out, HasSubstr("- barsandtone"));
}

// The card's yellow in BT.709, and what lies below black, with no property set.
TEST_F(Melt, RendersTheRightPictureUnasked) {
    const auto result =
        Run("-profile atsc_1080p_25 barsandtone: out=2 -consumer avformat:a.yuv f=rawvideo "
            "vcodec=rawvideo pix_fmt=yuyv422 an=1 real_time=-1");
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const std::string rendered = test::ReadFile(Folder() / "a.yuv");
    ASSERT_EQ(rendered.size(), kFrames * 1920 * 1080 * 2);
    const auto code = [&](std::size_t at) { return static_cast<unsigned char>(rendered[at]); };
    const std::size_t yellow = (1920 * 10 + 540) * 2;
    EXPECT_EQ(code(yellow), 168);
    EXPECT_EQ(code(yellow + 1), 44);
    EXPECT_EQ(code(yellow + 3), 136);
    EXPECT_EQ(code((1920 * 1000 + 1160) * 2), 12);
}

// melt sets properties as they are typed; none of its own and of the framework's is taken for a mistake.
TEST_F(Melt, NamesAPropertyThatTheProducerDoesNotHave) {
    const auto result =
        Run("barsandtone: freqency=440 colour=red level=-20 out=2 -consumer avformat:a.wav real_time=-1" +
            std::string(kSound));
    EXPECT_THAT(result.err, HasSubstr("barsandtone: there is no property freqency; is frequency meant?"));
    EXPECT_THAT(result.err, HasSubstr("barsandtone: there is no property colour"));
    const auto without =
        Run("barsandtone: level=-20 out=2 -consumer avformat:a.wav real_time=-1" + std::string(kSound));
    EXPECT_THAT(without.err, testing::Not(HasSubstr("barsandtone:")));
}

TEST_F(Melt, SaysWhichValueCannotBeHad) {
    const auto result = Run("barsandtone: level=3 out=2 -consumer avformat:a.wav real_time=-1" + std::string(kSound));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.err, HasSubstr("barsandtone: level 3: must be -300 to 0 dBFS; 0 is used"));
}

// The module by itself, as after an installation that lost the bundle.
TEST_F(Melt, SaysThatThePlugInIsMissingAndEnds) {
    const fs::path modules = Folder() / "lib" / "mlt-7";
    fs::create_directories(modules);
    for (const auto& entry : fs::directory_iterator(TEST_MLT_REPOSITORY)) {
        fs::copy(entry.path(), modules / entry.path().filename());
    }
    for (const char* const library : {TEST_LIBRARY, TEST_SERVICES}) {
        fs::copy(library, Folder() / "lib");
    }
    const auto result = Run("barsandtone: out=2 -consumer avformat:a.wav vn=1", modules.string());
    EXPECT_LT(result.exitCode, 128) << "killed";
    EXPECT_THAT(result.err, HasSubstr("barsandtone: cannot find the plug-in. These places were looked at:"));
    EXPECT_THAT(result.err, HasSubstr((Folder() / "lib" / "lineup" / "BarsAndTone.bundle").string()));
    EXPECT_FALSE(fs::exists(Folder() / "a.wav"));
}

TEST_F(Melt, ChangesSpeedWithItsOwnMeans) {
    const auto result =
        Run("-profile dv_pal timewarp:2.0:barsandtone:blits out=49 -consumer avformat:a.wav "
            "real_time=-1 channels=6" +
            std::string(kSound));
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(test::ReadFloatWave(Folder() / "a.wav").size(), 6U);
}

}  // namespace
