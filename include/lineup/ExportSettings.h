#pragma once

#include <lineup/Card.h>
#include <lineup/Disk.h>
#include <lineup/Dither.h>
#include <lineup/PictureAspect.h>
#include <lineup/Rational.h>
#include <lineup/Scan.h>
#include <lineup/Timecode.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace lineup {

/// What to write, and where. The target's extension names the file format (see FormatTable.h).
struct ExportSettings {
    std::filesystem::path target;

    /// A file format's extension, for a target whose name has none; empty: the target's.
    std::string format;

    /// A pipe to write to, instead of a file of the target's name, which then only names it in errors. Only for formats
    /// that are written from front to back. The descriptor stays open.
    std::optional<int> pipe;

    /// The picture: even numbers of pixels, each PictureFormat::kMostSize at most. Unused in files without one.
    int width = 1920;
    int height = 1080;
    Card card = Card::Auto;
    PictureAspect aspect = PictureAspect::Auto;
    Scan scan = Scan::Progressive;

    /// Frames a second. In a file without picture it only gives `timecode` its meaning.
    Rational frameRate{25, 1};

    /// The clip's first sample in the file.
    std::int64_t startSample = 0;

    /// How long a file is that has a picture and sound: their sound ends with the last frame.
    std::int64_t frames = 0;

    /// How long a file is that has sound alone, in samples a channel. A file goes by one of the two; both may be set.
    std::int64_t samples = 0;

    /// Black and silence behind the clip, in frames of a file with a picture and in samples of one without.
    std::int64_t blackFrames = 0;
    std::int64_t blackSamples = 0;

    /// Names out of FormatTable.h; empty for what the file format prefers.
    std::string videoCodec;
    std::string audioCodec;

    /// The time code of the first frame; must be at `frameRate`.
    std::optional<Timecode> timecode;

    /// One mono track a channel, titled with the channel's name, instead of one track of all channels.
    bool monoTracks = false;

    /// Of 16-bit sound, which alone it goes with.
    Dither dither = Dither::None;

    /// Replace a file that is there already.
    bool overwrite = false;

    /// Whether the file must be on the disk when the export ends. A still picture always is.
    Disk disk = Disk::Wait;

    /// The moment at which the file says that it was made, in seconds since 1970, where the file format says one;
    /// empty: now, by the clock of the place, or none in a reproducible file.
    std::optional<std::int64_t> date;

    /// The same bytes each time that the same settings are exported: no moment unless `date` says it, and no
    /// identifiers that are unique in the world.
    bool reproducible = false;

    /// Encode every frame even where the codec's frames stand alone and one encoded frame would do.
    /// The file is the same either way; this is how that is checked.
    bool encodeEveryFrame = false;
};

}  // namespace lineup
