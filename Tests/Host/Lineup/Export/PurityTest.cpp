#include <lineup/Exporter.h>
#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <gtest/gtest.h>

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

}  // namespace
