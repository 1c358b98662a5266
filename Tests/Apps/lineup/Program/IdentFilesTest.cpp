// Files of identification sequences, decoded by another program: each channel must be found under its own
// name, at its own time and frequency.
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstring>
#include <numbers>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr int kRateHz = 48000;
constexpr double kLevel = 0.125;
constexpr double kLevelTolerance = 1e-3;  // stretches that are measured do not hold whole cycles

struct Burst {
    std::string_view channel;  // as FFmpeg names it
    double startSeconds;
    double endSeconds;
    double frequencyHz;
};

// BLITS names the channels one after the other, in the order that files have them.
constexpr std::array<Burst, 6> kBlitsBursts = {{
    {"FL", 0.0, 0.6, 880.0},
    {"FR", 0.8, 1.4, 880.0},
    {"FC", 1.6, 2.2, 1320.0},
    {"LFE", 2.4, 3.0, 88.5},
    {"SL", 3.2, 3.8, 660.0},
    {"SR", 4.0, 4.6, 660.0},
}};

constexpr std::array<Burst, 5> kEbuBursts = {{
    {"FL", 3.5, 4.0, 1000.0},
    {"FC", 4.5, 5.0, 1000.0},
    {"FR", 5.5, 6.0, 1000.0},
    {"SR", 6.5, 7.0, 1000.0},
    {"SL", 7.5, 8.0, 1000.0},
}};

// The peak level of `frequencyHz` in a stretch of samples.
double LevelAt(const std::vector<float>& samples, double startSeconds, double endSeconds, double frequencyHz) {
    const auto first = static_cast<std::size_t>(startSeconds * kRateHz);
    const auto last = std::min(static_cast<std::size_t>(endSeconds * kRateHz), samples.size());
    std::complex<double> sum;
    for (std::size_t i = first; i < last; ++i) {
        const double angle = 2 * std::numbers::pi * frequencyHz * static_cast<double>(i) / kRateHz;
        sum += static_cast<double>(samples[i]) * std::polar(1.0, -angle);
    }
    return 2 * std::abs(sum) / static_cast<double>(last - first);
}

float LoudestIn(const std::vector<float>& samples, double startSeconds, double endSeconds) {
    float loudest = 0;
    for (auto i = static_cast<std::size_t>(startSeconds * kRateHz); i < static_cast<std::size_t>(endSeconds * kRateHz);
         ++i) {
        loudest = std::max(loudest, std::abs(samples.at(i)));
    }
    return loudest;
}

class IdentFiles : public test::TestFolder {
protected:
    void Render(const std::string& arguments) const { Run("'" TEST_LINEUP "' render --quiet " + arguments); }

    // The samples that FFmpeg decodes with these output options.
    [[nodiscard]] std::vector<float> Decode(const std::string& file, const std::string& options) const {
        const std::string bytes = Run("ffmpeg -v error -i " + file + " " + options + " -f f32le -");
        std::vector<float> samples(bytes.size() / sizeof(float));
        std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(float));
        return samples;
    }
    [[nodiscard]] std::vector<float> DecodeChannel(const std::string& file, std::string_view name) const {
        return Decode(file, "-map 0:a:0 -af 'pan=mono|c0=" + std::string(name) + "'");
    }
    [[nodiscard]] std::vector<float> DecodeTrack(const std::string& file, std::size_t track) const {
        return Decode(file, "-map 0:a:" + std::to_string(track));
    }

    // In each channel's own burst its frequency sounds at the ident's level; in the others' it is silent.
    template <std::size_t kCount, class DecodeOne>
    static void ExpectEachBurstInItsChannel(const std::array<Burst, kCount>& bursts, float residue, DecodeOne decode) {
        for (std::size_t c = 0; c < kCount; ++c) {
            const std::vector<float> samples = decode(bursts[c].channel, c);
            for (std::size_t b = 0; b < kCount; ++b) {
                const Burst& burst = bursts[b];
                const double start = burst.startSeconds + 0.1;
                const double end = burst.endSeconds - 0.1;
                const double expected = b == c ? kLevel : 0.0;
                EXPECT_NEAR(LevelAt(samples, start, end, burst.frequencyHz), expected, kLevelTolerance)
                    << bursts[c].channel << " during the burst of " << burst.channel;
                if (b != c) {
                    EXPECT_LE(LoudestIn(samples, start, end), residue) << bursts[c].channel;
                }
            }
        }
    }

