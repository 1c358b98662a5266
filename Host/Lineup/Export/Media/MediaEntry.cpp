#include "Host/Lineup/Export/MediaEntry.h"

#include "Host/Lineup/Export/Media/MediaFile.h"
#include "Host/Lineup/Export/Media/PngFile.h"

// What liblineup looks up by name; everything else in this library is its own affair.
namespace lineup {

extern "C" {

LINEUP_API void lineupWriteMedia(const Clip& clip, const ExportSettings& settings, const ExportPlan& plan,
                                 const ProgressFunction& progress, ExportReport& report) {
    WriteMediaFile(clip, settings, plan, progress, report);
}

LINEUP_API void lineupWritePng(const Clip& clip, int width, int height, Card card, const std::filesystem::path& target,
                               bool overwrite) {
    WritePngFile(clip, width, height, card, target, overwrite);
}
}

static_assert(std::is_same_v<decltype(lineupWriteMedia), WriteMediaFunction>);
static_assert(std::is_same_v<decltype(lineupWritePng), WritePngFunction>);

}  // namespace lineup
