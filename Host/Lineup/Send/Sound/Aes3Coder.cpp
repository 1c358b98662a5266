#include "Host/Lineup/Send/Sound/Aes3Coder.h"

#include "Host/Lineup/Export/Samples/Quantise.h"

#include <utility>

namespace lineup {
inline namespace parts {

namespace {

constexpr int kAes3Block = 192;  // frames; the first of each is marked
constexpr int kBlocksAPacket = 2;
constexpr int kSampleBits = 24;
constexpr std::size_t kHeadBytes = 4;
constexpr std::size_t kPairBytes = 7;

/// Bits, the first of them the highest of the first byte.
class Aes3Bits {
public:
    explicit Aes3Bits(std::vector<std::uint8_t>& bytes) : mBytes(&bytes) {}

    void PutLowestFirst(std::uint32_t value, int bits) {
        for (int i = 0; i < bits; ++i) {
            mHeld = mHeld << 1U | (value >> static_cast<unsigned>(i) & 1U);
            if (++mCount == 8) {
                mBytes->push_back(static_cast<std::uint8_t>(mHeld));
                mCount = 0;
            }
        }
    }

private:
    std::vector<std::uint8_t>* mBytes;
    std::uint32_t mHeld = 0;
    int mCount = 0;
};

}  // namespace

Aes3Coder::Aes3Coder(std::vector<int> channels) : mChannels(std::move(channels)) {}

std::size_t Aes3Coder::PacketBytes(std::size_t channels) {
    return kHeadBytes + std::size_t{kAes3Block} * kBlocksAPacket * (channels / 2) * kPairBytes;
}

int Aes3Coder::BlockSamples() const {
    return kAes3Block * kBlocksAPacket;
}

void Aes3Coder::Code(std::span<float* const> samples, std::vector<std::uint8_t>& packet) {
    // Bytes behind the head, pairs of channels beyond the first, channel 0, 24 bits, no more.
    const std::uint32_t head = static_cast<std::uint32_t>(PacketBytes(mChannels.size()) - kHeadBytes) << 16U |
                               static_cast<std::uint32_t>(mChannels.size() / 2 - 1) << 14U | 2U << 4U;
    packet.reserve(PacketBytes(mChannels.size()));
    for (unsigned shift = 32; shift > 0; shift -= 8) {
        packet.push_back(static_cast<std::uint8_t>(head >> (shift - 8)));
    }
    constexpr std::uint32_t kBeginsBlock = 8;  // behind validity, user data and channel status
    Aes3Bits bits(packet);
    for (int i = 0; i < BlockSamples(); ++i) {
        for (std::size_t place = 0; place < mChannels.size(); ++place) {
            const float sample = samples[static_cast<std::size_t>(mChannels[place])][i];
            bits.PutLowestFirst(static_cast<std::uint32_t>(Quantise<kSampleBits>(sample)), kSampleBits);
            const bool marked = place % 2 == 0 && i % kAes3Block == 0;
            bits.PutLowestFirst(marked ? kBeginsBlock : 0, 4);
        }
    }
}

}  // namespace parts
}  // namespace lineup
