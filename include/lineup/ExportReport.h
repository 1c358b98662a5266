#pragma once

#include <lineup/Rational.h>
#include <lineup/Scan.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace lineup {

/// The picture of a finished file.
struct VideoReport {
    std::string codec;        ///< its name in VideoCodecs()
    std::string pixelFormat;  ///< "yuv422p10le"
    int width = 0;
    int height = 0;
    Rational sampleAspect{1, 1};
    Scan scan = Scan::Progressive;
    Rational frameRate;
    std::string colour;  ///< the matrix: "bt709", "smpte170m", "bt470bg" for JPEG, or "rgb"
};

/// One sound track of a finished file.
struct AudioReport {
    std::string codec;         ///< its name in AudioCodecs()
    std::string sampleFormat;  ///< "s16", "s24", "s32" or "f32": what the samples were rounded to
    int sampleRateHz = 0;
    int channels = 0;
    std::string layout;  ///< FFmpeg's name: "mono", "stereo", "5.1(side)", "5.1"; "FL" and so on for a labelled track
    std::string title;   ///< the channel's name where there is a track a channel, else empty
};

/// What was written.
struct ExportReport {
    std::filesystem::path target;
    std::string container;  ///< the file format's extension: "mov"
    std::optional<VideoReport> video;
    std::vector<AudioReport> audio;
    std::int64_t frames = 0;        ///< 0 without picture
    std::int64_t samples = 0;       ///< a channel; 0 without sound
    std::int64_t blackFrames = 0;   ///< the last of the frames
    std::int64_t blackSamples = 0;  ///< the last of the samples: silence
    std::uintmax_t bytes = 0;
};

}  // namespace lineup
