#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace cli {

/// A colour as 0xRRGGBB, non-linear as screens take it.
using Rgb = std::uint32_t;

/// The colours of a waveform overview.
struct OverviewTheme {
    Rgb background;
    Rgb lane;    ///< behind a channel
    Rgb grid;    ///< time and level lines
    Rgb noData;  ///< hatching where the plug-in wrote nothing
    Rgb title;
    Rgb text;                        ///< all other text
    std::span<const Rgb> waveforms;  ///< one a channel in turn
    double bandOpacity;              ///< of a band between its edges, over the lane

    [[nodiscard]] Rgb Waveform(std::size_t channel) const { return waveforms[channel % waveforms.size()]; }

    [[nodiscard]] static const OverviewTheme& Light();
    [[nodiscard]] static const OverviewTheme& Dark();
};

}  // namespace cli
