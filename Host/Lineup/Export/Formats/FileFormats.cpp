#include <lineup/FormatTable.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <string>

namespace lineup {

namespace {

using namespace std::string_view_literals;

constexpr std::array kMovVideo = {"prores-hq"sv, "prores"sv, "prores-4444"sv, "dnxhr-hqx"sv, "v210"sv,
                                  "uyvy422"sv,   "h264"sv,   "mjpeg"sv,       "png"sv};
constexpr std::array kMovAudio = {"pcm-s24"sv, "pcm-s16"sv, "pcm-s32"sv, "pcm-f32"sv, "alac"sv, "aac"sv};
constexpr std::array kMkvVideo = {"ffv1"sv,        "h264"sv,    "prores-hq"sv, "prores"sv,
                                  "prores-4444"sv, "uyvy422"sv, "mjpeg"sv};
// No AAC: readers of Matroska do not leave out the silence that the encoder puts first.
constexpr std::array kMkvAudio = {"flac"sv, "pcm-s24"sv, "pcm-s16"sv, "pcm-s32"sv, "pcm-f32"sv, "alac"sv};
constexpr std::array kMp4Video = {"h264"sv};
constexpr std::array kMp4Audio = {"aac"sv, "alac"sv};
constexpr std::array kMxfVideo = {"mpeg2-422"sv};
constexpr std::array kMxfAudio = {"pcm-s24"sv, "pcm-s16"sv};
constexpr std::array kWavAudio = {"pcm-s24"sv, "pcm-s16"sv, "pcm-s32"sv, "pcm-f32"sv};
constexpr std::array kPngVideo = {"png"sv};

constexpr std::array<int, 1> kMxfSampleRatesHz = {48000};

constexpr std::array<CodecOption, 1> kMovOptions = {{{"movflags", "+write_colr"}}};

constexpr std::array<FileFormat, 6> kFileFormats = {{
    {.extension = "mov",
     .description = "QuickTime movie",
     .muxer = "mov",
     .videoCodecs = kMovVideo,
     .audioCodecs = kMovAudio,
     .options = kMovOptions,
     .timescaleOption = "movie_timescale",
     .labelsMonoTracks = true,
     .holdsTimecode = true,
     .offersMonoTracks = true},
    {.extension = "mkv",
     .description = "Matroska",
     .muxer = "matroska",
     .videoCodecs = kMkvVideo,
     .audioCodecs = kMkvAudio,
     .needsLayoutInCodec = true,
     .holdsTimecode = true,
     .offersMonoTracks = true},
    {.extension = "mp4",
     .description = "MPEG-4",
     .muxer = "mp4",
     .videoCodecs = kMp4Video,
     .audioCodecs = kMp4Audio,
     .options = kMovOptions,
     .timescaleOption = "movie_timescale",
     .holdsTimecode = true},
    {.extension = "mxf",
     .description = "MXF OP1a, one mono track a channel",
     .muxer = "mxf",
     .videoCodecs = kMxfVideo,
     .audioCodecs = kMxfAudio,
     .sampleRatesHz = kMxfSampleRatesHz,
     .uniqueIdentifiers = true,
     .holdsTimecode = true,
     .offersMonoTracks = true,
     .onlyMonoTracks = true},
    {.extension = "wav",
     .description = "Broadcast Wave, sound alone; RF64 past 4 GB",
     .kind = FileKind::Wave,
     .audioCodecs = kWavAudio,
     .holdsTimecode = true},
    {.extension = "png", .description = "PNG picture, one frame", .kind = FileKind::Still, .videoCodecs = kPngVideo},
}};

}  // namespace

std::span<const FileFormat> FileFormats() {
    return kFileFormats;
}

const FileFormat* FindFileFormat(const std::filesystem::path& target) {
    std::string extension = target.extension().string();
    if (extension.empty()) {
        return nullptr;
    }
    extension.erase(0, 1);
    std::ranges::transform(extension, extension.begin(),
                           [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    const auto* const found = std::ranges::find(kFileFormats, extension, &FileFormat::extension);
    return found == kFileFormats.end() ? nullptr : found;
}

}  // namespace lineup
