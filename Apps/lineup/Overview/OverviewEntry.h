#pragma once

#include "Apps/lineup/Overview/OverviewSheet.h"

#include <cstdint>
#include <vector>

/// What the library that draws overviews offers. It is the only part that needs the drawing library, and is
/// loaded when the first picture is drawn.
namespace cli {

/// The file name of the library; it belongs to liblineup (see DynamicLibrary::Beside).
inline constexpr const char* kOverviewLibraryName = "liblineup-overview.so";

enum class OverviewPicture { Png, Svg };

/// Draws an overview as the bytes of a file. Throws lineup::Error when the drawing library fails.
using DrawOverviewFunction = void(OverviewPicture kind, const OverviewPage& page, std::vector<std::uint8_t>& bytes);
inline constexpr const char* kDrawOverviewName = "lineupDrawOverview";

}  // namespace cli
