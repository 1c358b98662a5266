#include "Host/Lineup/Export/Samples/PackingKernels.h"
#include "Host/Lineup/Export/Samples/Quantise.h"

#include <bit>

namespace lineup {

namespace {

/// Lowest byte first.
template <int kBytes>
void Put(std::uint32_t value, std::uint8_t* packed) {
    for (int i = 0; i < kBytes; ++i) {
        packed[i] = static_cast<std::uint8_t>(value >> (8 * i));
    }
}

template <int kBytes, std::uint32_t (*kConvert)(float)>
void Pack(const float* const* channels, std::size_t numChannels, std::size_t count, std::uint8_t* packed) {
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t c = 0; c < numChannels; ++c) {
            Put<kBytes>(kConvert(channels[c][i]), packed);
            packed += kBytes;
        }
    }
}

template <int kBits>
std::uint32_t ToInteger(float sample) {
    return static_cast<std::uint32_t>(Quantise<kBits>(sample));
}

std::uint32_t ToBits(float sample) {
    return std::bit_cast<std::uint32_t>(sample);
}

}  // namespace

const PackingKernels kPackingPlain = {Pack<2, ToInteger<16>>, Pack<3, ToInteger<24>>, Pack<4, ToInteger<32>>,
                                      Pack<4, ToBits>};

}  // namespace lineup
