#pragma once

#include <lineup/Clip.h>
#include <lineup/ExportReport.h>
#include <lineup/ExportSettings.h>
#include <lineup/Exporter.h>
#include "Host/Lineup/Export/Plan/ExportPlan.h"

#include <filesystem>

/// What the library of media formats offers. It is the only part that needs encoders and a muxer, and is
/// loaded when the first file is written that takes one. Both functions throw what Export throws.
namespace lineup {

/// The file name of the library; it belongs to liblineup (see DynamicLibrary::Beside).
inline constexpr const char* kMediaLibraryName = "liblineup-media.so";

/// Writes the plan's picture and sound into a file of a muxer's making, and fills the report's `video` and
/// `audio`.
using WriteMediaFunction = void(const Clip& clip, const ExportSettings& settings, const ExportPlan& plan,
                                const ProgressFunction& progress, ExportReport& report);
inline constexpr const char* kWriteMediaName = "lineupWriteMedia";

/// Writes the clip's picture as a PNG file. The size has been checked.
using WritePngFunction = void(const Clip& clip, int width, int height, Card card, const std::filesystem::path& target,
                              bool overwrite);
inline constexpr const char* kWritePngName = "lineupWritePng";

}  // namespace lineup
