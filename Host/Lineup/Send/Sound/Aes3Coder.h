#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Send/SendEntry.h"

#include <vector>

namespace lineup {
inline namespace parts {

/// Samples as SMPTE 302M carries them: a head that says how much there is, then every pair of channels as AES3 has it,
/// 24 bits and four flags a sample, the lowest bit first.
class LINEUP_API Aes3Coder final : public SoundCoder {
public:
    /// `channels`: the clip's, in the order in which they are sent; an even number of up to eight.
    explicit Aes3Coder(std::vector<int> channels);

    /// The bytes of every packet.
    [[nodiscard]] static std::size_t PacketBytes(std::size_t channels);

    [[nodiscard]] int BlockSamples() const override;
    [[nodiscard]] int PaddingSamples() const override { return 0; }
    void Code(std::span<float* const> samples, std::vector<std::uint8_t>& packet) override;

private:
    std::vector<int> mChannels;
};

}  // namespace parts
}  // namespace lineup
