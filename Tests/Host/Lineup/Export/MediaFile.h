#pragma once

#include <lineup/Clip.h>
#include <lineup/Exporter.h>
#include "Tests/Support/TemporaryFolder.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace test {

/// A clip of the plug-in under test. With an ident of two or six channels every channel differs.
lineup::Clip OpenClip(lineup::BarsAndToneInfo settings);
lineup::Clip OpenClip(std::uint32_t channels = 2);

/// Settings for a small quick file: of `length` frames, or samples where it has sound alone.
lineup::ExportSettings SmallExport(const std::filesystem::path& target, std::int64_t length);

/// Makes the settings' picture large enough for a codec.
void FitTo(std::string_view codec, lineup::ExportSettings& settings);

/// What FFmpeg's programs say otherwise from one version to the next, of the same bytes.
struct FfmpegWays {
    int major = 0;                     ///< since this version, and
    int minor = 0;                     ///< this one of it
    const char* inTheWhole = "";       ///< arguments before an input whose clean aperture is not to cut its pictures
    const char* rangeOfProRes = "";    ///< which has legal range alone, and no field for it
    const char* startOfPipedAac = "";  ///< the start_time of a movie in fragments whose sound begins with AAC's silence
    bool plainFloatWave = false;       ///< whether floats in mono and stereo have the short head that they may have
};

/// Those of the version that the tests run.
const FfmpegWays& WaysOfFfmpeg();

/// What a shell's command prints. Throws std::runtime_error when it fails.
std::string RunShell(const std::string& command);

/// What ffprobe says of a file.
nlohmann::json Probe(const std::filesystem::path& file, bool counted = true);

/// The file's streams of one kind: "video", "audio" or "data".
/// Without `counted`, frames are not decoded to count them.
std::vector<nlohmann::json> Streams(const std::filesystem::path& file, std::string_view kind, bool counted = true);

/// What ffprobe says of each picture, of the entries that it is asked for ("frame_tags=timecode").
std::vector<nlohmann::json> Frames(const std::filesystem::path& file, std::string_view entries);

/// What ffprobe says of each packet of the picture.
nlohmann::json Packets(const std::filesystem::path& file);

/// What mediainfo answers to "Video;%ScanOrder%" and the like, without the end of the line.
std::string MediaInfo(const std::filesystem::path& file, std::string_view question);

/// The bytes that ffmpeg decodes one stream to ("v:0", "a:1"), with further output arguments.
std::vector<std::uint8_t> Decode(const std::filesystem::path& file, std::string_view stream,
                                 std::string_view arguments);

/// The samples of one sound stream, interleaved: floats, or 32-bit integers.
std::vector<float> DecodeFloats(const std::filesystem::path& file, std::string_view stream);
std::vector<std::int32_t> DecodeIntegers(const std::filesystem::path& file, std::string_view stream);

std::vector<std::uint8_t> ReadBytes(const std::filesystem::path& file);

}  // namespace test
