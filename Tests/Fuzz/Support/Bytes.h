#pragma once

#include "Host/Lineup/Validation/Probes/HostileNumbers.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <utility>

namespace fuzz {

/// The bytes of an input, taken from the front as values. Behind the end there are zeros, so that every
/// input means something.
class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size) : mRest(data, size) {}

    [[nodiscard]] bool Empty() const { return mRest.empty(); }

    /// The next bytes as a number, little-endian.
    template <class T>
    T Take() {
        T value{};
        const std::size_t taken = std::min(sizeof value, mRest.size());
        if (taken > 0) {
            std::memcpy(&value, mRest.data(), taken);
            mRest = mRest.subspan(taken);
        }
        return value;
    }

    /// 0 .. limit - 1, from one byte.
    std::size_t Below(std::size_t limit) { return Take<std::uint8_t>() % limit; }

    bool Flag() { return Below(2) != 0; }

    template <class Range>
    const auto& Pick(const Range& list) {
        return list[Below(std::size(list))];
    }

    /// A listed odd number, an audio rate, or any bits. Never a signalling not-a-number: moving one may
    /// change it, and one stands for samples that nobody wrote.
    float Float() {
        switch (Below(4)) {
            case 0:
                return static_cast<float>(Take<std::uint32_t>() % 400000) + 0.25F;
            case 1: {
                const auto bits = Take<std::uint32_t>();
                const auto value = std::bit_cast<float>(bits);
                return std::isnan(value) ? std::bit_cast<float>(bits | 0x00400000U) : value;
            }
            default:
                return Pick(lineup::validation::kHostileFloats);
        }
    }

    /// A sample's index: in or near a clip, where times wrap, or anywhere.
    std::int64_t Position() {
        switch (Below(3)) {
            case 0:
                return std::int64_t{Take<std::int32_t>()} % 5000000;
            case 1:
                return Take<std::int64_t>();
            default:
                return Pick(lineup::validation::kHostilePositions);
        }
    }

    /// Settings of a clip that no more than kHostileChannels buffers go with; negative counts are among them.
    BarsAndToneInfo Settings() {
        BarsAndToneInfo settings;
        settings.version = Take<std::uint8_t>();
        settings.sampleRate = Float();
        settings.channelType = Take<std::uint8_t>();
        settings.numChannels = Pick(lineup::validation::kHostileChannelCounts);
        settings.identifyChannels = static_cast<std::uint32_t>(Below(3));
        settings.frequency = Float();
        settings.amplitude = Float();
        settings.identifierFormat = static_cast<IdentifierFormat>(Below(6));
        return settings;
    }

    /// All that is left.
    std::span<const std::uint8_t> Rest() { return std::exchange(mRest, {}); }

    std::string_view RestAsText() {
        const auto rest = Rest();
        return {reinterpret_cast<const char*>(rest.data()), rest.size()};
    }

private:
    std::span<const std::uint8_t> mRest;
};

}  // namespace fuzz
