#include "Host/Lineup/Send/Sound/LinearCoder.h"

#include "Host/Lineup/Export/Samples/Quantise.h"

#include <utility>

namespace lineup {
inline namespace parts {

LinearCoder::LinearCoder(std::vector<int> channels, int blockSamples)
    : mChannels(std::move(channels)), mBlockSamples(blockSamples) {}

void LinearCoder::Code(std::span<float* const> samples, std::vector<std::uint8_t>& packet) {
    packet.reserve(static_cast<std::size_t>(mBlockSamples) * mChannels.size() * kSampleBytes);
    for (int i = 0; i < mBlockSamples; ++i) {
        for (const int channel : mChannels) {
            const auto bits = static_cast<std::uint32_t>(Quantise<24>(samples[static_cast<std::size_t>(channel)][i]));
            packet.push_back(static_cast<std::uint8_t>(bits >> 16U));
            packet.push_back(static_cast<std::uint8_t>(bits >> 8U));
            packet.push_back(static_cast<std::uint8_t>(bits));
        }
    }
}

}  // namespace parts
}  // namespace lineup
