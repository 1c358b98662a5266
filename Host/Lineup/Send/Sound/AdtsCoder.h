#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Send/SendEntry.h"

#include <memory>
#include <vector>

namespace lineup {
inline namespace parts {

/// AAC-LC with the head of ADTS in front of each frame, by which a receiver that comes in the middle knows it.
class LINEUP_API AdtsCoder final : public SoundCoder {
public:
    AdtsCoder(std::unique_ptr<SoundCoder> coder, int sampleRateHz, std::size_t channels);

    /// The most bytes of a frame: a decoder's buffer of 6144 bits a channel, and the head.
    [[nodiscard]] static std::size_t MostBytes(std::size_t channels);

    /// Those of a frame on average, at a constant bit rate.
    [[nodiscard]] static std::size_t UsualBytes(const SoundPlan& plan, int blockSamples);

    /// What MP4 and FLV say of such sound once, instead of the heads: an AudioSpecificConfig (ISO/IEC 14496-3).
    [[nodiscard]] static std::vector<std::uint8_t> Config(int sampleRateHz, std::size_t channels);

    [[nodiscard]] int BlockSamples() const override { return mCoder->BlockSamples(); }
    [[nodiscard]] int PaddingSamples() const override { return mCoder->PaddingSamples(); }
    void Code(std::span<float* const> samples, std::vector<std::uint8_t>& packet) override;

private:
    std::unique_ptr<SoundCoder> mCoder;
    unsigned mRateIndex;
    unsigned mChannels;
};

}  // namespace parts
}  // namespace lineup
