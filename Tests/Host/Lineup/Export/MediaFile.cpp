#include "Tests/Host/Lineup/Export/MediaFile.h"

#include <lineup/FormatTable.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace test {

namespace {

namespace fs = std::filesystem;

// Paths of temporary folders hold nothing that a shell would take apart.
std::vector<std::uint8_t> Run(const std::string& command) {
    FILE* const output = popen(command.c_str(), "r");
    if (output == nullptr) {
        throw std::runtime_error("cannot run " + command);
    }
    std::vector<std::uint8_t> bytes;
    std::array<std::uint8_t, 65536> buffer{};
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), output)) {
        bytes.insert(bytes.end(), buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(count));
    }
    if (pclose(output) != 0) {
        throw std::runtime_error("failed: " + command);
    }
    return bytes;
}

template <typename Sample>
std::vector<Sample> DecodeAs(const fs::path& file, std::string_view stream, std::string_view format) {
    const auto bytes = Decode(file, stream, fmt::format("-f {}", format));
    std::vector<Sample> samples(bytes.size() / sizeof(Sample));
    std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(Sample));
    return samples;
}

}  // namespace

const FfmpegWays& WaysOfFfmpeg() {
    static constexpr std::array<FfmpegWays, 2> kWays = {{
        {.rangeOfProRes = "tv", .startOfPipedAac = "-0.021333"},
        {.major = 7,
         .minor = 1,
         .inTheWhole = "-apply_cropping codec",
         .rangeOfProRes = "",
         .startOfPipedAac = "0.000000",
         .plainFloatWave = true},
    }};
    static const FfmpegWays& ways = []() -> const FfmpegWays& {
        int major = 0;
        int minor = 0;
        const std::string text = RunShell(FFMPEG_PROGRAM " -version");
        if (std::sscanf(text.c_str(), "ffmpeg version %d.%d", &major, &minor) < 2) {
            throw std::runtime_error("cannot tell the version of FFmpeg: " + text);
        }
        const bool isNew = std::pair(major, minor) >= std::pair(kWays.back().major, kWays.back().minor);
        return isNew ? kWays.back() : kWays.front();
    }();
    return ways;
}

lineup::Clip OpenClip(lineup::BarsAndToneInfo settings) {
    return lineup::Clip(std::make_shared<lineup::Importer>(TEST_BUNDLE), settings);
}

lineup::Clip OpenClip(std::uint32_t channels) {
    lineup::BarsAndToneInfo settings;
    settings.numChannels = channels;
    if (channels > 1) {
        settings.identifyChannels = 1;
        settings.identifierFormat = channels == 6 ? lineup::BLITS5_1 : lineup::EBUStereo1000;
    }
    return OpenClip(settings);
}

lineup::ExportSettings SmallExport(const fs::path& target, std::int64_t length) {
    lineup::ExportSettings settings;
    settings.target = target;
    settings.width = 192;
    settings.height = 108;
    settings.frames = length;
    settings.samples = length;
    return settings;
}

void FitTo(std::string_view codec, lineup::ExportSettings& settings) {
    const lineup::VideoCodec& row = *lineup::FindVideoCodec(codec);
    if (settings.width < row.minWidth || settings.height < row.minHeight) {
        settings.width = row.minWidth;
        settings.height = row.minHeight;
    }
}

std::string RunShell(const std::string& command) {
    const auto text = Run(command);
    return {text.begin(), text.end()};
}

nlohmann::json Probe(const fs::path& file, bool counted) {
    const auto text = Run(fmt::format(FFPROBE_PROGRAM " -v error {} -show_format -show_streams -of json {}",
                                      counted ? "-count_frames" : "", file.string()));
    return nlohmann::json::parse(text.begin(), text.end());
}

std::vector<nlohmann::json> Streams(const fs::path& file, std::string_view kind, bool counted) {
    std::vector<nlohmann::json> streams;
    const nlohmann::json probe = Probe(file, counted);
    std::ranges::copy_if(probe.at("streams"), std::back_inserter(streams),
                         [kind](const nlohmann::json& stream) { return stream.at("codec_type") == kind; });
    return streams;
}

std::vector<nlohmann::json> Frames(const fs::path& file, std::string_view entries) {
    const auto text = Run(fmt::format(FFPROBE_PROGRAM " -v error -select_streams v:0 -show_entries {} -of json {}",
                                      entries, file.string()));
    return nlohmann::json::parse(text.begin(), text.end()).at("frames");
}

nlohmann::json Packets(const fs::path& file) {
    const auto text =
        Run(fmt::format(FFPROBE_PROGRAM " -v error -select_streams v:0 -show_packets -of json {}", file.string()));
    return nlohmann::json::parse(text.begin(), text.end()).at("packets");
}

std::string MediaInfo(const fs::path& file, std::string_view question) {
    const auto text = Run(fmt::format(MEDIAINFO_PROGRAM " --Inform='{}' {}", question, file.string()));
    return {text.begin(), std::ranges::find(text, '\n')};
}

std::vector<std::uint8_t> Decode(const fs::path& file, std::string_view stream, std::string_view arguments) {
    return Run(fmt::format(FFMPEG_PROGRAM " -v error {} -i {} -map 0:{} {} -", WaysOfFfmpeg().inTheWhole, file.string(),
                           stream, arguments));
}

std::vector<float> DecodeFloats(const fs::path& file, std::string_view stream) {
    return DecodeAs<float>(file, stream, "f32le");
}

std::vector<std::int32_t> DecodeIntegers(const fs::path& file, std::string_view stream) {
    return DecodeAs<std::int32_t>(file, stream, "s32le");
}

std::vector<std::uint8_t> ReadBytes(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

}  // namespace test
