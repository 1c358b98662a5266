#include <lineup/Exporter.h>
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>

namespace {

using lineup::ExportSettings;

// The setting that is refused after `change` was made to settings that are sound; empty: none.
std::string Refused(const std::function<void(ExportSettings&)>& change, const lineup::Clip& clip = test::OpenClip()) {
    ExportSettings settings = test::SmallExport("never-written.mov", 25);
    change(settings);
    try {
        CheckExport(clip, settings);
        return {};
    } catch (const lineup::UsageError& error) {
        EXPECT_FALSE(error.Value().empty());
        EXPECT_FALSE(error.Remedy().empty());
        return error.Option();
    }
}

TEST(CheckExport, TakesWhatIsSound) {
    EXPECT_EQ(Refused([](ExportSettings&) {}), "");
}

// Settings files and documents hold any record; the plug-in's dialog allows half the rate.
TEST(CheckExport, RefusesAToneOfHalfTheSampleRateAndMore) {
    const auto refused = [](lineup::BarsAndToneInfo settings) {
        return Refused([](ExportSettings&) {}, test::OpenClip(settings));
    };
    EXPECT_EQ(refused({.frequency = 23999.0F}), "");
    EXPECT_EQ(refused({.frequency = 24000.0F}), "frequency");
    EXPECT_EQ(refused({.frequency = 30000.0F}), "frequency");
    EXPECT_EQ(refused({.identifyChannels = 1, .frequency = 30000.0F}), "");  // which an ident does not sound
}

TEST(CheckExport, RefusesAnExtensionThatItDoesNotKnow) {
    EXPECT_EQ(Refused([](auto& settings) { settings.target = "bars.avi"; }), "output");
    EXPECT_EQ(Refused([](auto& settings) { settings.target = "bars"; }), "output");
}

TEST(CheckExport, RefusesOddSizes) {
    EXPECT_EQ(Refused([](auto& settings) { settings.width = 191; }), "size");
    EXPECT_EQ(Refused([](auto& settings) { settings.height = 107; }), "size");
}

TEST(CheckExport, RefusesSizesBeyondItsLimits) {
    EXPECT_EQ(Refused([](auto& settings) { settings.width = 8194; }), "size");
    EXPECT_EQ(Refused([](auto& settings) { settings.height = 0; }), "size");
    EXPECT_EQ(Refused([](auto& settings) { settings.width = -2; }), "size");
    EXPECT_EQ(Refused([](auto& settings) { settings.videoCodec = "dnxhr-hqx"; }), "size");
    EXPECT_EQ(Refused([](auto& settings) { settings.width = settings.height = 8192; }), "");
}

TEST(CheckExport, HoldsMpeg2ToItsSizesAndRates) {
    const auto mxf = [](int height, lineup::Rational rate) {
        return Refused([&](auto& settings) {
            settings.target = "bars.mxf";
            settings.width = 1920;
            settings.height = height;
            settings.frameRate = rate;
        });
    };
    EXPECT_EQ(mxf(1088, {25, 1}), "");
    EXPECT_EQ(mxf(1090, {25, 1}), "size");
    EXPECT_EQ(mxf(1088, {30, 1}), "");
    EXPECT_EQ(mxf(1080, {50, 1}), "fps");  // more pixels a second than the highest level has
    EXPECT_EQ(mxf(1080, {60000, 1001}), "fps");
    EXPECT_EQ(mxf(720, {25, 1}), "");
    EXPECT_EQ(mxf(1080, {48, 1}), "fps");
    EXPECT_EQ(mxf(1080, {50, 2}), "");
}

TEST(CheckExport, RefusesFrameRatesThatAreNone) {
    for (const lineup::Rational rate : {lineup::Rational{0, 1},
                                        {-25, 1},
                                        {25, 0},
                                        {25, -1},
                                        {1, 2},
                                        {241, 1},
                                        {2000000, 1000001},
                                        {std::numeric_limits<int>::max(), 100000000}}) {
        EXPECT_EQ(Refused([rate](auto& settings) { settings.frameRate = rate; }), "fps") << rate.num << '/' << rate.den;
    }
    EXPECT_EQ(Refused([](auto& settings) { settings.frameRate = {240, 1}; }), "");
    EXPECT_EQ(Refused([](auto& settings) { settings.frameRate = {1, 1}; }), "");
}

TEST(CheckExport, RefusesCodecsThatTheFormatDoesNotHold) {
    EXPECT_EQ(Refused([](auto& settings) { settings.videoCodec = "ffv1"; }), "video-codec");
    EXPECT_EQ(Refused([](auto& settings) { settings.videoCodec = "nonesuch"; }), "video-codec");
    EXPECT_EQ(Refused([](auto& settings) { settings.audioCodec = "flac"; }), "audio-codec");
    EXPECT_EQ(Refused([](auto& settings) {
                  settings.target = "tone.wav";
                  settings.videoCodec = "v210";
              }),
              "video-codec");
    EXPECT_EQ(Refused([](auto& settings) {
                  settings.target = "bars.png";
                  settings.audioCodec = "pcm-s24";
              }),
              "audio-codec");
}

TEST(CheckExport, RefusesSixChannelsWhereNothingSaysWhichIsWhich) {
    const auto mkv = [](bool monoTracks) {
        return Refused(
            [monoTracks](auto& settings) {
                settings.target = "bars.mkv";
                settings.audioCodec = "pcm-s24";
                settings.monoTracks = monoTracks;
            },
            test::OpenClip(6));
    };
    EXPECT_EQ(mkv(false), "audio-codec");
    EXPECT_EQ(mkv(true), "");
}

TEST(CheckExport, RefusesChannelsThatNoLayoutNames) {
    lineup::BarsAndToneInfo settings;
    settings.numChannels = 4;
    EXPECT_EQ(Refused([](ExportSettings&) {}, test::OpenClip(settings)), "channels");
}

TEST(CheckExport, RefusesSampleRatesThatTheFileCannotHave) {
    lineup::BarsAndToneInfo info;
    info.sampleRate = 96000.0F;
    const lineup::Clip fast = test::OpenClip(info);
    EXPECT_EQ(Refused([](ExportSettings&) {}, fast), "");
    EXPECT_EQ(Refused([](auto& settings) { settings.target = "bars.mxf"; }, fast), "sample-rate");
    info.sampleRate = 47952.5F;
    EXPECT_EQ(Refused([](ExportSettings&) {}, test::OpenClip(info)), "sample-rate");
    info.sampleRate = 46875.0F;
    const lineup::Clip uncommon = test::OpenClip(info);
    EXPECT_EQ(Refused([](ExportSettings&) {}, uncommon), "");
    EXPECT_EQ(Refused([](auto& settings) { settings.target = "bars.mp4"; }, uncommon), "sample-rate");
}

TEST(CheckExport, RefusesTimesThatAreNoneOrBeyondTheClips) {
    EXPECT_EQ(Refused([](auto& settings) { settings.frames = 0; }), "duration");
    EXPECT_EQ(Refused([](auto& settings) { settings.frames = -1; }), "duration");
    EXPECT_EQ(Refused([](auto& settings) { settings.frames = std::numeric_limits<std::int64_t>::max(); }), "duration");
    EXPECT_EQ(Refused([](auto& settings) { settings.startSample = std::numeric_limits<std::int64_t>::max(); }),
              "start");
    EXPECT_EQ(Refused([](auto& settings) { settings.startSample = std::numeric_limits<std::int64_t>::min(); }),
              "start");
    EXPECT_EQ(Refused([](auto& settings) { settings.startSample = -48000; }), "");
}

TEST(CheckExport, GoesByFramesWhereThereIsAPictureAndBySamplesWhereThereIsNone) {
    EXPECT_EQ(Refused([](auto& settings) { settings.samples = 0; }), "");
    const auto wave = [](std::int64_t frames, std::int64_t samples) {
        return Refused([&](auto& settings) {
            settings.target = "tone.wav";
            settings.frames = frames;
            settings.samples = samples;
        });
    };
    EXPECT_EQ(wave(0, 1), "");
    EXPECT_EQ(wave(1, 0), "duration");
}

TEST(CheckExport, WantsATimecodeAtTheFilesOwnRateInAFormatThatHoldsOne) {
    const lineup::Timecode timecode("10:00:00:00", {25, 1});
    EXPECT_EQ(Refused([&](auto& settings) { settings.timecode = timecode; }), "");
    EXPECT_EQ(Refused([&](auto& settings) {
                  settings.timecode = timecode;
                  settings.frameRate = {50, 1};
              }),
              "timecode");
    EXPECT_EQ(Refused([&](auto& settings) {
                  settings.timecode = timecode;
                  settings.target = "bars.png";
              }),
              "timecode");
}

TEST(CheckExport, OffersMonoTracksOnlyWhereTheyMakeSense) {
    EXPECT_EQ(Refused([](auto& settings) { settings.monoTracks = true; }), "");
    EXPECT_EQ(Refused([](auto& settings) {
                  settings.monoTracks = true;
                  settings.target = "tone.wav";
              }),
              "mono-tracks");
}

TEST(CheckExport, SaysWhatTheFormatCouldHoldInstead) {
    ExportSettings settings = test::SmallExport("bars.mp4", 25);
    settings.videoCodec = "prores-hq";
    try {
        CheckExport(test::OpenClip(), settings);
        FAIL() << "was taken";
    } catch (const lineup::UsageError& error) {
        EXPECT_STREQ(error.what(), "video-codec prores-hq: a .mp4 file can hold h264");
    }
}

}  // namespace
