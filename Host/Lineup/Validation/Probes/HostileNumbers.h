#pragma once

#include "Host/Interface/Media/TickTime.h"
#include "Host/Lineup/Validation/Probes/Random.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

/// The one list of numbers that break what is not careful with them, for the validator and for tests.
namespace lineup::validation {

/// Rates, frequencies and levels: ordinary ones, and every kind of float there is. 2.5e11 Hz is a tick a
/// sample; 2.7e-8 Hz is where a sample's ticks no longer fit 64 bits.
inline constexpr auto kHostileFloats = [] {
    using Limits = std::numeric_limits<float>;
    return std::array{0.0F,
                      -0.0F,
                      1.0F,
                      -1.0F,
                      0.5F,
                      100.0F,
                      400.0F,
                      1000.0F,
                      2000.0F,
                      8000.0F,
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
                      1.3e11F,
                      2.540160e11F,
                      -2.540160e11F,
                      3e11F,
                      -3e11F,
                      1e20F,
                      1e30F,
                      -1e30F,
                      Limits::max(),
                      Limits::lowest(),
                      Limits::min(),
                      Limits::denorm_min(),
                      -Limits::denorm_min(),
                      Limits::infinity(),
                      -Limits::infinity(),
                      Limits::quiet_NaN()};
}();

/// Positions: in a clip, before it, where times at common rates wrap, and at both ends of 64 bits.
inline constexpr auto kHostilePositions = [] {
    using Limits = std::numeric_limits<std::int64_t>;
    constexpr std::int64_t kTicksAt1Hz = zelmediatypes::kTicksPerSecond;
    constexpr std::int64_t kTicksAt44kHz = kTicksAt1Hz / 44100;
    constexpr std::int64_t kTicksAt48kHz = kTicksAt1Hz / 48000;
    constexpr std::int64_t kTicksAt96kHz = kTicksAt1Hz / 96000;
    return std::array<std::int64_t, 29>{0,
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
                                        std::int64_t{1} << 52,
                                        std::int64_t{1} << 62,
                                        -(std::int64_t{1} << 62),
                                        Limits::max() / kTicksAt48kHz - 100,
                                        Limits::max() / kTicksAt48kHz,
                                        Limits::max() / kTicksAt48kHz + 1,
                                        Limits::min() / kTicksAt48kHz - 1,
                                        Limits::min() / kTicksAt48kHz + 100,
                                        Limits::max() / kTicksAt44kHz,
                                        Limits::max() / kTicksAt96kHz,
                                        Limits::max() / kTicksAt1Hz,
                                        Limits::min() / kTicksAt1Hz - 1,
                                        Limits::max(),
                                        Limits::max() - 100,
                                        Limits::min(),
                                        Limits::min() + 1,
                                        Limits::min() + 100};
}();

/// The channels that hostile settings ask for: no more than kHostileChannels, or negative as an int.
inline constexpr std::size_t kHostileChannels = 8;
inline constexpr std::array<std::uint32_t, 9> kHostileChannelCounts = {
    0, 1, 2, 3, 6, 7, kHostileChannels, 0x80000000, 0xFFFFFFFF};

/// Numbers that no host sends, drawn from a seed.
class HostileNumbers {
public:
    explicit HostileNumbers(Random& random) : mRandom(&random) {}

    /// A listed float, an ordinary rate or any bits but those of an unwritten sample.
    [[nodiscard]] float Float();

    /// A listed position, one in the clip or any bits.
    [[nodiscard]] std::int64_t Position();

    /// Mostly a few, sometimes thousands; never negative.
    [[nodiscard]] std::int32_t Count();

    /// A settings record of Bars and Tone. A request for it needs no more than kHostileChannels buffers.
    [[nodiscard]] BarsAndToneInfo Settings();

    /// Spoils a record of any kind: a few of its bytes, or a few floats or whole numbers on 4-byte boundaries.
    void Spoil(std::span<std::uint8_t> record);

private:
    Random* mRandom;
};

}  // namespace lineup::validation
