#include <lineup/Exporter.h>
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

// Total harmonic distortion and noise: what is left of a file's samples beside the sine, in dB below it.
namespace {

struct Tone {
    float rateHz;
    float frequencyHz;
    double mostDb;
};

double DistortionDb(const std::vector<std::int32_t>& samples, double cyclesPerSample) {
    const auto turn = [cyclesPerSample](std::size_t i) {
        return std::polar(1.0, 2 * std::numbers::pi * std::fmod(cyclesPerSample * static_cast<double>(i), 1.0));
    };
    std::complex<double> sum;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        sum += static_cast<double>(samples[i]) * std::conj(turn(i));
    }
    const std::complex<double> half = sum / static_cast<double>(samples.size());  // of whole cycles
    double rest = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        rest += std::pow(static_cast<double>(samples[i]) - 2 * (half * turn(i)).real(), 2);
    }
    return 10 * std::log10(rest / static_cast<double>(samples.size()) / (2 * std::norm(half)));
}

// 24 bits hold a sine at -18 dBFS to -128.2 dB where what is rounded away is noise.
TEST(Purity, OfATonesFileIsThatOf24BitsUpToOneKilohertz) {
    const test::TemporaryFolder folder;
    for (const Tone& tone : {Tone{48000, 100, -127.2}, Tone{48000, 440, -127.2}, Tone{48000, 997, -127.2},
                             Tone{48000, 1000, -127.2}, Tone{48000, 10000, -123}, Tone{48000, 20000, -118},
                             Tone{96000, 1000, -127.2}, Tone{44100, 1000, -123}, Tone{44100, 20000, -99}}) {
        lineup::BarsAndToneInfo settings;
        settings.sampleRate = tone.rateHz;
        settings.frequency = tone.frequencyHz;
        settings.amplitude = 0.12589254F;
        settings.numChannels = 1;
        settings.channelType = lineup::ChannelTypeFor(1);
        const lineup::Clip clip = test::OpenClip(settings);
        auto file = test::SmallExport(folder / "tone.wav", static_cast<std::int64_t>(tone.rateHz));
        file.audioCodec = "pcm-s24";
        file.overwrite = true;
        Export(clip, file);
        EXPECT_LE(DistortionDb(test::DecodeIntegers(file.target, "a:0"),
                               static_cast<double>(tone.frequencyHz) / static_cast<double>(tone.rateHz)),
                  tone.mostDb)
            << tone.frequencyHz << " Hz at " << tone.rateHz;
    }
}

// The loudest harmonic of 1 kHz below half of 48 kHz, in dB below the tone.
double LoudestHarmonicDb(const std::vector<std::int32_t>& samples) {
    const auto level = [&samples](int harmonic) {
        std::complex<double> sum;
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const auto step = static_cast<double>(i * static_cast<std::size_t>(harmonic) % 48);
            sum += std::polar(static_cast<double>(samples[i]), 2 * std::numbers::pi * step / 48);
        }
        return std::abs(sum);
    };
    double loudest = 0;
    for (int harmonic = 2; harmonic < 24; ++harmonic) {
        loudest = std::max(loudest, level(harmonic));
    }
    return 20 * std::log10(loudest / level(1));
}

TEST(Purity, OfSixteenBitsHasNoHarmonicsWithDither) {
    const test::TemporaryFolder folder;
    lineup::BarsAndToneInfo settings;
    settings.amplitude = 0.12589254F;
    settings.numChannels = 1;
    settings.channelType = lineup::ChannelTypeFor(1);
    const lineup::Clip clip = test::OpenClip(settings);
    const auto harmonics = [&](const char* name, std::int64_t length, lineup::Dither dither) {
        auto file = test::SmallExport(folder / name, length);
        file.audioCodec = "pcm-s16";
        file.dither = dither;
        file.overwrite = true;
        Export(clip, file);
        return LoudestHarmonicDb(test::DecodeIntegers(file.target, "a:0"));
    };
    EXPECT_GT(harmonics("a.wav", 48000, lineup::Dither::None), -95);
    EXPECT_LT(harmonics("a.wav", 48000, lineup::Dither::Triangular), -105);
    EXPECT_LT(harmonics("a.mov", 25, lineup::Dither::Triangular), -105);
}

TEST(Purity, DitherIsTheSameWhereverAFileBeginsAndLeavesSilence) {
    const test::TemporaryFolder folder;
    const lineup::Clip clip = test::OpenClip(2);  // left is silent from 2.75 s to 3 s
    const auto samples = [&](std::int64_t start, std::int64_t count) {
        auto file = test::SmallExport(folder / "a.wav", count);
        file.audioCodec = "pcm-s16";
        file.dither = lineup::Dither::Triangular;
        file.startSample = start;
        file.overwrite = true;
        Export(clip, file);
        return test::DecodeIntegers(file.target, "a:0");
    };
    const auto whole = samples(131000, 4000);
    const auto part = samples(133000, 2000);
    EXPECT_TRUE(std::equal(part.begin(), part.end(), whole.begin() + 4000));
    for (std::size_t i = 0; i < part.size(); i += 2) {
        ASSERT_EQ(part[i], 0) << i;
    }
}

TEST(Purity, DitherIsForSixteenBits) {
    auto settings = test::SmallExport("a.wav", 1);
    settings.dither = lineup::Dither::Triangular;
    EXPECT_THROW(CheckExport(test::OpenClip(), settings), lineup::UsageError);
}

}  // namespace
