#include "Host/Lineup/Export/Formats/EncoderTable.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string>

namespace lineup {

namespace {

using namespace std::string_view_literals;

constexpr std::array kMovVideo = {"prores-hq"sv, "prores"sv,  "prores-4444"sv, "dnxhr-hqx"sv, "dnxhd"sv,
                                  "v210"sv,      "uyvy422"sv, "h264"sv,        "mjpeg"sv,     "png"sv};
constexpr std::array kMovAudio = {"pcm-s24"sv, "pcm-s16"sv, "pcm-s32"sv, "pcm-f32"sv, "alac"sv, "aac"sv};
constexpr std::array kMkvVideo = {"ffv1"sv,        "h264"sv,    "prores-hq"sv, "prores"sv,
                                  "prores-4444"sv, "uyvy422"sv, "mjpeg"sv};
// No AAC: readers of Matroska do not leave out the silence that the encoder puts first. No ALAC: GStreamer does not
// read it there.
constexpr std::array kMkvAudio = {"flac"sv, "pcm-s24"sv, "pcm-s16"sv, "pcm-s32"sv, "pcm-f32"sv};
constexpr std::array kMp4Video = {"h264"sv};
constexpr std::array kMp4Audio = {"aac"sv, "alac"sv};
constexpr std::array kTsVideo = {"h264"sv, "mpeg2-422"sv};
constexpr std::array kTsAudio = {"aac"sv};
constexpr std::array kMxfVideo = {"mpeg2-422"sv};
constexpr std::array kMxfAudio = {"pcm-s24"sv, "pcm-s16"sv};
constexpr std::array kWavAudio = {"pcm-s24"sv, "pcm-s16"sv, "pcm-s32"sv, "pcm-f32"sv};
constexpr std::array kPngVideo = {"png"sv};

constexpr std::array<int, 1> kMxfSampleRatesHz = {48000};

constexpr std::array<CodecOption, 1> kMovOptions = {{{"movflags", "+write_colr"}}};
// In fragments, one a key frame, behind a head that is written when each track has begun: it says then where the sound
// begins that its encoder puts silence ahead of. Without an index at the end, whose places would be those before the
// head grew.
constexpr std::array<CodecOption, 1> kMovPipeOptions = {
    {{"movflags", "+write_colr+frag_keyframe+delay_moov+default_base_moof+skip_trailer"}}};
// What decoders buffer, in microseconds: the clock runs so far ahead of what is shown.
constexpr std::array<CodecOption, 1> kTsOptions = {{{"max_delay", "700000"}}};
constexpr std::array<CodecOption, 2> kTsTags = {{{"service_provider", "lineup"}, {"service_name", "Bars and Tone"}}};

constexpr std::array<Container, 7> kContainers = {{
    {.format = {.extension = "mov",
                .description = "QuickTime movie",
                .videoCodecs = kMovVideo,
                .audioCodecs = kMovAudio,
                .holdsTimecode = true,
                .offersMonoTracks = true,
                .streams = true},
     .muxer = "mov",
     .options = kMovOptions,
     .pipeOptions = kMovPipeOptions,
     .timescaleOption = "movie_timescale",
     .describesCleanPart = true,
     .describesFields = true,
     .namesChannels = true},
    {.format = {.extension = "mkv",
                .description = "Matroska",
                .videoCodecs = kMkvVideo,
                .audioCodecs = kMkvAudio,
                .holdsTimecode = true,
                .offersMonoTracks = true,
                .streams = true},
     .muxer = "matroska",
     .needsLayoutInCodec = true},
    {.format = {.extension = "mp4",
                .description = "MPEG-4",
                .videoCodecs = kMp4Video,
                .audioCodecs = kMp4Audio,
                .holdsTimecode = true,
                .streams = true},
     .muxer = "mp4",
     .options = kMovOptions,
     .pipeOptions = kMovPipeOptions,
     .timescaleOption = "movie_timescale",
     .describesCleanPart = true,
     .takesSurroundTags = true},
    {.format = {.extension = "ts",
                .description = "MPEG transport stream",
                .videoCodecs = kTsVideo,
                .audioCodecs = kTsAudio,
                .streams = true},
     .muxer = "mpegts",
     .options = kTsOptions,
     .pipeOptions = kTsOptions,
     .tags = kTsTags},
    {.format = {.extension = "mxf",
                .description = "MXF OP1a, one mono track a channel",
                .videoCodecs = kMxfVideo,
                .audioCodecs = kMxfAudio,
                .sampleRatesHz = kMxfSampleRatesHz,
                .holdsTimecode = true,
                .offersMonoTracks = true,
                .onlyMonoTracks = true},
     .muxer = "mxf",
     .uniqueIdentifiers = true},
    {.format = {.extension = "wav",
                .description = "Broadcast Wave, sound alone; RF64 past 4 GB",
                .audioCodecs = kWavAudio,
                .holdsTimecode = true,
                .streams = true},
     .kind = FileKind::Wave},
    {.format = {.extension = "png", .description = "PNG picture, one frame", .videoCodecs = kPngVideo},
     .kind = FileKind::Still},
}};

// What people choose from.
constexpr auto kOfferedFiles = [] {
    std::array<FileFormat, kContainers.size()> formats;
    std::ranges::transform(kContainers, formats.begin(), &Container::format);
    return formats;
}();

std::string ExtensionOf(const std::filesystem::path& target) {
    std::string extension = target.extension().string();
    extension.erase(0, 1);  // the dot
    std::ranges::transform(extension, extension.begin(),
                           [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return extension;
}

}  // namespace

std::span<const FileFormat> FileFormats() {
    return kOfferedFiles;
}

std::vector<std::string_view> StreamedFormats() {
    std::vector<std::string_view> extensions;
    for (const FileFormat& format : kOfferedFiles) {
        if (format.streams) {
            extensions.push_back(format.extension);
        }
    }
    return extensions;
}

const FileFormat* FindFileFormat(const std::filesystem::path& target) {
    const auto* const found = std::ranges::find(kOfferedFiles, ExtensionOf(target), &FileFormat::extension);
    return found == kOfferedFiles.end() ? nullptr : found;
}

inline namespace parts {

const Container* FindContainer(const std::filesystem::path& target) {
    const auto* const found =
        std::ranges::find(kContainers, ExtensionOf(target), [](const Container& row) { return row.format.extension; });
    return found == kContainers.end() ? nullptr : found;
}

}  // namespace parts
}  // namespace lineup
