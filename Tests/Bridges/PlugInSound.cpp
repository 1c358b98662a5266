#include "Tests/Bridges/PlugInSound.h"

#include <lineup/Importer.h>

#include <array>
#include <cstring>

namespace test {

namespace {

constexpr int kBuffers = 6;

// Where the plug-in has what a file has at each place.
constexpr std::array<std::size_t, 6> kSurround = {0, 1, 4, 5, 2, 3};

}  // namespace

Planes PlugInSound(const lineup::BarsAndToneInfo& settings, std::int64_t start, std::int64_t count) {
    static const lineup::Importer importer(TEST_BUNDLE);
    // A millisecond where it is a whole number of samples, else ten.
    const auto rate = static_cast<std::int64_t>(settings.sampleRate);
    const std::int64_t length = rate % 1000 == 0 ? rate / 1000 : rate / 100;
    const std::int64_t firstBlock = start / length;
    const std::int64_t endBlock = (start + count + length - 1) / length;
    const auto samples = static_cast<std::size_t>((endBlock - firstBlock) * length);
    Planes blocks(kBuffers, std::vector<float>(samples));
    for (std::int64_t block = firstBlock; block < endBlock; ++block) {
        std::array<float*, kBuffers> buffers{};
        for (std::size_t c = 0; c < buffers.size(); ++c) {
            buffers.at(c) = blocks[c].data() + (block - firstBlock) * length;
        }
        importer.ReadAudio({.prefs = &settings}, block * length, static_cast<std::uint32_t>(length), buffers.data());
    }
    Planes planes;
    for (std::size_t place = 0; place < settings.numChannels; ++place) {
        const auto& plane = blocks[settings.numChannels == 6 ? kSurround.at(place) : place];
        const auto begin = plane.begin() + (start - firstBlock * length);
        planes.emplace_back(begin, begin + count);
    }
    return planes;
}

lineup::BarsAndToneInfo Tone(std::uint32_t numChannels, float rateHz) {
    lineup::BarsAndToneInfo settings;
    settings.sampleRate = rateHz;
    settings.numChannels = numChannels;
    settings.channelType = lineup::ChannelTypeFor(numChannels);
    return settings;
}

lineup::BarsAndToneInfo IdentSettings(lineup::IdentifierFormat format, float rateHz) {
    lineup::BarsAndToneInfo settings = Tone(format >= lineup::EBUMultichannel ? 6 : 2, rateHz);
    settings.identifyChannels = 1;
    settings.identifierFormat = format;
    return settings;
}

Planes PlanesOf(const std::string& interleaved, std::size_t channels) {
    const std::size_t values = interleaved.size() / sizeof(float);
    Planes planes(channels, std::vector<float>(values / channels));
    for (std::size_t value = 0; value < values; ++value) {
        std::memcpy(&planes[value % channels][value / channels], interleaved.data() + value * sizeof(float),
                    sizeof(float));
    }
    return planes;
}

std::string Difference(const Planes& planes, const Planes& expected) {
    if (planes.size() != expected.size()) {
        return std::to_string(planes.size()) + " channels instead of " + std::to_string(expected.size());
    }
    for (std::size_t c = 0; c < planes.size(); ++c) {
        if (planes[c].size() != expected[c].size()) {
            return std::to_string(planes[c].size()) + " samples instead of " + std::to_string(expected[c].size());
        }
        for (std::size_t i = 0; i < planes[c].size(); ++i) {
            if (std::memcmp(&planes[c][i], &expected[c][i], sizeof(float)) != 0) {
                return "channel " + std::to_string(c) + " sample " + std::to_string(i) + ": " +
                       std::to_string(planes[c][i]) + " instead of " + std::to_string(expected[c][i]);
            }
        }
    }
    return {};
}

}  // namespace test
