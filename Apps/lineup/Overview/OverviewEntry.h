#pragma once

#include <lineup/WaveformOverview.h>
#include "Apps/lineup/Overview/OverviewHeading.h"
#include "Apps/lineup/Overview/OverviewLayout.h"
#include "Apps/lineup/Overview/OverviewTheme.h"

#include <cstdint>
#include <vector>

/// What the library that draws overviews offers. It is the only part that needs the drawing library, and is
/// loaded when the first picture is drawn.
namespace cli {

/// The file name of the library; it belongs to liblineup (see DynamicLibrary::Beside).
inline constexpr const char* kOverviewLibraryName = "liblineup-overview.so";

enum class OverviewPicture { Png, Svg };

/// Draws an overview as the bytes of a file. Throws lineup::Error when the drawing library fails.
using DrawOverviewFunction = void(OverviewPicture kind, const lineup::WaveformOverview& overview,
                                  const OverviewHeading& heading, const OverviewLayout& layout,
                                  const OverviewTheme& theme, std::vector<std::uint8_t>& bytes);
inline constexpr const char* kDrawOverviewName = "lineupDrawOverview";

}  // namespace cli
