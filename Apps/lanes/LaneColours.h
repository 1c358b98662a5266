#pragma once

#include "Apps/lanes/Drawing.h"

#include <cstddef>
#include <span>

namespace lanes {

/// The colours of a drawing of lanes.
struct LaneColours {
    Rgb background = 0;
    Rgb lane = 0;    ///< behind a channel
    Rgb grid = 0;    ///< time and level lines
    Rgb noData = 0;  ///< stripes where the plug-in wrote nothing
    Rgb title = 0;
    Rgb text = 0;                         ///< all other text
    std::span<const Rgb> waveforms = {};  ///< one a channel in turn

    [[nodiscard]] Rgb Waveform(std::size_t channel) const { return waveforms[channel % waveforms.size()]; }

    [[nodiscard]] static const LaneColours& Light();
    [[nodiscard]] static const LaneColours& Dark();
};

}  // namespace lanes
