// Sound in every format and number of channels, to the bit.
#include "Tests/Bridges/GStreamer/Framework.h"
#include "Tests/Bridges/PlugInSound.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <bit>
#include <cmath>

namespace {

constexpr int kSamples = 4096;

struct Format {
    const char* name;
    int bits;   // of the value
    int bytes;  // that it takes
    bool isFloat = false;
};

// Each with "LE" and "BE" behind it.
constexpr std::array<Format, 6> kFormats = {
    {{"F32", 32, 4, true}, {"F64", 64, 8, true}, {"S32", 32, 4}, {"S24_32", 24, 4}, {"S24", 24, 3}, {"S16", 16, 2}}};

// A sample's bits, worked out apart from the product.
std::uint64_t BitsOf(float sample, const Format& format) {
    if (format.isFloat) {
        return format.bits == 64 ? std::bit_cast<std::uint64_t>(double{sample}) : std::bit_cast<std::uint32_t>(sample);
    }
    const double fullScale = std::ldexp(1.0, format.bits - 1);
    const double steps = std::clamp(std::nearbyint(sample * fullScale), -fullScale, fullScale - 1);
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(steps));
}

std::string Packed(const test::Planes& planes, const Format& format, bool bigEndian) {
    std::string packed;
    for (std::size_t i = 0; i < planes.front().size(); ++i) {
        for (const auto& plane : planes) {
            std::string bytes;
            for (int byte = 0; byte < format.bytes; ++byte) {
                bytes += static_cast<char>(BitsOf(plane[i], format) >> (8 * byte) & 0xFF);
            }
            packed += bigEndian ? std::string(bytes.rbegin(), bytes.rend()) : bytes;
        }
    }
    return packed;
}

std::string SoundOf(const std::string& properties, const std::string& format, const std::string& more) {
    const test::Played played =
        test::PlayOnce("lineupaudiosrc num-buffers=4 " + properties + " ! audio/x-raw,format=" + format + more);
    EXPECT_EQ(played.error, "") << format << more;
    return played.Bytes();
}

TEST(Sound, IsThePlugInsInEveryFormatAndNumberOfChannels) {
    std::vector<std::string> tested;
    for (const Format& format : kFormats) {
        for (const char* const order : {"LE", "BE"}) {
            tested.push_back(format.name + std::string(order));
            for (std::uint32_t channels = 1; channels <= 6; ++channels) {
                const auto sound = SoundOf("", tested.back(), ",channels=" + std::to_string(channels));
                const auto planes = test::PlugInSound(test::Tone(channels), 0, kSamples);
                EXPECT_EQ(sound == Packed(planes, format, *order == 'B'), true) << tested.back() << " " << channels;
            }
        }
    }
    EXPECT_THAT(tested,
                testing::UnorderedElementsAreArray(test::NamesIn(*test::TemplateOf("lineupaudiosrc"), "format")));
}

TEST(Sound, IsThatOfTheIdentAtTheRateThatIsAskedFor) {
    using namespace lineup;
    const std::array<std::pair<const char*, IdentifierFormat>, 4> idents = {{{"ebu-stereo-1000", EBUStereo1000},
                                                                             {"ebu-stereo-400", EBUStereo400},
                                                                             {"ebu-5.1", EBUMultichannel},
                                                                             {"blits", BLITS5_1}}};
    for (const auto& [name, format] : idents) {
        for (const int rate : {44100, 48000, 96000}) {
            const auto sound =
                SoundOf("samplesperbuffer=48123 ident=" + std::string(name), "F32LE", ",rate=" + std::to_string(rate));
            const auto planes =
                test::PlugInSound(test::IdentSettings(format, static_cast<float>(rate)), 0, std::int64_t{4} * 48123);
            EXPECT_EQ(sound == Packed(planes, kFormats.front(), false), true) << name << " at " << rate;
        }
    }
}

TEST(Sound, HasTheFrequencyAndTheLevelThatAreAskedFor) {
    lineup::BarsAndToneInfo settings = test::Tone(2);
    settings.frequency = 440.0F;
    settings.amplitude = 0.1F;
    EXPECT_EQ(SoundOf("frequency=440 level=-20", "F32LE", "") ==
                  Packed(test::PlugInSound(settings, 0, kSamples), kFormats.front(), false),
              true);
}

TEST(Sound, GoesThroughTheFrameworksNetworkFormatUnchanged) {
    const auto plain = SoundOf("ident=blits", "S24BE", "");
    EXPECT_EQ(SoundOf("ident=blits", "S24BE", " ! rtpL24pay ! rtpL24depay") == plain, true);
}

}  // namespace
