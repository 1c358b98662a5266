#pragma once

#include "Apps/lineup/Overview/OverviewSheet.h"

#include <cstdint>
#include <string>
#include <vector>

/// A waveform overview as the bytes of a file. Those that draw throw lineup::Error when the drawing
/// library is not installed or fails. Any thread.
namespace cli {

/// An 8-bit RGB picture.
[[nodiscard]] std::vector<std::uint8_t> OverviewPng(const OverviewPage& page);

/// The same drawing as vectors, its texts as outlines: it looks the same without our fonts.
[[nodiscard]] std::vector<std::uint8_t> OverviewSvg(const OverviewPage& page);

/// The numbers. `max` and `min` hold one linear amplitude a column, null where the plug-in wrote nothing.
[[nodiscard]] std::string OverviewJson(const lineup::WaveformOverview& overview, float sampleRateHz);

}  // namespace cli
