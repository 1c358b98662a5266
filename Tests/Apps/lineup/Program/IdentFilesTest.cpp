// Files of identification sequences, decoded by another program: each channel must be found under its own
// name, at its own time and frequency.
#include "Tests/Support/Oracle/IdentSamples.h"
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
// What the command line calls the sequences, by their formats.
constexpr std::array kWords = {"ebu-stereo-1000", "ebu-stereo-400", "ebu-5.1", "blits"};
constexpr double kLevelTolerance = 1e-3;  // stretches that are measured do not hold whole cycles

// A channel as FFmpeg names it, in the order of files, and as the sequences' table does.
struct FileChannel {
    std::string_view name;
    oracle::Channel channel;
};
constexpr std::array kFileChannels = {
    FileChannel{"FL", oracle::kL},    FileChannel{"FR", oracle::kR},  FileChannel{"FC", oracle::kC},
    FileChannel{"LFE", oracle::kLfe}, FileChannel{"SL", oracle::kLs}, FileChannel{"SR", oracle::kRs},
};

double Seconds(std::int64_t milliseconds) {
    return static_cast<double>(milliseconds) / 1000;
}

// The notes of a sequence during which no other channel sounds, but for one that never stops: each names its channel.
std::vector<oracle::Note> NamingNotes(const oracle::Ident& ident) {
    std::vector<oracle::Note> naming;
    const auto overlaps = [&ident](const oracle::Note& a, const oracle::Note& b) {
        return a.channel != b.channel && !ident.NeverStops(b) && a.beginMs < b.endMs && b.beginMs < a.endMs;
    };
    for (const oracle::Note& note : ident.notes) {
        if (!ident.NeverStops(note) &&
            std::ranges::none_of(ident.notes, [&](const oracle::Note& other) { return overlaps(note, other); })) {
            naming.push_back(note);
        }
    }
    return naming;
}

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

    // While a note names its channel, its frequency sounds there at the note's level, and the others are silent.
    template <class DecodeOne>
    static void ExpectEachNoteInItsChannel(const oracle::Ident& ident, float residue, DecodeOne decode) {
        const std::vector<oracle::Note> notes = NamingNotes(ident);
        ASSERT_GE(notes.size(), 5U);
        for (std::size_t place = 0; place < kFileChannels.size(); ++place) {
            const auto& [name, channel] = kFileChannels.at(place);
            if (std::ranges::none_of(notes, [c = channel](const oracle::Note& note) { return note.channel == c; })) {
                continue;
            }
            const std::vector<float> samples = decode(name, place);
            for (const oracle::Note& note : notes) {
                const double start = Seconds(note.beginMs) + 0.1;
                const double end = Seconds(note.endMs) - 0.1;
                const bool isOwn = note.channel == channel;
                EXPECT_NEAR(LevelAt(samples, start, end, note.frequencyHz), isOwn ? note.level : 0, kLevelTolerance)
                    << name << " from " << start << " s on";
                if (!isOwn) {
                    EXPECT_LE(LoudestIn(samples, start, end), residue) << name << " from " << start << " s on";
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

// For files that have a picture.
std::string SmallPicture(const std::string& file) {
    return file.ends_with(".wav") ? "" : " --size 64x36";
}

class IdentFilesIn : public IdentFiles, public testing::WithParamInterface<const char*> {};

TEST_P(IdentFilesIn, HoldEachBlitsBurstUnderItsChannelsName) {
    const std::string file = std::string("blits.") + GetParam();
    Render(file + " --ident blits --duration 5" + SmallPicture(file));
    ExpectEachNoteInItsChannel(oracle::kBlits, kLossless,
                               [&](std::string_view name, std::size_t) { return DecodeChannel(file, name); });
}

TEST_P(IdentFilesIn, HoldEachEbuBurstUnderItsChannelsName) {
    const std::string file = std::string("ebu.") + GetParam();
    Render(file + " --ident ebu-5.1 --duration 9" + SmallPicture(file));
    ExpectEachNoteInItsChannel(oracle::kMultichannel, kLossless,
                               [&](std::string_view name, std::size_t) { return DecodeChannel(file, name); });
}

INSTANTIATE_TEST_SUITE_P(Lossless, IdentFilesIn, testing::Values("mov", "mkv", "wav"),
                         [](const auto& file) { return std::string(file.param); });

TEST_F(IdentFiles, Mp4HoldsEachBurstInItsSpeaker) {
    Render("blits.mp4 --ident blits --duration 5 --size 64x36");
    // MPEG-4 has one 5.1 configuration, whose surround pair FFmpeg calls BL and BR.
    ExpectEachNoteInItsChannel(oracle::kBlits, kLossy, [&](std::string_view name, std::size_t) {
        return DecodeChannel("blits.mp4", name == "SL" ? "BL" : name == "SR" ? "BR" : name);
    });
}

TEST_F(IdentFiles, MxfHoldsAMonoTrackAChannelInTheOrderOfFiles) {
    Render("blits.mxf --ident blits --duration 5 --size 640x360");
    ExpectEachNoteInItsChannel(oracle::kBlits, kLossless,
                               [&](std::string_view, std::size_t track) { return DecodeTrack("blits.mxf", track); });
}

TEST_F(IdentFiles, MonoTracksOfAMovieHoldAChannelEach) {
    Render("blits.mov --ident blits --duration 5 --size 64x36 --mono-tracks");
    ExpectEachNoteInItsChannel(oracle::kBlits, kLossless,
                               [&](std::string_view, std::size_t track) { return DecodeTrack("blits.mov", track); });
}

class CycleFiles : public IdentFiles, public testing::WithParamInterface<oracle::Ident> {};

TEST_P(CycleFiles, SwitchOnTheSample) {
    const oracle::Ident& ident = GetParam();
    Render("cycle.wav --cycles 1 --audio-codec pcm-f32 --ident " + std::string(kWords.at(ident.format)));
    const std::int64_t samplesInCycle = ident.cycleMs * kRateHz / 1000;
    const auto sent = oracle::Render(ident, {oracle::kTicksAt48kHz, 0, samplesInCycle});
    for (std::size_t place = 0; place < ident.channels; ++place) {
        const auto& [name, channel] = kFileChannels.at(place);
        const std::vector<float> samples = DecodeChannel("cycle.wav", name);
        ASSERT_EQ(samples.size(), static_cast<std::size_t>(samplesInCycle));
        for (std::size_t i = 0; i < samples.size(); ++i) {
            // Phases are taken up anew more often than in one request.
            ASSERT_NEAR(samples[i], sent[channel][i], oracle::Stray(3000, 0.125)) << name << ", sample " << i;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Idents, CycleFiles, testing::ValuesIn(oracle::kIdents),
                         [](const auto& ident) { return std::string(ident.param.name); });

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
    for (const oracle::Note& note : NamingNotes(oracle::kMultichannel)) {
        const std::string_view name = std::ranges::find(kFileChannels, note.channel, &FileChannel::channel)->name;
        const auto samples = DecodeChannel("ebu.mov", name);
        const auto first = static_cast<std::size_t>(note.beginMs * kRateHz / 1000);
        const auto last = static_cast<std::size_t>(note.endMs * kRateHz / 1000);
        // Three neighbours of a sine obey x[i+1] = 2 cos(w) x[i] - x[i-1]; a step in phase breaks it.
        const double twoCos = 2 * std::cos(2 * std::numbers::pi * note.frequencyHz / kRateHz);
        for (std::size_t i = first + 1; i + 1 < last; ++i) {
            const double predicted = twoCos * static_cast<double>(samples[i]) - static_cast<double>(samples[i - 1]);
            ASSERT_NEAR(static_cast<double>(samples[i + 1]), predicted, 1e-5) << name << " at " << i;
        }
    }
}

}  // namespace
