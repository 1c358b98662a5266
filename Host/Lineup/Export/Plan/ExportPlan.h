#pragma once

#include <lineup/Card.h>
#include <lineup/Clip.h>
#include <lineup/Disk.h>
#include <lineup/Dither.h>
#include <lineup/ExportReport.h>
#include <lineup/ExportSettings.h>
#include "Host/Lineup/Export/Formats/EncoderTable.h"
#include "Host/Lineup/Values/PictureShape.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// What settings become once they were checked: everything that the writers of files go by.
namespace lineup {
inline namespace parts {

struct PicturePlan {
    const VideoEncoding* encoding = nullptr;
    int width = 0;
    int height = 0;
    Card card = Card::Auto;
    PictureShape shape;
    Scan scan = Scan::Progressive;
    Rational frameRate;
    std::int64_t frames = 1;
    std::int64_t blackFrames = 0;      ///< the last of them
    std::optional<Timecode> timecode;  ///< of the first frame
    bool encodeEveryFrame = false;
};

/// One track of the file.
struct TrackPlan {
    std::vector<int> channels;  ///< the plug-in's, in the track's order
    std::string layout;         ///< FFmpeg's name, for the encoder
    std::string label;          ///< FFmpeg's name of what the file says it is
    std::uint32_t tag = 0;      ///< QuickTime's tag of the layout, where the file is to hold it beside the codec's data
    std::string title;          ///< the channel's name where there is a track a channel, else empty
};

struct SoundPlan {
    const AudioEncoding* encoding = nullptr;
    int sampleRateHz = 0;
    std::int64_t startSample = 0;    ///< the clip's first sample in the file
    std::int64_t samples = 0;        ///< a channel
    std::int64_t silentSamples = 0;  ///< the last of them
    std::int64_t timeReference = 0;  ///< of the first sample, in samples since midnight
    Dither dither = Dither::None;
    std::vector<TrackPlan> tracks;
};

/// What a file says of itself.
struct OriginPlan {
    std::string description;  ///< what sounds, in ASCII
    std::string date;         ///< "2026-01-31", or empty
    std::string time;         ///< "23:59:59", or empty
};

struct ExportPlan {
    std::filesystem::path target;
    std::optional<int> pipe;  ///< to write to instead
    bool overwrite = false;
    Disk disk = Disk::Wait;
    bool reproducible = false;
    OriginPlan origin;
    const Container* container = nullptr;
    std::optional<PicturePlan> picture;
    std::optional<SoundPlan> sound;
};

/// Throws UsageError when the settings cannot be exported from the clip.
LINEUP_API ExportPlan PlanExport(const Clip& clip, const ExportSettings& settings);

/// The plan of a still picture, whatever the target's extension. Throws UsageError (option "size") for a size that
/// it cannot have.
LINEUP_API ExportPlan PlanStill(const std::filesystem::path& target, int width, int height, Card card, bool overwrite,
                                PictureAspect aspect);

/// The bytes that this sound takes in a file; 0 where it is compressed, which nobody knows ahead.
LINEUP_API std::int64_t UncompressedBytes(const SoundPlan& sound);

/// What a file of `bytes` bytes is that was written as planned.
LINEUP_API ExportReport ReportOf(const ExportPlan& plan, std::int64_t bytes);

}  // namespace parts
}  // namespace lineup
