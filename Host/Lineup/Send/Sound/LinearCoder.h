#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Send/SendEntry.h"

#include <vector>

namespace lineup {
inline namespace parts {

/// Samples of 24 bits as RTP carries them (L24 of RFC 3190): the highest byte first, the channels of one moment side by
/// side.
class LINEUP_API LinearCoder final : public SoundCoder {
public:
    static constexpr std::size_t kSampleBytes = 3;

    /// `channels`: the clip's, in the order in which they are sent.
    LinearCoder(std::vector<int> channels, int blockSamples);

    [[nodiscard]] int BlockSamples() const override { return mBlockSamples; }
    [[nodiscard]] int PaddingSamples() const override { return 0; }
    void Code(std::span<float* const> samples, std::vector<std::uint8_t>& packet) override;

private:
    std::vector<int> mChannels;
    int mBlockSamples;
};

}  // namespace parts
}  // namespace lineup
