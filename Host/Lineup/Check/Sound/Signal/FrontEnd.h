#pragma once

#include "Host/Lineup/Check/Sound/Signal/Halfband.h"
#include "Host/Lineup/Check/Sound/Signal/History.h"

#include <cstdint>
#include <span>
#include <vector>

namespace lineup::sound {

/// The way of one input's samples into the history: what each hop is like, and the narrow band.
class InputFrontEnd {
public:
    explicit InputFrontEnd(const Grid& grid);

    /// Takes whole hops, but for the last call. NaN samples, and those beyond what a recording can hold, become zeros.
    /// The last samples, which the filters have no sight beyond, stay out of the narrow band.
    void Process(std::span<float> samples, SlidingBuffer<float>& narrow, SlidingBuffer<HopFeatures>& hops);

private:
    struct Stage {
        Halfband filter;
        std::int64_t hop = 1;   // outputs a hop
        double weight = 0;      // of the high band's power
        std::int64_t done = 0;  // outputs
        double energy = 0;      // of the hop that is being filled
        float peak = 0;
    };

    void CountHigh(Stage& stage, std::span<const float> high, SlidingBuffer<HopFeatures>& hops);

    Grid mGrid;
    std::vector<Stage> mStages;
    std::vector<std::vector<float>> mBands;  // what goes into each stage, and at last the narrow band
    std::vector<float> mHigh;
};

}  // namespace lineup::sound
