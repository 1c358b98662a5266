#pragma once

#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <ostream>
#include <random>

/// Audio and peak requests that no dialog makes, for tests that ask only that nothing breaks.
namespace test {

struct HostileRequest {
    BarsAndToneInfo settings;
    std::int64_t position = 0;
    float peakRateHz = 0.0F;
    std::int32_t count = 0;
};

inline std::ostream& operator<<(std::ostream& out, const HostileRequest& r) {
    return out << r.settings.sampleRate << " Hz, " << r.settings.numChannels << " channels, ident "
               << r.settings.identifyChannels << '/' << r.settings.identifierFormat << ", " << r.settings.frequency
               << " Hz at " << r.settings.amplitude << ", position " << r.position << ", " << r.count << " at "
               << r.peakRateHz << " Hz";
}

using FloatLimits = std::numeric_limits<float>;
using Int64Limits = std::numeric_limits<std::int64_t>;

/// Rates, frequencies and levels: ordinary ones, and every kind of float there is.
inline const std::array kHostileFloats = {0.0F,
                                          -0.0F,
                                          1.0F,
                                          -1.0F,
                                          0.5F,
                                          100.0F,
                                          400.0F,
                                          1000.0F,
                                          2000.0F,
                                          44100.0F,
                                          48000.0F,
                                          -48000.0F,
                                          47952.0F,
                                          96000.0F,
                                          192000.0F,
                                          1e-5F,
                                          1e-20F,
                                          -1e-20F,
                                          2.7e-8F,
                                          2.8e-8F,
                                          -2.7e-8F,
                                          1e9F,
                                          1e11F,
                                          2.540160e11F,
                                          -2.540160e11F,
                                          3e11F,
                                          -3e11F,
                                          1.3e11F,
                                          1e20F,
                                          1e30F,
                                          -1e30F,
                                          FloatLimits::max(),
                                          FloatLimits::lowest(),
                                          FloatLimits::min(),
                                          FloatLimits::denorm_min(),
                                          -FloatLimits::denorm_min(),
                                          FloatLimits::infinity(),
                                          -FloatLimits::infinity(),
                                          FloatLimits::quiet_NaN()};

/// Positions: in the clip, before it, where times at common rates wrap, and at both ends.
inline const std::array<std::int64_t, 29> kHostilePositions = {0,
                                                               1,
                                                               -1,
                                                               47999,
                                                               132000,
                                                               143999,
                                                               240000,
                                                               -48000,
                                                               -1000000,
                                                               std::int64_t{1} << 31,
                                                               std::int64_t{1} << 32,
                                                               -(std::int64_t{1} << 33),
                                                               Int64Limits::max() / 5292000 - 100,
                                                               Int64Limits::max() / 5292000,
                                                               Int64Limits::max() / 5292000 + 1,
                                                               Int64Limits::min() / 5292000 - 1,
                                                               Int64Limits::min() / 5292000 + 100,
                                                               Int64Limits::max() / 5760000,
                                                               Int64Limits::max() / 2646000,
                                                               Int64Limits::max() / 254016000000,
                                                               Int64Limits::min() / 254016000000 - 1,
                                                               std::int64_t{1} << 52,
                                                               std::int64_t{1} << 62,
                                                               -(std::int64_t{1} << 62),
                                                               Int64Limits::max(),
                                                               Int64Limits::max() - 100,
                                                               Int64Limits::min(),
                                                               Int64Limits::min() + 1,
                                                               Int64Limits::min() + 100};

/// No more channels than the tests have buffers for, and counts that are negative as an int.
inline constexpr std::array<std::uint32_t, 9> kHostileChannelCounts = {0, 1, 2, 3, 6, 7, 8, 0x80000000, 0xFFFFFFFF};
inline constexpr std::size_t kHostileChannels = 8;

/// A source of hostile requests: the same ones from the same seed, with every standard library.
class HostileRequestSource {
public:
    explicit HostileRequestSource(std::uint64_t seed) : mEngine(seed) {}

    HostileRequest Next() {
        HostileRequest request;
        request.settings.version = static_cast<std::uint32_t>(mEngine());
        request.settings.sampleRate = Float();
        request.settings.channelType = Below(5);
        request.settings.numChannels = kHostileChannelCounts.at(Below(kHostileChannelCounts.size()));
        request.settings.identifyChannels = Below(3);
        request.settings.frequency = Float();
        request.settings.amplitude = Float();
        request.settings.identifierFormat = static_cast<IdentifierFormat>(Below(6));
        request.position = Position();
        request.peakRateHz = Float();
        request.count = static_cast<std::int32_t>(Below(8) == 0 ? Below(5001) : Below(200));
        return request;
    }

private:
    std::uint32_t Below(std::uint64_t limit) { return static_cast<std::uint32_t>(mEngine() % limit); }

    // A listed one, an audio rate, or any bits but the tag of unwritten samples.
    float Float() {
        switch (Below(4)) {
            case 0:
                return static_cast<float>(Below(200000)) + 0.25F;
            case 1:
                return std::bit_cast<float>(static_cast<std::uint32_t>(mEngine() >> 32U) | 0x00400000U);
            default:
                return kHostileFloats.at(Below(kHostileFloats.size()));
        }
    }

    std::int64_t Position() {
        switch (Below(3)) {
            case 0:
                return static_cast<std::int64_t>(mEngine());
            case 1:
                return static_cast<std::int64_t>(Below(10000000)) - 5000000;
            default:
                return kHostilePositions.at(Below(kHostilePositions.size()));
        }
    }

    std::mt19937_64 mEngine;
};

}  // namespace test
