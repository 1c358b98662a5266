#pragma once

#include <lineup/WaveformOverview.h>
#include "Apps/lineup/Overview/OverviewHeading.h"
#include "Apps/lineup/Overview/OverviewLayout.h"
#include "Apps/lineup/Overview/OverviewTheme.h"

#include <cstdint>
#include <string>
#include <vector>

/// A waveform overview as the bytes of a file. Those that draw throw lineup::Error when the drawing
/// library is not installed or fails. Any thread.
namespace cli {

/// An 8-bit RGB picture.
[[nodiscard]] std::vector<std::uint8_t> OverviewPng(const lineup::WaveformOverview& overview,
                                                    const OverviewHeading& heading, const OverviewLayout& layout,
                                                    const OverviewTheme& theme);

/// The same drawing as vectors, its texts as outlines: it looks the same without our fonts.
[[nodiscard]] std::vector<std::uint8_t> OverviewSvg(const lineup::WaveformOverview& overview,
                                                    const OverviewHeading& heading, const OverviewLayout& layout,
                                                    const OverviewTheme& theme);

/// The numbers. `max` and `min` hold one linear amplitude a column, null where the plug-in wrote nothing.
[[nodiscard]] std::string OverviewJson(const lineup::WaveformOverview& overview, float sampleRateHz);

}  // namespace cli
