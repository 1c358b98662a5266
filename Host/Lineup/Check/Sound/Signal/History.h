#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Check/Sound/Signal/SlidingBuffer.h"

#include <cstdint>
#include <vector>

namespace lineup::sound {

/// What one hop of one input is like at the recording's own rate.
struct HopFeatures {
    float least = 0;            ///< the lowest sample
    float most = 0;             ///< the highest
    float high = 0;             ///< mean square of what lies above the narrow band
    float highPeak = 0;         ///< the highest of it
    std::uint32_t bits = 0;     ///< the bits in use, of magnitudes in units of 2^-23; kFiner where that is too coarse
    std::uint16_t atLeast = 0;  ///< samples that lie by the lowest: many where tops are flat
    std::uint16_t atMost = 0;
    std::uint16_t flatLeast = 0;  ///< samples in a row that are exactly the lowest, at most; known from kLeastRun on
    std::uint16_t flatMost = 0;

    static constexpr int kLeastRun = 4;

    static constexpr std::uint32_t kFiner = 1U << 31U;
};

/// How the recording is cut up: hops of about 10 ms, and a narrow band in which the tones lie.
struct Grid {
    double rate = 48000;  ///< samples of the recording a second
    int halvings = 2;     ///< the narrow band's rate is rate / 2^halvings
    int hop = 120;        ///< narrow samples

    [[nodiscard]] double NarrowRate() const { return rate / static_cast<double>(1 << halvings); }
    [[nodiscard]] double HopSeconds() const { return hop / NarrowRate(); }
    [[nodiscard]] std::int64_t HopSamples() const { return std::int64_t{hop} << halvings; }
};

/// The grid for a recording of `rate` Hz whose tones are `highest` Hz at most.
[[nodiscard]] LINEUP_API Grid MakeGrid(double rate, double highest);

/// The last seconds of all inputs.
struct History {
    History(int inputs, const Grid& cut, double seconds, bool isLossy);

    [[nodiscard]] std::size_t Inputs() const { return narrow.size(); }
    /// Narrow samples that all inputs have by now.
    [[nodiscard]] std::int64_t NarrowEnd() const { return narrow.front().End(); }
    [[nodiscard]] double SecondsEnd() const { return static_cast<double>(NarrowEnd()) / grid.NarrowRate(); }
    [[nodiscard]] double SecondsFirst() const;

    Grid grid;
    bool lossy;  ///< a codec adds what goes with the tones, and changes from block to block
    std::vector<SlidingBuffer<float>> narrow;      ///< an input; sample m stands where m * 2^halvings stood
    std::vector<SlidingBuffer<HopFeatures>> hops;  ///< an input
};

}  // namespace lineup::sound
