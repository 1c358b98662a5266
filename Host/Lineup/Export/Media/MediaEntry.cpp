#include "Host/Lineup/Export/MediaEntry.h"

#include "Host/Lineup/Export/Media/MediaFile.h"
#include "Host/Lineup/Export/Media/PngFile.h"

// What liblineup looks up by name; everything else in this library is its own affair.
namespace lineup {

extern "C" {

LINEUP_API void lineupWriteMovie(const Clip& clip, const ExportPlan& plan, TargetFile& file,
                                 const ProgressFunction& progress) {
    WriteMovieFile(clip, plan, file, progress);
}

LINEUP_API void lineupWriteStill(const Clip& clip, const ExportPlan& plan, TargetFile& file,
                                 const ProgressFunction& progress) {
    WritePngFile(clip, plan, file, progress);
}
}

static_assert(std::is_same_v<decltype(lineupWriteMovie), WriteFunction>);
static_assert(std::is_same_v<decltype(lineupWriteStill), WriteFunction>);

}  // namespace lineup
