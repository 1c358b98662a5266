#include "Host/Lineup/Send/Sound/AdtsCoder.h"

#include <algorithm>
#include <array>
#include <utility>

namespace lineup {
inline namespace parts {

namespace {

// In the order of their numbers in a head.
constexpr std::array<int, 12> kAdtsRatesHz = {96000, 88200, 64000, 48000, 44100, 32000,
                                              24000, 22050, 16000, 12000, 11025, 8000};
constexpr std::size_t kAdtsHead = 7;
constexpr std::size_t kBufferBytes = 6144 / 8;

unsigned RateIndexOf(int sampleRateHz) {
    return static_cast<unsigned>(std::ranges::find(kAdtsRatesHz, sampleRateHz) - kAdtsRatesHz.begin());
}

}  // namespace

AdtsCoder::AdtsCoder(std::unique_ptr<SoundCoder> coder, int sampleRateHz, std::size_t channels)
    : mCoder(std::move(coder)), mRateIndex(RateIndexOf(sampleRateHz)), mChannels(static_cast<unsigned>(channels)) {}

std::size_t AdtsCoder::MostBytes(std::size_t channels) {
    return kBufferBytes * channels + kAdtsHead;
}

std::size_t AdtsCoder::UsualBytes(const SoundPlan& plan, int blockSamples) {
    const std::size_t bitsPerSecond =
        static_cast<std::size_t>(plan.encoding->bitRatePerChannel) * plan.tracks.front().channels.size();
    return bitsPerSecond * static_cast<std::size_t>(blockSamples) / static_cast<std::size_t>(8 * plan.sampleRateHz) +
           kAdtsHead;
}

std::vector<std::uint8_t> AdtsCoder::Config(int sampleRateHz, std::size_t channels) {
    constexpr unsigned kObjectType = 2;  // low complexity
    const unsigned rate = RateIndexOf(sampleRateHz);
    return {static_cast<std::uint8_t>(kObjectType << 3U | rate >> 1U),
            static_cast<std::uint8_t>((rate & 1U) << 7U | static_cast<unsigned>(channels) << 3U)};
}

void AdtsCoder::Code(std::span<float* const> samples, std::vector<std::uint8_t>& packet) {
    mCoder->Code(samples, packet);
    if (packet.empty()) {
        return;
    }
    constexpr unsigned kLowComplexity = 1;
    const auto length = static_cast<unsigned>(packet.size() + kAdtsHead);
    const std::array<unsigned, kAdtsHead> head = {0xFF,
                                                  0xF1,  // MPEG-4, no checksum
                                                  kLowComplexity << 6U | mRateIndex << 2U | mChannels >> 2U,
                                                  (mChannels & 3U) << 6U | length >> 11U,
                                                  length >> 3U & 0xFFU,
                                                  (length & 7U) << 5U | 0x1FU,  // a variable rate
                                                  0xFC};
    std::array<std::uint8_t, kAdtsHead> bytes{};
    std::ranges::transform(head, bytes.begin(), [](unsigned value) { return static_cast<std::uint8_t>(value); });
    packet.insert(packet.begin(), bytes.begin(), bytes.end());
}

}  // namespace parts
}  // namespace lineup