private:
    std::string Run(const std::string& command) const {
        const auto result = test::RunProgram("cd '" + Folder().string() + "' && " + command, Folder());
        EXPECT_EQ(result.exitCode, 0) << command << "\n" << result.err;
        return result.out;
    }
};

// The loudest sample that a codec may leave in a silent channel.
constexpr float kLossless = 0;
constexpr float kLossy = 2e-3F;

class IdentFilesIn : public IdentFiles, public testing::WithParamInterface<const char*> {};

TEST_P(IdentFilesIn, HoldEachBlitsBurstUnderItsChannelsName) {
    const std::string file = std::string("blits.") + GetParam();
    Render(file + " --ident blits --duration 5 --size 64x36");
    ExpectEachBurstInItsChannel(kBlitsBursts, kLossless,
                                [&](std::string_view name, std::size_t) { return DecodeChannel(file, name); });
}

TEST_P(IdentFilesIn, HoldEachEbuBurstUnderItsChannelsName) {
    const std::string file = std::string("ebu.") + GetParam();
    Render(file + " --ident ebu-5.1 --duration 9 --size 64x36");
    ExpectEachBurstInItsChannel(kEbuBursts, kLossless,
                                [&](std::string_view name, std::size_t) { return DecodeChannel(file, name); });
}

INSTANTIATE_TEST_SUITE_P(Lossless, IdentFilesIn, testing::Values("mov", "mkv", "wav"),
                         [](const auto& file) { return std::string(file.param); });

TEST_F(IdentFiles, Mp4HoldsEachBurstInItsSpeaker) {
    Render("blits.mp4 --ident blits --duration 5 --size 64x36");
    // MPEG-4 has one 5.1 configuration, whose surround pair FFmpeg calls BL and BR.
    ExpectEachBurstInItsChannel(kBlitsBursts, kLossy, [&](std::string_view name, std::size_t) {
        return DecodeChannel("blits.mp4", name == "SL" ? "BL" : name == "SR" ? "BR" : name);
    });
}

TEST_F(IdentFiles, MxfHoldsAMonoTrackAChannelInTheOrderOfFiles) {
    Render("blits.mxf --ident blits --duration 5 --size 640x360");
    ExpectEachBurstInItsChannel(kBlitsBursts, kLossless,
                                [&](std::string_view, std::size_t track) { return DecodeTrack("blits.mxf", track); });
}

TEST_F(IdentFiles, MonoTracksOfAMovieHoldAChannelEach) {
    Render("blits.mov --ident blits --duration 5 --size 64x36 --mono-tracks");
    ExpectEachBurstInItsChannel(kBlitsBursts, kLossless,
                                [&](std::string_view, std::size_t track) { return DecodeTrack("blits.mov", track); });
}

