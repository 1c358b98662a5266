#pragma once

#include <lineup/Clip.h>
#include <lineup/Exporter.h>
#include "Host/Lineup/Export/Plan/ExportPlan.h"
#include "Host/Lineup/Files/TargetFile.h"

/// What the library of media formats offers. It is the only part that needs encoders and a muxer, and is
/// loaded when the first file is written that takes one.
namespace lineup {
inline namespace parts {

/// The file name of the library; it belongs to liblineup (see DynamicLibrary::Beside).
inline constexpr const char* kMediaLibraryName = "liblineup-media.so";

/// Writes the clip into `file` as planned, all but TargetFile::Commit. Throws what Export throws, and what `progress`
/// throws.
using WriteFunction = void(const Clip& clip, const ExportPlan& plan, TargetFile& file,
                           const ProgressFunction& progress);

/// Writes picture and sound into a file of a muxer's making.
inline constexpr const char* kWriteMovieName = "lineupWriteMovie";

/// Writes the picture alone, as its encoder makes it.
inline constexpr const char* kWriteStillName = "lineupWriteStill";

}  // namespace parts
}  // namespace lineup