TEST_F(IdentFiles, OneBlitsCycleSwitchesOnTheSample) {
    Render("blits.wav --ident blits --cycles 1");
    // Tenths of a second: [first, last) of every stretch in which the channel sounds.
    const auto expectSoundingIn = [&](std::string_view name, const std::vector<std::pair<int, int>>& stretches) {
        const std::vector<float> samples = DecodeChannel("blits.wav", name);
        ASSERT_EQ(samples.size(), 643200U);
        for (int slot = 0; slot < 134; ++slot) {
            const bool sounds =
                std::ranges::any_of(stretches, [slot](auto s) { return slot >= s.first && slot < s.second; });
            const auto* const first = samples.data() + slot * 4800;
            // A slot's first samples may be near a zero of the sine, not its first thirty-two.
            const bool head = std::any_of(first, first + 32, [](float x) { return x != 0; });
            const bool tail = std::any_of(first + 4768, first + 4800, [](float x) { return x != 0; });
            const bool any = std::any_of(first, first + 4800, [](float x) { return x != 0; });
            EXPECT_EQ(any, sounds) << name << " in slot " << slot;
            EXPECT_EQ(head && tail, sounds) << name << " at the edges of slot " << slot;
        }
    };
    expectSoundingIn("FL", {{0, 6}, {48, 58}, {61, 64}, {67, 70}, {73, 76}, {79, 99}, {102, 132}});
    expectSoundingIn("FR", {{8, 14}, {48, 99}, {102, 132}});
    expectSoundingIn("FC", {{16, 22}, {102, 132}});
    expectSoundingIn("LFE", {{24, 30}, {102, 132}});
    expectSoundingIn("SL", {{32, 38}, {102, 132}});
    expectSoundingIn("SR", {{40, 46}, {102, 132}});
}

TEST_F(IdentFiles, OneEbuStereoCycleGapsTheLeftChannelOnTheSample) {
    Render("stereo.wav --ident ebu-stereo-400 --cycles 1");
    const auto left = DecodeChannel("stereo.wav", "FL");
    const auto right = DecodeChannel("stereo.wav", "FR");
    ASSERT_EQ(left.size(), 144000U);
    EXPECT_TRUE(std::equal(left.begin(), left.begin() + 132000, right.begin()));
    EXPECT_TRUE(std::all_of(left.begin() + 132000, left.end(), [](float x) { return x == 0; }));
    EXPECT_NEAR(LevelAt(right, 0.0, 3.0, 400.0), kLevel, 1e-4);
}

TEST_F(IdentFiles, SoundIsTheSameAtEveryFrameRate) {
    // From 3.3 s on: bursts begin inside the stretch, and frames of 23.976 and 29.97 cut them anywhere.
    const std::string common = " --ident ebu-5.1 --start 3.3 --duration 2 --size 64x36 --audio-codec pcm-f32";
    Render("reference.wav --ident ebu-5.1 --start 3.3 --duration 2 --audio-codec pcm-f32");
    const auto reference = Decode("reference.wav", "");
    ASSERT_EQ(reference.size(), 6U * 96000);
    for (const char* const fps : {"24000/1001", "25", "30000/1001", "60000/1001"}) {
        Render("out.mov -y --fps " + std::string(fps) + common);
        const auto samples = Decode("out.mov", "");
        const std::size_t shorter = std::min(samples.size(), reference.size());
        ASSERT_GT(shorter, 6U * 95000);
        EXPECT_TRUE(
            std::equal(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(shorter), reference.begin()))
            << fps;
    }
}

TEST_F(IdentFiles, NoBurstHasAPhaseStep) {
    Render("ebu.mov --ident ebu-5.1 --duration 9 --fps 30000/1001 --size 64x36 --audio-codec pcm-f32");
    for (const Burst& burst : kEbuBursts) {
        const auto samples = DecodeChannel("ebu.mov", burst.channel);
        const auto first = static_cast<std::size_t>(burst.startSeconds * kRateHz);
        const auto last = static_cast<std::size_t>(burst.endSeconds * kRateHz);
        // Three neighbours of a sine obey x[i+1] = 2 cos(w) x[i] - x[i-1]; a step in phase breaks it.
        const double twoCos = 2 * std::cos(2 * std::numbers::pi * burst.frequencyHz / kRateHz);
        for (std::size_t i = first + 1; i + 1 < last; ++i) {
            const double predicted = twoCos * static_cast<double>(samples[i]) - static_cast<double>(samples[i - 1]);
            ASSERT_NEAR(static_cast<double>(samples[i + 1]), predicted, 1e-5) << burst.channel << " at " << i;
        }
    }
}

}  // namespace
